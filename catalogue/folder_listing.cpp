#include "catalogue/folder_listing.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "catalogue/volumes.h"

namespace catalogue {
namespace {

struct Collector {
    const char16_t* folder;
    PathList* folders;
    PathList* files;
};

bool collectVolume(void* context, const char16_t* name, platform::EntryKind kind) {
    const auto& collector = *static_cast<Collector*>(context);
    if (kind == platform::EntryKind::Folder && isStorageVolume(name)) {
        collector.folders->append(collector.folder, name);
    }
    return true;
}

bool collectEntry(void* context, const char16_t* name, platform::EntryKind kind) {
    const auto& collector = *static_cast<Collector*>(context);
    if (kind == platform::EntryKind::Folder) {
        collector.folders->append(collector.folder, name);
    } else if (isRecording(name)) {
        collector.files->append(collector.folder, name);
    }
    return true;
}

int copyEntry(const PathList& list, std::int32_t index, PathBuffer& path) {
    const char16_t* const entry = list.at(index);
    copyPath(path, entry != nullptr ? entry : u"");
    return entry != nullptr ? 1 : 0;
}

int copyName(const PathList& list, std::int32_t index, PathBuffer& name) {
    const char16_t* const entry = list.at(index);
    copyPath(name, entry != nullptr ? lastComponent(entry) : u"");
    return entry != nullptr ? 1 : 0;
}

}  // namespace

void FolderListing::OpenListing(const char16_t* path, Order order, platform::FolderWalk walk) {
    folders_.clear();
    files_.clear();
    // Required: any text up to "\", not these two alone. A path begins with a backslash, so that no
    // other means a folder.
    const bool isRoot = std::u16string_view(path) <= std::u16string_view(u"\\");
    copyPath(path_, isRoot ? u"" : path);
    Collector collector{path_, &folders_, &files_};
    walk(path_, isRoot ? collectVolume : collectEntry, &collector);
    if (order == Order::ByPath && !isRoot) {
        folders_.sort();
        files_.sort();
    }
    pageCount_ = pagesFor(folders_.count() + files_.count());
}

void FolderListing::Clear() {
    folders_.clear();
    files_.clear();
    copyPath(path_, u"");
    pageCount_ = 0;
}

int FolderListing::GetFilePath(std::int32_t index, PathBuffer& path) const {
    return copyEntry(files_, index, path);
}

int FolderListing::GetFolderPath(std::int32_t index, PathBuffer& path) const {
    return copyEntry(folders_, index, path);
}

int FolderListing::GetFileName(std::int32_t index, PathBuffer& name) const {
    return copyName(files_, index, name);
}

int FolderListing::GetFolderName(std::int32_t index, PathBuffer& name) const {
    return copyName(folders_, index, name);
}

void FolderListing::GetParentPath(PathBuffer& path) const {
    copyPath(path, path_);
    const std::size_t separator = std::u16string_view(path).rfind(u'\\');
    const std::size_t length = separator == std::u16string_view::npos ? 0 : separator;
    std::fill(path + length, std::end(path), u'\0');
}

int FolderListing::GetPath(PathBuffer& path) const {
    copyPath(path, path_);
    return path_[0] != u'\0' ? 1 : 0;
}

void copyPath(PathBuffer& to, const char16_t* from) {
    const std::u16string_view path =
        std::u16string_view(from).substr(0, platform::kPathCapacity - 1);
    std::memmove(to, path.data(), path.size() * sizeof(char16_t));
    std::fill(to + path.size(), std::end(to), u'\0');
}

bool samePath(const PathBuffer& a, const PathBuffer& b) {
    return std::memcmp(a, b, sizeof(PathBuffer)) == 0;
}

const char16_t* lastComponent(const char16_t* path) {
    const std::size_t separator = std::u16string_view(path).rfind(u'\\');
    return separator == std::u16string_view::npos ? path : path + separator + 1;
}

int PathKind(const char16_t* path) {
    return platform::pathKind(path);
}

}  // namespace catalogue
