// The command line: what it is parsed into, in which order, and what is wrong use.
#include <gtest/gtest.h>

#include "mediaprobe/options.h"

namespace mediaprobe {
namespace {

using Kind = Source::Kind;

Options parsed(std::vector<std::string> arguments) {
    Options options;
    EXPECT_EQ(parseOptions(std::move(arguments), options), "");
    return options;
}

std::string wrong(std::vector<std::string> arguments) {
    Options options;
    return parseOptions(std::move(arguments), options);
}

TEST(Options, NothingIsOnUnlessAskedFor) {
    const Options options = parsed({"a.avi"});
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.explain);
    EXPECT_FALSE(options.recursive);
    EXPECT_FALSE(options.nulTerminated);
    EXPECT_EQ(options.jobs, 1);
    EXPECT_EQ(options.colour, "auto");
    EXPECT_EQ(options.told, "");
}

TEST(Options, EachOptionSetsItsOwnField) {
    EXPECT_TRUE(parsed({"--json", "a"}).json);
    EXPECT_TRUE(parsed({"--explain", "a"}).explain);
    EXPECT_TRUE(parsed({"-r", "a"}).recursive);
    EXPECT_TRUE(parsed({"--recursive", "a"}).recursive);
    EXPECT_TRUE(parsed({"-0", "a"}).nulTerminated);
    EXPECT_TRUE(parsed({"--null", "a"}).nulTerminated);
    EXPECT_EQ(parsed({"-j4", "a"}).jobs, 4);
    EXPECT_EQ(parsed({"-j", "0", "a"}).jobs, 0);
    EXPECT_EQ(parsed({"--jobs=256", "a"}).jobs, 256);
    EXPECT_EQ(parsed({"--color", "never", "a"}).colour, "never");
}

TEST(Options, SourcesKeepTheOrderOfTheCommandLine) {
    const Options options = parsed({"a", "[b,c]", "--files-from", "list", "", "--files-from=[more]",
                                    "-", "--files-from", "-", "--", "-r", "--json", "[d]"});
    const std::vector<std::pair<Kind, std::string>> expected = {
        {Kind::Path, "a"},         {Kind::Path, "[b,c]"},      {Kind::ListFile, "list"},
        {Kind::Path, ""},          {Kind::ListFile, "[more]"}, {Kind::StandardInput, ""},
        {Kind::StandardInput, ""}, {Kind::Path, "-r"},         {Kind::Path, "--json"},
        {Kind::Path, "[d]"}};
    ASSERT_EQ(options.sources.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(options.sources[i].kind, expected[i].first) << i;
        EXPECT_EQ(options.sources[i].name, expected[i].second) << i;
    }
    EXPECT_FALSE(options.recursive);
}

TEST(Options, HelpAndVersionNeedNoFile) {
    EXPECT_NE(parsed({"--help"}).told.find("--files-from FILE"), std::string::npos);
    EXPECT_NE(parsed({"-h"}).told.find("Exit status"), std::string::npos);
    EXPECT_EQ(parsed({"--version"}).told, "mediaprobe 1.0.0\n");
}

TEST(Options, HelpTellsOfEachOption) {
    EXPECT_EQ(parsed({"--help"}).told, R"(Tells what the player's probe finds out about media files.
Usage: mediaprobe [OPTIONS] [FILE...]

Positionals:
  FILE ...                A file, a folder with -r, or - for names on standard input

Options:
  -h,--help               Show this text and end
  --version               Show the version and end
  --json                  One line of JSON per file
  --explain               What each recogniser looked at and why it declined,
                          what was read, what the player takes from the file,
                          and whether it would refuse it
  -r,--recursive          Look into folders and all folders below them;
                          links to folders are not followed
  --files-from FILE       Read names from FILE, one a line; - is standard input
  -0,--null               Names in lists end with a NUL, as find -print0 writes them
  -j,--jobs N             Look at N files at a time; 0: one for each core.
                          The output keeps its order
  --color WHEN            Colours: auto (on a terminal, unless NO_COLOR
                          is set), always or never

Exit status: 0 when every file was opened and recognised with status 0, 1 when one was not
recognised or its headers could not be read, 2 on wrong use or when one could not be opened;
the worst wins.
)");
}

// What was typed may hold a line end, the answer none.
TEST(Options, WrongUseStaysOneLineWhateverWasTyped) {
    const std::string what = wrong({"-j", "a\nb", "x"});
    EXPECT_NE(what.find("a b"), std::string::npos) << what;
    EXPECT_EQ(what.find('\n'), std::string::npos) << what;
}

TEST(Options, WrongUseIsOneLineThatNamesTheRemedy) {
    const std::vector<std::vector<std::string>> cases = {
        {},          {"--jsno", "a"},    {"-x", "a"},       {"--files-from"},
        {"-j", "a"}, {"-j", "257", "a"}, {"-j", "-1", "a"}, {"--color", "pink", "a"},
        {"--json"}};
    for (const auto& one : cases) {
        const std::string what = wrong(one);
        EXPECT_TRUE(what.ends_with("; see mediaprobe --help")) << what;
        EXPECT_EQ(what.find('\n'), std::string::npos) << what;
    }
    EXPECT_EQ(wrong({"a", "-odd.wav"}),
              "there is no option -odd.wav; put -- in front of names that begin with a dash; see "
              "mediaprobe --help");
    EXPECT_EQ(wrong({"--json", "--explain", "a"}),
              "--json and --explain exclude each other; leave one of them out");
}

}  // namespace
}  // namespace mediaprobe
