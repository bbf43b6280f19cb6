// Folders and whole small files, as the settings and the catalogue need them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

// Capacity of every path buffer, the terminator included.
inline constexpr std::size_t kPathCapacity = 260;

enum class EntryKind { File, Folder };

// Called for each entry with its name (no path); false ends the walk.
using EntryVisitor = bool (*)(void* context, const char16_t* name, EntryKind kind);

// Walks the entries of a folder (empty path: the root of the unit) in the order in which the file
// system returns them, without the entries "." and ".." that some platforms add. Returns false
// when the folder cannot be enumerated or is empty.
using FolderWalk = bool (*)(const char16_t* folder, EntryVisitor visitor, void* context);
[[nodiscard]] bool walkFolder(const char16_t* folder, EntryVisitor visitor, void* context);

// 0 nothing there (or an empty path), 1 a file, 2 a folder.
[[nodiscard]] int pathKind(const char16_t* path);

// Creates one folder; true when it exists afterwards. Parent folders are not created.
[[nodiscard]] bool ensureFolder(const char16_t* path);

// Replaces the file's contents; false when it could not be written in full.
[[nodiscard]] bool writeFile(const char16_t* path, std::span<const std::uint8_t> bytes);

// Deletes one file, not a folder; false when it is still there, or was not.
[[nodiscard]] bool deleteFile(const char16_t* path);

}  // namespace platform
