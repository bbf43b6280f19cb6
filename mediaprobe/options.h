// The command line of mediaprobe, on CLI11. describe() is the one place that lists the options: the
// parser, --help, the manual page and the shells' completions are all made of it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mediaprobe {

// A file or folder to look at, as named by the user (UTF-8), or a list of such names.
struct Source {
    enum class Kind { Path, ListFile, StandardInput };
    Kind kind = Kind::Path;
    std::string name;
};

struct Options {
    bool json = false;
    bool explain = false;
    bool recursive = false;
    bool nulTerminated = false;   // names in lists end with a NUL, not with a line
    int jobs = 1;                 // files looked at at a time; 0: as many as there are cores
    std::string colour = "auto";  // auto, always, never
    std::string told;             // the text of --help or --version, when one was asked for
    std::vector<Source> sources;  // in the order of the command line
};

// Adds every option to `app`, to be parsed into `options`, which must outlive it.
void describe(CLI::App& app, Options& options);

// Parses the arguments behind the program's name. Returns what is wrong with them, in one line
// that says what to do, or nothing.
std::string parseOptions(std::vector<std::string> arguments, Options& options);

}  // namespace mediaprobe
