// What differs between Linux and Windows for a console program: one implementation each. All
// names are UTF-8, on Linux whatever bytes they are there.
#pragma once

#include <string>
#include <vector>

namespace mediaprobe {

// The arguments behind the program's name.
std::vector<std::string> programArguments(int argc, char** argv);

// Makes standard output pass bytes as they are written.
void prepareOutput();

// The name as the probe opens it.
std::u16string openedName(const std::string& path);

enum class EntryKind { File, Folder, Missing };
EntryKind kindOf(const std::string& path);

struct Folder {
    std::vector<std::string> files;    // full paths, sorted
    std::vector<std::string> folders;  // full paths, sorted; links to folders are not among them
};
// False when the folder cannot be read.
bool listFolder(const std::string& path, Folder& folder);

}  // namespace mediaprobe
