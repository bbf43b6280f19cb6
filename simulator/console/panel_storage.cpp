// The storage rows of the panel: which folder of the PC a slot shows.
#include <shlobj.h>

#include <cwchar>
#include <vector>

#include "simulator/console/hub.h"
#include "simulator/console/panel.h"

namespace hub {
namespace {

const wchar_t* const kSlots[] = {L"SDMMCDisk", L"SDMMCDisk2", L"USB", L"USB2", L"USB3", L"USB4"};
// Wine's name for the PC's own paths; they follow with backslashes.
constexpr wchar_t kUnixPrefix[] = L"\\\\?\\unix";

// The folder that the field was last set to. What the user types instead stands until it is
// inserted, the card is removed or another slot is chosen.
std::wstring shown;

bool isTyped(HWND panel) {
    return SendDlgItemMessageW(panel, kFolderText, EM_GETMODIFY, 0, 0) != 0;
}

std::wstring chosenSlot(HWND panel) {
    const LRESULT choice = SendDlgItemMessageW(panel, kVolumeChoice, CB_GETCURSEL, 0, 0);
    return choice >= 0 ? kSlots[choice] : L"";
}

std::wstring environmentText(const wchar_t* name) {
    wchar_t text[1024] = {};
    const DWORD length = GetEnvironmentVariableW(name, text, 1024);
    return length < 1024 ? text : L"";
}

// The path as Windows' functions take it, whether it is the PC's or the unit's.
std::wstring windowsPath(const std::wstring& path) {
    if (!path.starts_with(L"/")) {
        return path;
    }
    std::wstring out = kUnixPrefix + path;
    for (wchar_t& c : out) {
        c = c == L'/' ? L'\\' : c;
    }
    return out;
}

// The path as the PC takes it; empty when there is none.
std::wstring unixPath(const std::wstring& path) {
    using Translate = char*(CDECL*)(const wchar_t*);
    if (path.starts_with(L"/")) {
        return path;
    }
    const auto translate = reinterpret_cast<Translate>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    char* found = translate == nullptr ? nullptr : translate(path.c_str());
    if (found == nullptr) {
        return {};
    }
    const std::wstring out = wide(found);
    HeapFree(GetProcessHeap(), 0, found);
    return out;
}

bool isFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(windowsPath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// What the `headunit` command says about the slot; empty when its own card is in.
std::wstring folderOf(const std::wstring& slot) {
    const HANDLE file = CreateFileW((L"H:\\.unit\\slot-" + slot).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    char bytes[2048];
    DWORD count = 0;
    ReadFile(file, bytes, sizeof(bytes), &count, nullptr);
    CloseHandle(file);
    const std::string text(bytes, count);
    return wide(text.substr(0, text.find('\n')));
}

// The folder that is chosen when the dialog opens.
int CALLBACK chooseFirst(HWND dialog, UINT message, LPARAM, LPARAM path) {
    if (message == BFFM_INITIALIZED) {
        placeOverPanel(dialog);
        SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, path);
    }
    return 0;
}

}  // namespace

void runHeadunit(const std::vector<std::wstring>& words) {
    const std::wstring program = windowsPath(environmentText(L"HEADUNIT_COMMAND"));
    std::wstring line = L"headunit";
    for (const std::wstring& word : words) {
        line += L" \"" + word + L"\"";
    }
    line += L" --device \"" + environmentText(L"HEADUNIT_DEVICE") + L"\"";
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process = {};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                       &start, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

void fillSlots(HWND panel) {
    for (const wchar_t* const slot : kSlots) {
        SendDlgItemMessageW(panel, kVolumeChoice, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(slot));
    }
    SendDlgItemMessageW(panel, kVolumeChoice, CB_SETCURSEL, 0, 0);
}

void showSlot(HWND panel, bool always) {
    const std::wstring folder = folderOf(chosenSlot(panel));
    if (always || (folder != shown && !isTyped(panel))) {
        shown = folder;
        SetDlgItemTextW(panel, kFolderText, folder.c_str());
    }
}

void insertCard(HWND panel, int) {
    const std::wstring slot = chosenSlot(panel);
    const std::wstring text = textOf(panel, kFolderText);
    const std::wstring folder = text.empty() ? L"--own" : unixPath(text);
    if (!text.empty() && (folder.empty() || !isFolder(text))) {
        showBox(panel, L"There is no folder " + text, L"Insert");
        return;
    }
    SendDlgItemMessageW(panel, kFolderText, EM_SETMODIFY, FALSE, 0);
    const bool isIn = isFolder(L"H:\\" + slot);
    if (isIn && text == folderOf(slot)) {
        runHeadunit({L"card", L"insert", slot});  // announced once more
    } else {
        runHeadunit({L"card", isIn ? L"change" : L"insert", slot, folder});
    }
}

void removeCard(HWND panel, int) {
    showSlot(panel, true);
    runHeadunit({L"card", L"remove", chosenSlot(panel)});
}

void browse(HWND panel, int) {
    std::wstring first = windowsPath(textOf(panel, kFolderText));
    const std::wstring title = L"The folder of the PC that " + chosenSlot(panel) + L" shows";
    const bool usable = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    BROWSEINFOW info = {};
    info.hwndOwner = panel;
    info.lpszTitle = title.c_str();
    info.ulFlags = BIF_RETURNONLYFSDIRS | (usable ? BIF_NEWDIALOGSTYLE : 0);
    info.lpfn = &chooseFirst;
    info.lParam = reinterpret_cast<LPARAM>(first.c_str());
    wchar_t path[MAX_PATH] = {};
    if (PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&info)) {
        if (SHGetPathFromIDListW(chosen, path)) {
            SetDlgItemTextW(panel, kFolderText, unixPath(path).c_str());
        }
        CoTaskMemFree(chosen);
    }
    if (usable) {
        CoUninitialize();
    }
    SetFocus(GetDlgItem(panel, kFolderText));
}

}  // namespace hub
