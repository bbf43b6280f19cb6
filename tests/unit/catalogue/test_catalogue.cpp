#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "platform/text.h"
#include "tests/unit/support/unit_folder.h"

namespace {

using catalogue::FolderListing;
using catalogue::Order;
using catalogue::PathBuffer;

struct Entry {
    const char16_t* name;
    platform::EntryKind kind;
};

std::vector<Entry> offered;  // what the walk below returns, in this order

bool walkOffered(const char16_t*, platform::EntryVisitor visitor, void* context) {
    for (const Entry& entry : offered) {
        if (!visitor(context, entry.name, entry.kind)) {
            break;
        }
    }
    return !offered.empty();
}

constexpr auto kFile = platform::EntryKind::File;
constexpr auto kFolder = platform::EntryKind::Folder;

std::vector<std::string> filesOf(const FolderListing& listing) {
    std::vector<std::string> names;
    PathBuffer path;
    for (std::int32_t i = 0; listing.GetFilePath(i, path) == 1; ++i) {
        names.push_back(platform::toUtf8(path));
    }
    return names;
}

std::vector<std::string> foldersOf(const FolderListing& listing) {
    std::vector<std::string> names;
    PathBuffer path;
    for (std::int32_t i = 0; listing.GetFolderPath(i, path) == 1; ++i) {
        names.push_back(platform::toUtf8(path));
    }
    return names;
}

using Paths = std::vector<std::string>;

TEST(Listing, RootHoldsVolumesInTheOrderFound) {
    offered = {{u"USB", kFolder},       {u"ResidentFlash2", kFolder},
               {u"SDMMCDisk", kFolder}, {u"usb", kFolder},
               {u"USB2", kFile},        {u"clip.avi", kFile},
               {u"USB5", kFolder},      {u"USB4", kFolder}};
    for (const char16_t* root : {u"", u"\\", u"SDMMCDisk\\Record"}) {
        FolderListing listing;
        listing.OpenListing(root, Order::ByPath, walkOffered);
        EXPECT_EQ(foldersOf(listing), (Paths{"\\USB", "\\SDMMCDisk", "\\USB4"}));
        EXPECT_EQ(listing.GetFileCount(), 0);
        PathBuffer path = {u'x'};
        EXPECT_EQ(listing.GetPath(path), 0);
        EXPECT_EQ(path[0], u'\0');
    }
}

TEST(Listing, OrderIsTheFileSystemsOrByPath) {
    offered = {{u"B.avi", kFile}, {u"b", kFolder}, {u"A.avi", kFile},
               {u"a.avi", kFile}, {u"A", kFolder}, {u"note.txt", kFile}};
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    EXPECT_EQ(filesOf(listing), (Paths{"\\USB\\B.avi", "\\USB\\A.avi", "\\USB\\a.avi"}));
    EXPECT_EQ(foldersOf(listing), (Paths{"\\USB\\b", "\\USB\\A"}));
    listing.OpenListing(u"\\USB", Order::ByPath, walkOffered);
    EXPECT_EQ(filesOf(listing), (Paths{"\\USB\\A.avi", "\\USB\\B.avi", "\\USB\\a.avi"}));
    EXPECT_EQ(foldersOf(listing), (Paths{"\\USB\\A", "\\USB\\b"}));
}

TEST(Listing, PagesHoldEightRows) {
    EXPECT_EQ(catalogue::pagesFor(0), 0);
    EXPECT_EQ(catalogue::pagesFor(1), 1);
    EXPECT_EQ(catalogue::pagesFor(8), 1);
    EXPECT_EQ(catalogue::pagesFor(16), 2);
    EXPECT_EQ(catalogue::pagesFor(17), 3);
    offered.assign(9, {u"a.avi", kFile});
    offered.push_back({u"folder", kFolder});
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    EXPECT_EQ(listing.GetPageCount(), 2);
    EXPECT_EQ(listing.GetFileCount(), 9);
    EXPECT_EQ(listing.GetFolderCount(), 1);
}

TEST(Listing, NamesAndParents) {
    offered = {{u"clip.avi", kFile}, {u"sub", kFolder}};
    FolderListing listing;
    listing.OpenListing(u"\\USB\\여행", Order::FileSystem, walkOffered);
    PathBuffer text;
    EXPECT_EQ(listing.GetFileName(0, text), 1);
    EXPECT_EQ(std::u16string_view(text), u"clip.avi");
    EXPECT_EQ(listing.GetFolderName(0, text), 1);
    EXPECT_EQ(std::u16string_view(text), u"sub");
    listing.GetParentPath(text);
    EXPECT_EQ(std::u16string_view(text), u"\\USB");
    for (const std::int32_t index : {-1, 1, 1000}) {
        text[0] = u'x';
        EXPECT_EQ(listing.GetFilePath(index, text), 0);
        EXPECT_EQ(text[0], u'\0');
        EXPECT_EQ(listing.GetFolderName(index, text), 0);
    }
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    listing.GetParentPath(text);
    EXPECT_EQ(std::u16string_view(text), u"");
    listing.OpenListing(u"a", Order::FileSystem, walkOffered);
    listing.GetParentPath(text);
    EXPECT_EQ(std::u16string_view(text), u"");
}

TEST(Listing, LeavesOutWhatNoBufferHolds) {
    const std::u16string fits(254, u'n'), tooLong(255, u'n');  // with "\USB\" 259 and 260
    const std::u16string fitting = fits.substr(4) + u".avi", over = tooLong.substr(4) + u".avi";
    offered = {{over.c_str(), kFile}, {fitting.c_str(), kFile}};
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    ASSERT_EQ(listing.GetFileCount(), 1);
    PathBuffer path;
    listing.GetFilePath(0, path);
    EXPECT_EQ(std::u16string_view(path).size(), 259u);
}

TEST(Listing, ManyEntriesKeepTheirOrder) {
    std::vector<std::u16string> names;
    for (int i = 0; i < 10000; ++i) {
        names.push_back(platform::toUtf16(std::to_string((i * 7919) % 10000 + 10000) + ".avi"));
    }
    offered.clear();
    for (const std::u16string& name : names) {
        offered.push_back({name.c_str(), kFile});
    }
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::ByPath, walkOffered);
    const Paths files = filesOf(listing);
    ASSERT_EQ(files.size(), 10000u);
    EXPECT_TRUE(std::is_sorted(files.begin(), files.end()));
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    PathBuffer path;
    listing.GetFilePath(1, path);
    EXPECT_EQ(platform::toUtf8(path), "\\USB\\17919.avi");
}

