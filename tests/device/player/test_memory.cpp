// A unit without memory: of everything that the player does, the n-th allocation fails, for every n
// (memory, device contexts, bitmaps, fonts and brushes alike). What it does then is what it does
// with a file that cannot be played or a bitmap that is missing, and afterwards all is as before.
#include <cstdlib>
#include <new>

#include "catalogue/catalogue.h"
#include "platform/wide.h"
#include "player/player.h"
#include "settings/ini_store.h"
#include "simulator/coredll/unit.h"
#include "tests/device/player/unit.h"

// The player's allocations go the same way as in its own program: to coredll.dll.
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return std::malloc(bytes != 0 ? bytes : 1);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return operator new(bytes, std::nothrow);
}

namespace test {
namespace {

using coredll::Setting;

std::vector<Boxes::Box>& boxes() {
    return Boxes::shown;
}

class NoMemory : public PlayerUnit {
protected:
    void TearDown() override {
        coredllSet(Setting::AllocationFails, 0);
        PlayerUnit::TearDown();
    }

    // Runs `operation` once with memory for everything and returns how many allocations it made.
    template <typename Operation>
    static DWORD allocationsOf(Operation operation) {
        const DWORD before = coredllUse().allocations;
        operation();
        return coredllUse().allocations - before;
    }

