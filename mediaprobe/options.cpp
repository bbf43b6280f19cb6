#include "mediaprobe/options.h"

namespace mediaprobe {

const char kHelp[] =
    "Usage: mediaprobe [OPTION]... FILE...\n"
    "Tells what the player's probe finds out about media files.\n"
    "\n"
    "      --json             one line of JSON per file\n"
    "      --explain          what each recogniser looked at and why it declined, what was read,\n"
    "                         what the player takes from the file, and whether it would refuse it\n"
    "      --files-from FILE  read names from FILE, one a line\n"
    "  -r, --recursive        look into folders and all folders below them\n"
    "      --help             show this text and end\n"
    "      --version          show the version and end\n"
    "  -                      read names from standard input, one a line\n"
    "  --                     what follows are names, whatever they begin with\n"
    "\n"
    "Exit status: 0 when every file was opened and recognised with status 0, 1 when one was not\n"
    "recognised or is damaged, 2 on wrong use or when one could not be opened; the worst wins.\n";

namespace {

std::string parseLongOption(const std::vector<std::string>& arguments, std::size_t& at,
                            Options& options) {
    const std::string& argument = arguments[at];
    const std::string listPrefix = "--files-from=";
    if (argument == "--json") {
        options.json = true;
    } else if (argument == "--explain") {
        options.explain = true;
    } else if (argument == "--recursive") {
        options.recursive = true;
    } else if (argument == "--help") {
        options.help = true;
    } else if (argument == "--version") {
        options.version = true;
    } else if (argument == "--files-from") {
        if (++at == arguments.size()) {
            return "--files-from needs the name of a file behind it";
        }
        options.sources.push_back({Source::Kind::ListFile, arguments[at]});
    } else if (argument.starts_with(listPrefix)) {
        options.sources.push_back({Source::Kind::ListFile, argument.substr(listPrefix.size())});
    } else {
        return argument + " is not an option; see mediaprobe --help";
    }
    return {};
}

}  // namespace

std::string parseOptions(const std::vector<std::string>& arguments, Options& options) {
    bool namesOnly = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        if (namesOnly || argument.empty() || argument[0] != '-') {
            options.sources.push_back({Source::Kind::Path, argument});
        } else if (argument == "-") {
            options.sources.push_back({Source::Kind::StandardInput, {}});
        } else if (argument == "--") {
            namesOnly = true;
        } else if (argument == "-r") {
            options.recursive = true;
        } else if (argument.starts_with("--")) {
            std::string wrong = parseLongOption(arguments, at, options);
            if (!wrong.empty()) {
                return wrong;
            }
        } else {
            return argument + " is not an option; see mediaprobe --help";
        }
    }
    if (options.sources.empty() && !options.help && !options.version) {
        return "no file is named; see mediaprobe --help";
    }
    if (options.json && options.explain) {
        return "--json and --explain exclude each other; leave one of them out";
    }
    return {};
}

}  // namespace mediaprobe
