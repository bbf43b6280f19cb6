#include "mediaprobe/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace mediaprobe {
namespace {

constexpr char kSummary[] = "Tells what the player's probe finds out about media files.";
constexpr char kExit[] =
    "Exit status: 0 when every file was opened and recognised with status 0, 1 when one was not\n"
    "recognised or its headers could not be read, 2 on wrong use or when one could not be opened;\n"
    "the worst wins.";
constexpr int kMostJobs = 256;

// CLI11 takes "[a,b]" apart as a list. Folders may be called that, so a name that begins with a
// bracket passes through it with this character in front.
constexpr char kBracketGuard = '\x01';

void guardBrackets(std::vector<std::string>& arguments) {
    for (std::string& argument : arguments) {
        if (argument.starts_with('[')) {
            argument.insert(argument.begin(), kBracketGuard);
        }
    }
}

std::string unguarded(const std::string& name) {
    const bool guarded = name.size() > 1 && name[0] == kBracketGuard && name[1] == '[';
    return guarded ? name.substr(1) : name;
}

// The names and lists in the order in which they stand on the command line, which the options
// themselves do not keep.
void collectSources(const CLI::App& app, Options& options) {
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* option : app.parse_order()) {
        const bool isList = option->check_lname("files-from");
        if (!isList && !option->get_positional()) {
            continue;
        }
        const std::string name = unguarded(option->results().at(taken[option]++));
        Source source{isList ? Source::Kind::ListFile : Source::Kind::Path, name};
        if (name == "-") {
            source = {Source::Kind::StandardInput, {}};
        }
        options.sources.push_back(std::move(source));
    }
}

std::string strangeOption(const CLI::App& app) {
    const std::vector<std::string> left = app.remaining();
    return left.empty() ? "" : unguarded(left.front());
}

std::string wrongUse(const Options& options) {
    if (options.sources.empty()) {
        return "no file is named; see mediaprobe --help";
    }
    if (options.json && options.explain) {
        return "--json and --explain exclude each other; leave one of them out";
    }
    return {};
}

}  // namespace

void describe(CLI::App& app, Options& options) {
    app.name("mediaprobe");
    app.description(kSummary);
    app.footer(kExit);
    app.get_formatter()->column_width(26);
    app.allow_windows_style_options(false);
    app.set_help_flag("-h,--help", "Show this text and end");
    app.set_version_flag("--version", "mediaprobe 1.0.0", "Show the version and end");
    app.add_flag("--json", options.json, "One line of JSON per file");
    app.add_flag("--explain", options.explain,
                 "What each recogniser looked at and why it declined,\nwhat was read, what the "
                 "player takes from the file,\nand whether it would refuse it");
    app.add_flag(
        "-r,--recursive", options.recursive,
        "Look into folders and all folders below them;\nlinks to folders are not followed");
    app.add_option("--files-from", "Read names from FILE, one a line; - is standard input")
        ->type_name("FILE")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_flag("-0,--null", options.nulTerminated,
                 "Names in lists end with a NUL, as find -print0 writes them");
    app.add_option("-j,--jobs", options.jobs,
                   "Look at N files at a time; 0: one for each core.\nThe output keeps its order")
        ->type_name("N")
        ->check(CLI::Range(0, kMostJobs).description({}));
    app.add_option("--color", options.colour,
                   "Colours: auto (on a terminal, unless NO_COLOR\nis set), always or never")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"auto", "always", "never"}).description({}));
    app.add_option("FILE", "A file, a folder with -r, or - for names on standard input")
        ->type_name("")
        ->expected(1, -1)
        ->allow_extra_args();
}

std::string parseOptions(std::vector<std::string> arguments, Options& options) {
    CLI::App app;
    describe(app, options);
    guardBrackets(arguments);
    std::reverse(arguments.begin(), arguments.end());  // as CLI11 wants them
    try {
        app.parse(std::move(arguments));
        collectSources(app, options);
    } catch (const CLI::CallForHelp&) {
        options.told = app.help();
        return {};
    } catch (const CLI::CallForVersion& version) {
        options.told = std::string(version.what()) + '\n';
        return {};
    } catch (const CLI::ExtrasError&) {
        // Everything else is a name.
        return "there is no option " + strangeOption(app) +
               "; put -- in front of names that begin with a dash; see mediaprobe --help";
    } catch (const CLI::ParseError& wrong) {
        std::string what = wrong.what();
        std::replace(what.begin(), what.end(), '\n', ' ');
        return what + "; see mediaprobe --help";
    }
    return wrongUse(options);
}

}  // namespace mediaprobe