    // Runs `operation` with each of its allocations failing in turn, and `check` after each.
    template <typename Operation, typename Check>
    static void failEach(Operation operation, Check check) {
        const DWORD count = allocationsOf(operation);
        check(0);
        EXPECT_GT(count, 0u);
        for (DWORD n = 1; n <= count; ++n) {
            SCOPED_TRACE(n);
            coredllSet(Setting::AllocationFails, n);
            operation();
            coredllSet(Setting::AllocationFails, 0);
            check(n);
        }
        RecordProperty("allocations", static_cast<int>(count));
    }
};

// The skin of this checkout, on the unit.
void installSkin() {
    CreateDirectoryW(L"\\ResidentFlash", nullptr);
    CreateDirectoryW(L"\\ResidentFlash\\Image", nullptr);
    CreateDirectoryW(L"\\ResidentFlash\\Image\\Movie", nullptr);
    for (const wchar_t* set : {L"A", L"B", L"C", L"D"}) {
        const std::wstring from = std::wstring(SKIN_FOLDER) + set + L"\\";
        const std::wstring to = std::wstring(L"\\ResidentFlash\\Image\\Movie\\") + set;
        CreateDirectoryW(to.c_str(), nullptr);
        WIN32_FIND_DATAW found{};
        const HANDLE search = FindFirstFileW((from + L"*.bmp").c_str(), &found);
        ASSERT_NE(INVALID_HANDLE_VALUE, search) << "the skin has not been rendered";
        do {
            CopyFileW((from + found.cFileName).c_str(), (to + L"\\" + found.cFileName).c_str(),
                      FALSE);
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
}

int loadedBitmaps() {
    int count = 0;
    for (const auto& set : appState.screens.bitmaps) {
        for (const void* bitmap : set) {
            count += bitmap != nullptr ? 1 : 0;
        }
    }
    return count;
}

void startAgain() {
    if (appState.mainWindow != nullptr) {
        appState.exiting = 1;
        DestroyWindow(appState.mainWindow);
        appState.mainWindow = nullptr;
        MSG quit{};
        PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    }
    appState.exiting = 0;
    appState.imageLoaded = 0;
    openPlayerWindow();
    UpdateWindow(appState.mainWindow);
}

TEST_F(NoMemory, AStartShowsItsWindowAndMissesWhatItCouldNotHold) {
    installSkin();
    startAgain();
    const int all = loadedBitmaps();
    ASSERT_GT(all, 50);
    failEach(startAgain, [all](DWORD n) {
        EXPECT_NE(nullptr, appState.mainWindow);
        EXPECT_TRUE(IsWindowVisible(appState.mainWindow));
        EXPECT_EQ(1, appState.imageLoaded);
        EXPECT_GE(loadedBitmaps(), n == 0 ? all : all - 1);
    });
    startAgain();
    EXPECT_EQ(all, loadedBitmaps());
}

TEST_F(NoMemory, APaintDrawsLessOrNothingAndKeepsNothing) {
    const auto paint = [] {
        InvalidateRect(appState.mainWindow, nullptr, FALSE);
        UpdateWindow(appState.mainWindow);
    };
    paint();  // the first one loads the sets that are not showing
    const DWORD bitmaps = coredllUse().bitmapBytes;
    for (const int mode : {0, 1, 2, 3}) {
        SCOPED_TRACE(mode);
        appState.screenMode = mode;
        failEach(paint, [bitmaps](DWORD) {
            EXPECT_EQ(bitmaps, coredllUse().bitmapBytes);
            EXPECT_FALSE(GetUpdateRect(appState.mainWindow, nullptr, FALSE));
        });
    }
    appState.screenMode = 0;
}

TEST_F(NoMemory, AListingHasWhatItCouldHold) {
    static constexpr std::int32_t kFiles = 150;  // more than the room that a list begins with
    for (std::int32_t i = 0; i < kFiles; ++i) {
        const std::wstring path = L"\\" + folder_ + L"\\" + std::to_wstring(i) + L".avi";
        CloseHandle(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    const std::u16string folder = std::u16string(u"\\") + platform::utf16(folder_.c_str());
    const auto list = [&folder] { catalogue::ListBrowseFolder(appState, folder.c_str()); };
    failEach(list, [](DWORD n) {
        EXPECT_EQ(appState.browseFileCount, appState.browseListing.GetFileCount());
        EXPECT_LE(appState.browseFileCount, kFiles);
        EXPECT_EQ(n == 0, appState.browseFileCount == kFiles);
        catalogue::PathBuffer path{};
        for (std::int32_t i = 0; i < appState.browseFileCount; ++i) {
            EXPECT_EQ(1, appState.browseListing.GetFilePath(i, path));
            EXPECT_NE(u'\0', path[0]);
        }
        EXPECT_EQ(0, appState.browseListing.GetFilePath(appState.browseFileCount, path));
    });
    list();
    EXPECT_EQ(kFiles, appState.browseFileCount);
}

TEST_F(NoMemory, APlayRequestPlaysOrIsRefused) {
    constexpr WPARAM kPlay = 20507;
    put(L"a.avi");
    startInFolder();
    const auto play = [] {
        Player::stopPlayback();
        boxes().clear();
        command(kPlay);
    };
    failEach(play, [](DWORD) {
        if (appState.persisted.playState == settings::kPlaying) {
            EXPECT_TRUE(appState.filterControl.hasGraph());
            EXPECT_EQ(1, appState.filterControl.HasAudioRenderer());
            EXPECT_TRUE(boxes().empty());
        } else {
            EXPECT_EQ(settings::kStopped, appState.persisted.playState);
            EXPECT_FALSE(appState.filterControl.hasGraph());
            ASSERT_EQ(1u, boxes().size());
            EXPECT_EQ(L"\n\n재생 할 수 없는 파일 입니다.", boxes().front().text);
        }
        EXPECT_EQ(1, appState.playLoaded);
    });
    play();
    EXPECT_EQ(settings::kPlaying, appState.persisted.playState);
}

std::string bytesOf(const std::wstring& path) {
    std::string bytes(4096, '\0');
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    DWORD count = 0;
    ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
    CloseHandle(file);
    bytes.resize(count);
    return bytes;
}

void putBytes(const std::wstring& path, const std::string& bytes) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD count = 0;
    EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
    CloseHandle(file);
}

TEST_F(NoMemory, SharedSettingsAreWrittenOrLeftAlone) {
    const std::string before = "[TRIP]\r\nAppProgram=1\r\n[Other]\r\nKey=7\r\n";
    const std::string after = "[TRIP]\r\nAppProgram=2\r\n[Other]\r\nKey=7\r\n";
    const std::wstring path = L"\\" + folder_ + L"\\Config.ini";
    const std::u16string name = platform::utf16(path.c_str());
    putBytes(path, before);
    int result = 0;
    const auto write = [&name, &result] {
        result = settings::writeIniInt(u"TRIP", u"AppProgram", 2, name.c_str());
    };
    failEach(write, [&](DWORD n) {
        EXPECT_EQ(n == 0 ? 1 : result, result);
        EXPECT_EQ(result == 1 ? after : before, bytesOf(path));
        putBytes(path, before);
    });
}

}  // namespace
}  // namespace test