TEST(Listing, IsEmptyAfterClear) {
    offered = {{u"clip.avi", kFile}, {u"sub", kFolder}};
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    listing.Clear();
    EXPECT_EQ(listing.GetFileCount(), 0);
    EXPECT_EQ(listing.GetFolderCount(), 0);
    EXPECT_EQ(listing.GetPageCount(), 0);
    PathBuffer text = {u'x'};
    EXPECT_EQ(listing.GetPath(text), 0);
    EXPECT_EQ(std::u16string_view(text), u"");
    text[0] = u'x';
    EXPECT_EQ(listing.GetFolderPath(0, text), 0);
    EXPECT_EQ(std::u16string_view(text), u"");
    EXPECT_EQ(listing.GetFileName(0, text), 0);
}

TEST(Listing, ReplacesWhatWasListedBefore) {
    offered = {{u"clip.avi", kFile}, {u"sub", kFolder}};
    FolderListing listing;
    listing.OpenListing(u"\\USB", Order::FileSystem, walkOffered);
    listing.OpenListing(u"\\USB2", Order::FileSystem, walkOffered);
    EXPECT_EQ(filesOf(listing), Paths{"\\USB2\\clip.avi"});
    EXPECT_EQ(foldersOf(listing), Paths{"\\USB2\\sub"});
    offered.clear();
    listing.OpenListing(u"\\USB3", Order::FileSystem, walkOffered);
    EXPECT_EQ(listing.GetPageCount(), 0);
    PathBuffer path;
    EXPECT_EQ(listing.GetPath(path), 1);
    EXPECT_EQ(std::u16string_view(path), u"\\USB3");
}

