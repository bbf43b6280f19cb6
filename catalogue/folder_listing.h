// One folder's sub-folders and recordings, as lists of full paths. The root (an empty path) lists
// the storage volumes that are there and holds no recordings.
#pragma once

#include <cstdint>

#include "catalogue/path_list.h"
#include "platform/folder.h"

namespace catalogue {

using PathBuffer = char16_t[platform::kPathCapacity];

inline constexpr std::int32_t kRowsPerPage = 8;

enum class Order {
    FileSystem,  // as the file system returns the entries
    ByPath,      // ascending by full path, ordinal and case-sensitive
};

class FolderListing {
public:
    // Lists `path` (no trailing backslash; the root when it is empty, or as text not greater than
    // "\") in place of what was listed before. A folder that cannot be enumerated gives an empty
    // listing with its path set. Paths of 260 code units and more are left out. `walk` supplies the
    // entries.
    void OpenListing(const char16_t* path, Order order,
                     platform::FolderWalk walk = platform::walkFolder);

    // Forgets folder and entries.
    void Clear();

    // Full path of entry `index`, counted from 0. 1, or 0 with the buffer emptied.
    int GetFilePath(std::int32_t index, PathBuffer& path) const;
    int GetFolderPath(std::int32_t index, PathBuffer& path) const;
    // Its last component alone.
    int GetFileName(std::int32_t index, PathBuffer& name) const;
    int GetFolderName(std::int32_t index, PathBuffer& name) const;
    // The listed folder without its last component: empty for a folder at the root.
    void GetParentPath(PathBuffer& path) const;
    // The listed folder: 1, or 0 with the buffer emptied at the root.
    int GetPath(PathBuffer& path) const;

    [[nodiscard]] std::int32_t GetFileCount() const { return files_.count(); }
    [[nodiscard]] std::int32_t GetFolderCount() const { return folders_.count(); }
    // Pages of 8 rows, folders and files together; 0 when there is neither.
    [[nodiscard]] std::int32_t GetPageCount() const { return pageCount_; }

private:
    PathBuffer path_ = {};
    PathList folders_;
    PathList files_;
    std::int32_t pageCount_ = 0;
};

// Pages of 8 rows that `entries` fill.
[[nodiscard]] constexpr std::int32_t pagesFor(std::int32_t entries) {
    return entries / kRowsPerPage + (entries % kRowsPerPage != 0 ? 1 : 0);
}

// Copies a path, cut at 259 code units; the rest of the buffer becomes zero, because folder paths
// are compared as whole buffers.
void copyPath(PathBuffer& to, const char16_t* from);
[[nodiscard]] bool samePath(const PathBuffer& a, const PathBuffer& b);

// The last component of `path`, within it; all of it without a backslash.
[[nodiscard]] const char16_t* lastComponent(const char16_t* path);

// 0 for an empty path or one that does not exist, 1 for a file, 2 for a folder.
[[nodiscard]] int PathKind(const char16_t* path);

}  // namespace catalogue
