// The two listings that are alive at once: the play listing, of the folder whose recordings next
// and previous step through, and the browse listing, of the folder that the file list shows.
#pragma once

#include <cstdint>

#include "catalogue/folder_listing.h"
#include "settings/persisted_state.h"

namespace catalogue {

// The catalogue's share of the player's global record.
struct CatalogueFields {
    std::int32_t connectMode = 0;  // 1 while the dash camera's storage is viewed
    PathBuffer connectPath = {};   // the folder that the dash camera handed over

    // The folder and the index of the play listing survive restarts, so they live in the record
    // that does; playFolderPath and playIndex are the catalogue's names for them.
    settings::PersistedState persisted;
    PathBuffer& playFolderPath = persisted.folder;
    std::int32_t& playIndex = persisted.fileIndex;

    FolderListing playListing;
    std::int32_t fileCount = 0;  // recordings in the play listing
    std::int32_t& playFileCount = fileCount;

    FolderListing browseListing;
    PathBuffer browseFolderPath = {};  // "ROOT" at the root
    std::int32_t browsePage = 0;       // counted from 0
    std::int32_t browseFileCount = 0;
    std::int32_t browseFolderCount = 0;
    std::int32_t browsePageCount = 0;

    CatalogueFields() = default;
    CatalogueFields(const CatalogueFields&) = delete;
    CatalogueFields& operator=(const CatalogueFields&) = delete;
};

// List a folder; one that is not there any more gives the root. ListPlayFolder returns the number
// of recordings.
std::int32_t ListPlayFolder(CatalogueFields& fields, const char16_t* path,
                            platform::FolderWalk walk = platform::walkFolder);
void ListBrowseFolder(CatalogueFields& fields, const char16_t* path,
                      platform::FolderWalk walk = platform::walkFolder);

// Whether both listings are of the same folder.
[[nodiscard]] bool browsesPlayFolder(const CatalogueFields& fields);

// Lists the folder that the browse listing shows once more, keeping the page where there is one.
void RelistBrowseFolder(CatalogueFields& fields, platform::FolderWalk walk = platform::walkFolder);

// Goes down into folder entry `index` of the browse listing; nothing without such an entry.
void EnterBrowseFolder(CatalogueFields& fields, std::int32_t index,
                       platform::FolderWalk walk = platform::walkFolder);

// Goes up to the folder above. While the dash camera's storage is viewed the root is not shown.
void BrowseParent(CatalogueFields& fields, platform::FolderWalk walk = platform::walkFolder);

// Makes recording `index` of the browse listing the one to be played: the play folder is listed
// again when its path or its count differs, then playIndex is set when there is such a file.
void SelectBrowseFile(CatalogueFields& fields, std::int32_t index,
                      platform::FolderWalk walk = platform::walkFolder);

}  // namespace catalogue
