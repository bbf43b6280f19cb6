#include "catalogue/catalogue.h"

#include <algorithm>

namespace catalogue {
namespace {

Order orderOf(const CatalogueFields& fields) {
    return fields.connectMode == 1 ? Order::ByPath : Order::FileSystem;
}

// `path` may lie in the listing that is about to be replaced, so it is copied first.
void openOrRoot(const CatalogueFields& fields, FolderListing& listing, const char16_t* path,
                platform::FolderWalk walk) {
    PathBuffer folder;
    copyPath(folder, PathKind(path) == 2 ? path : u"");
    listing.OpenListing(folder, orderOf(fields), walk);
}

}  // namespace

std::int32_t ListPlayFolder(CatalogueFields& fields, const char16_t* path,
                            platform::FolderWalk walk) {
    openOrRoot(fields, fields.playListing, path, walk);
    fields.playListing.GetPath(fields.playFolderPath);
    fields.playFileCount = fields.playListing.GetFileCount();
    return fields.playFileCount;
}

void ListBrowseFolder(CatalogueFields& fields, const char16_t* path, platform::FolderWalk walk) {
    openOrRoot(fields, fields.browseListing, path, walk);
    fields.browseFileCount = fields.browseListing.GetFileCount();
    fields.browseFolderCount = fields.browseListing.GetFolderCount();
    fields.browsePageCount = fields.browseListing.GetPageCount();
    if (fields.browseListing.GetPath(fields.browseFolderPath) == 0) {
        copyPath(fields.browseFolderPath, u"ROOT");
    }
}

bool browsesPlayFolder(const CatalogueFields& fields) {
    PathBuffer folder;
    fields.browseListing.GetPath(folder);
    return samePath(folder, fields.playFolderPath);
}

void RelistBrowseFolder(CatalogueFields& fields, platform::FolderWalk walk) {
    PathBuffer folder;
    fields.browseListing.GetPath(folder);
    ListBrowseFolder(fields, folder, walk);
    fields.browsePage = std::clamp(fields.browsePage, 0, std::max(fields.browsePageCount - 1, 0));
}

void EnterBrowseFolder(CatalogueFields& fields, std::int32_t index, platform::FolderWalk walk) {
    PathBuffer folder;
    if (fields.browseListing.GetFolderPath(index, folder) == 0) {
        return;
    }
    ListBrowseFolder(fields, folder, walk);
    fields.browsePage = 0;
}

void BrowseParent(CatalogueFields& fields, platform::FolderWalk walk) {
    PathBuffer parent;
    fields.browseListing.GetParentPath(parent);
    if (fields.connectMode == 1 && parent[0] == u'\0') {
        return;
    }
    ListBrowseFolder(fields, parent, walk);
    fields.browsePage = 0;
}

void SelectBrowseFile(CatalogueFields& fields, std::int32_t index, platform::FolderWalk walk) {
    PathBuffer browseFolder;
    fields.browseListing.GetPath(browseFolder);
    if (!samePath(browseFolder, fields.playFolderPath) ||
        fields.browseFileCount != fields.playFileCount) {
        ListPlayFolder(fields, browseFolder, walk);
    }
    if (index >= 0 && index < fields.playFileCount) {
        fields.playIndex = index;
    }
}

}  // namespace catalogue
