#include "tests/device/player/unit.h"

#include <array>

#include "catalogue/folder_listing.h"
#include "platform/text.h"
#include "platform/wide.h"
#include "player/player.h"
#include "settings/persisted_state.h"
#include "shell/message_table.h"
#include "ui/rect.h"

namespace test {
namespace {

constexpr wchar_t kClass[] = L"Video";

LRESULT CALLBACK handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return shell::dispatchMessage(window, message, wParam, lParam);
}

// Makes the folders of a path that ends with a backslash. Takes no memory, as a test may leave
// none.
void makeFolders(const wchar_t* path) {
    std::array<wchar_t, MAX_PATH> folder{L'\\'};
    for (std::size_t i = 0; path[i] != L'\0' && i + 2 < folder.size(); ++i) {
        if (path[i] == L'\\') {
            CreateDirectoryW(folder.data(), nullptr);
        }
        folder[i + 1] = path[i];
    }
}

}  // namespace

void openPlayerWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = handle;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kClass;
    RegisterClassW(&windowClass);
    appState.hInstance = windowClass.hInstance;
    makeFolders(L"ResidentFlash2\\Data\\");
    CreateWindowExW(0, kClass, kClass, WS_VISIBLE, 0, 0, ui::kScreenWidth, ui::kScreenHeight,
                    nullptr, nullptr, appState.hInstance, nullptr);
    ASSERT_NE(appState.mainWindow, nullptr);
}

void PlayerUnit::SetUp() {
    // A file that was played may be open for a moment longer, so no test writes over another's.
    static int tests = 0;
    folder_ = L"SDMMCDisk\\" + std::to_wstring(++tests);
    makeFolders((folder_ + L"\\").c_str());
    if (appState.mainWindow == nullptr) {
        openPlayerWindow();
    }
    appState.lastSkipTick = GetTickCount() - 60000;
}

void PlayerUnit::TearDown() {
    Player::stopPlayback();
    handleMessages();
}

void PlayerUnit::put(const std::wstring& name) {
    const std::wstring path = L"\\" + folder_ + L"\\" + name;
    ASSERT_NE(CopyFileW(MEDIA_FOLDER L"clip.avi", path.c_str(), FALSE), 0) << GetLastError();
}

void PlayerUnit::start(const settings::PersistedState& remembered) {
    settings::writePersistedState(remembered);
    Player::initialisePlayback();
    handleMessages();
}

void PlayerUnit::startInFolder(std::int32_t fileIndex) {
    settings::PersistedState remembered;
    remembered.fileIndex = fileIndex;
    catalogue::copyPath(remembered.folder, platform::utf16((L"\\" + folder_).c_str()));
    start(remembered);
}

void PlayerUnit::command(WPARAM wParam, LPARAM lParam) {
    PostMessageW(appState.mainWindow, appState.commandMessage, wParam, lParam);
    handleMessages();
}

void PlayerUnit::handleMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        DispatchMessageW(&message);
    }
}

long PlayerUnit::graphVolume() {
    long volume = 1;
    platform::ComPtr<IBasicAudio> audio;
    if (IGraphBuilder* const graph = appState.filterControl.builder()) {
        graph->QueryInterface(IID_IBasicAudio, audio.outVoid());
    }
    if (audio) {
        audio->get_Volume(&volume);
    }
    return volume;
}

}  // namespace test