TEST(Paths, AreCopiedAndComparedWhole) {
    PathBuffer a, b;
    std::fill(std::begin(a), std::end(a), u'x');
    catalogue::copyPath(a, u"\\USB");
    for (std::size_t i = 4; i < std::size(a); ++i) {
        EXPECT_EQ(a[i], u'\0') << i;
    }
    catalogue::copyPath(b, a);
    EXPECT_TRUE(catalogue::samePath(a, b));
    b[259] = u'x';  // whole buffers are compared
    EXPECT_FALSE(catalogue::samePath(a, b));
    catalogue::copyPath(a, std::u16string(400, u'y').c_str());
    EXPECT_EQ(std::u16string_view(a), std::u16string(259, u'y'));
    catalogue::copyPath(a, a + 257);  // from within itself
    EXPECT_EQ(std::u16string_view(a), u"yy");
    EXPECT_EQ(a[258], u'\0');
}

TEST(Paths, EndInTheirLastComponent) {
    EXPECT_EQ(std::u16string_view(catalogue::lastComponent(u"\\USB\\a.avi")), u"a.avi");
    EXPECT_EQ(std::u16string_view(catalogue::lastComponent(u"\\USB")), u"USB");
    EXPECT_EQ(std::u16string_view(catalogue::lastComponent(u"a.avi")), u"a.avi");
    EXPECT_EQ(std::u16string_view(catalogue::lastComponent(u"\\USB\\")), u"");
}

class Catalogue : public test::UnitFolder {
protected:
    catalogue::CatalogueFields fields_;
};

TEST_F(Catalogue, PathKinds) {
    put("USB/a.avi");
    EXPECT_EQ(catalogue::PathKind(u""), 0);
    EXPECT_EQ(catalogue::PathKind(u"\\USB\\b.avi"), 0);
    EXPECT_EQ(catalogue::PathKind(u"\\USB\\a.avi"), 1);
    EXPECT_EQ(catalogue::PathKind(u"\\USB"), 2);
}

TEST_F(Catalogue, VanishedFolderFallsBackToTheRoot) {
    makeFolder("USB");
    EXPECT_EQ(catalogue::ListPlayFolder(fields_, u"\\SDMMCDisk\\Drive"), 0);
    EXPECT_EQ(fields_.playFolderPath[0], u'\0');
    catalogue::ListBrowseFolder(fields_, u"\\SDMMCDisk\\Drive");
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"ROOT");
    EXPECT_EQ(fields_.browseFolderCount, 1);
}

TEST_F(Catalogue, BrowsesDownAndUp) {
    put("USB/trip/a.avi");
    catalogue::ListBrowseFolder(fields_, u"");
    fields_.browsePage = 3;
    catalogue::EnterBrowseFolder(fields_, 0);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"\\USB");
    EXPECT_EQ(fields_.browsePage, 0);
    catalogue::EnterBrowseFolder(fields_, 0);
    EXPECT_EQ(fields_.browseFileCount, 1);
    catalogue::EnterBrowseFolder(fields_, 7);  // no such folder
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"\\USB\\trip");
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"\\USB");
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"ROOT");
}

TEST_F(Catalogue, ConnectModeNeverShowsTheRoot) {
    put("USB/a.avi");
    fields_.connectMode = 1;
    catalogue::ListBrowseFolder(fields_, u"\\USB");
    fields_.browsePage = 2;
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"\\USB");
    EXPECT_EQ(fields_.browsePage, 2);
}

