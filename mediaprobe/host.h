// What differs between Linux and Windows for a console program: one implementation each. All
// names are UTF-8, on Linux whatever bytes they are there.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "mediaprobe/folder.h"

namespace mediaprobe {

// The arguments behind the program's name.
std::vector<std::string> programArguments(int argc, char** argv);

// Makes the standard streams pass bytes as they are.
void prepareConsole();

bool isTerminal(std::FILE* stream);
// Processors that this process may use, at least 1.
int coreCount();

// What `file` has at the moment, up to the block's size, without waiting for more: 0 at its end,
// below 0 when it cannot be read. For files that are read by nothing else.
long readSome(std::FILE* file, std::span<char> block);

// The name as the probe opens it.
std::u16string openedName(const std::string& path);

EntryKind kindOf(const std::string& path);

bool endsWithSeparator(std::string_view path);

// Replaces what `folder` holds. False when the folder cannot be read.
bool listFolder(const std::string& path, Folder& folder);

}  // namespace mediaprobe
