// The command line of mediaprobe.
#pragma once

#include <string>
#include <vector>

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
    bool help = false;
    bool version = false;
    std::vector<Source> sources;  // in the order of the command line
};

// Parses the arguments behind the program's name. Returns what is wrong with them, in one line
// that says what to do, or nothing.
std::string parseOptions(const std::vector<std::string>& arguments, Options& options);

extern const char kHelp[];

}  // namespace mediaprobe