TEST_F(Catalogue, ChoosingAFileListsItsFolderForPlay) {
    put("USB/a.avi");
    put("USB/b.avi");
    put("SDMMCDisk/c.avi");
    catalogue::ListPlayFolder(fields_, u"\\SDMMCDisk");
    catalogue::ListBrowseFolder(fields_, u"\\USB");
    catalogue::SelectBrowseFile(fields_, 1);
    EXPECT_EQ(std::u16string_view(fields_.playFolderPath), u"\\USB");
    EXPECT_EQ(fields_.playFileCount, 2);
    EXPECT_EQ(fields_.playIndex, 1);
    EXPECT_EQ(fields_.persisted.fileIndex, 1);
    catalogue::SelectBrowseFile(fields_, 2);  // no such file
    EXPECT_EQ(fields_.playIndex, 1);
}

TEST_F(Catalogue, RelistingKeepsThePageThatIsStillThere) {
    for (int i = 0; i < 20; ++i) {
        put("USB/" + std::to_string(i) + ".avi");
    }
    catalogue::ListBrowseFolder(fields_, u"\\USB");
    fields_.browsePage = 2;
    catalogue::RelistBrowseFolder(fields_);
    EXPECT_EQ(fields_.browsePage, 2);
    for (int i = 0; i < 12; ++i) {
        std::filesystem::remove(root_ / ("USB/" + std::to_string(i) + ".avi"));
    }
    catalogue::RelistBrowseFolder(fields_);
    EXPECT_EQ(fields_.browsePage, 0);
}

TEST_F(Catalogue, RelistingShowsTheLastPageThereIs) {
    offered.assign(20, {u"a.avi", kFile});
    makeFolder("USB");
    catalogue::ListBrowseFolder(fields_, u"\\USB", walkOffered);
    EXPECT_EQ(fields_.browseFileCount, 20);
    EXPECT_EQ(fields_.browsePageCount, 3);
    struct Case {
        std::size_t entries;
        std::int32_t page, pageAfter;
    };
    for (const Case& c :
         {Case{20, 2, 2}, {20, 3, 2}, {20, -1, 0}, {20, 1, 1}, {16, 2, 1}, {8, 2, 0}, {0, 2, 0}}) {
        offered.assign(c.entries, {u"a.avi", kFile});
        fields_.browsePage = c.page;
        catalogue::RelistBrowseFolder(fields_, walkOffered);
        EXPECT_EQ(fields_.browsePage, c.pageAfter) << c.entries << " entries, page " << c.page;
    }
}

TEST_F(Catalogue, ListsByNameInConnectModeAlone) {
    makeFolder("USB");
    offered = {{u"B.avi", kFile}, {u"b", kFolder}, {u"A.avi", kFile}, {u"a", kFolder}};
    EXPECT_EQ(catalogue::ListPlayFolder(fields_, u"\\USB", walkOffered), 2);
    EXPECT_EQ(fields_.playFileCount, 2);
    EXPECT_EQ(fields_.fileCount, 2);
    EXPECT_EQ(filesOf(fields_.playListing), (Paths{"\\USB\\B.avi", "\\USB\\A.avi"}));
    fields_.connectMode = 1;
    catalogue::ListPlayFolder(fields_, u"\\USB", walkOffered);
    EXPECT_EQ(filesOf(fields_.playListing), (Paths{"\\USB\\A.avi", "\\USB\\B.avi"}));
    catalogue::ListBrowseFolder(fields_, u"\\USB", walkOffered);
    EXPECT_EQ(foldersOf(fields_.browseListing), (Paths{"\\USB\\a", "\\USB\\b"}));
    EXPECT_EQ(fields_.browseFileCount, 2);
    EXPECT_EQ(fields_.browseFolderCount, 2);
    EXPECT_EQ(fields_.browsePageCount, 1);
}

TEST_F(Catalogue, AFileIsNoFolderToList) {
    put("USB/a.avi");
    EXPECT_EQ(catalogue::ListPlayFolder(fields_, u"\\USB"), 1);
    EXPECT_EQ(catalogue::ListPlayFolder(fields_, u"\\USB\\a.avi"), 0);
    EXPECT_EQ(fields_.playFolderPath[0], u'\0');
}

TEST_F(Catalogue, TellsWhetherThePlayFolderIsBrowsed) {
    makeFolder("USB");
    makeFolder("USB2");
    EXPECT_TRUE(catalogue::browsesPlayFolder(fields_));  // both at the root
    catalogue::ListBrowseFolder(fields_, u"\\USB");
    EXPECT_FALSE(catalogue::browsesPlayFolder(fields_));
    catalogue::ListPlayFolder(fields_, u"\\USB");
    EXPECT_TRUE(catalogue::browsesPlayFolder(fields_));
    catalogue::ListPlayFolder(fields_, u"\\USB2");
    EXPECT_FALSE(catalogue::browsesPlayFolder(fields_));
}

TEST_F(Catalogue, ConnectModeGoesUpToTheTopLevelFolder) {
    put("USB/trip/a.avi");
    fields_.connectMode = 1;
    catalogue::ListBrowseFolder(fields_, u"\\USB\\trip");
    fields_.browsePage = 2;
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"\\USB");
    EXPECT_EQ(fields_.browsePage, 0);
    makeFolder("a/b");
    catalogue::ListBrowseFolder(fields_, u"a\\b");
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"a");
    catalogue::ListBrowseFolder(fields_, u"\\USB");
    fields_.connectMode = 0;
    fields_.browsePage = 2;
    catalogue::BrowseParent(fields_);
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"ROOT");
    EXPECT_EQ(fields_.browsePage, 0);
}

int walks = 0;

bool walkCounted(const char16_t* folder, platform::EntryVisitor visitor, void* context) {
    ++walks;
    return walkOffered(folder, visitor, context);
}

TEST_F(Catalogue, ChoosingAFileListsOnlyWhatDiffers) {
    makeFolder("USB");
    offered.assign(2, {u"a.avi", kFile});
    catalogue::ListPlayFolder(fields_, u"\\USB", walkOffered);
    catalogue::ListBrowseFolder(fields_, u"\\USB", walkOffered);
    walks = 0;
    catalogue::SelectBrowseFile(fields_, 1, walkCounted);
    EXPECT_EQ(walks, 0);
    EXPECT_EQ(fields_.playIndex, 1);
    catalogue::SelectBrowseFile(fields_, 0, walkCounted);
    EXPECT_EQ(fields_.playIndex, 0);
    fields_.playIndex = 1;
    catalogue::SelectBrowseFile(fields_, -1, walkCounted);
    EXPECT_EQ(fields_.playIndex, 1);
    offered.assign(3, {u"a.avi", kFile});  // one more on the card
    catalogue::RelistBrowseFolder(fields_, walkOffered);
    catalogue::SelectBrowseFile(fields_, 2, walkCounted);
    EXPECT_EQ(walks, 1);
    EXPECT_EQ(fields_.playFileCount, 3);
    EXPECT_EQ(fields_.playIndex, 2);
}

TEST_F(Catalogue, NothingIsListedBeforeTheFirstFolder) {
    EXPECT_EQ(fields_.connectMode, 0);
    EXPECT_EQ(fields_.fileCount, 0);
    EXPECT_EQ(fields_.browsePage, 0);
    EXPECT_EQ(fields_.browseFileCount, 0);
    EXPECT_EQ(fields_.browseFolderCount, 0);
    EXPECT_EQ(fields_.browsePageCount, 0);
    EXPECT_EQ(fields_.playListing.GetPageCount(), 0);
    EXPECT_EQ(std::u16string_view(fields_.connectPath), u"");
    EXPECT_EQ(std::u16string_view(fields_.browseFolderPath), u"");
}

}  // namespace
