// The storage page of the panel: which folder of the PC a slot shows.
#include <shlobj.h>

#include "simulator/hub/panel.h"

namespace hub {
namespace {

// Wine's name for the PC's own paths; they follow with backslashes.
constexpr wchar_t kUnixPrefix[] = L"\\\\?\\unix";

// The folder that the field was last set to. What the user types instead stands until it is
// inserted, the card is removed or another slot is chosen.
std::wstring shown;

bool isTyped(HWND panel) {
    return SendDlgItemMessageW(panel, kFolderText, EM_GETMODIFY, 0, 0) != 0;
}

std::wstring chosenSlot(HWND panel) {
    return textOf(panel, kSlotChoice);
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
    return wide(runFile(L"slot-" + slot));
}

// The folder that is chosen when the dialog opens.
int CALLBACK chooseFirst(HWND dialog, UINT message, LPARAM, LPARAM path) {
    if (message == BFFM_INITIALIZED) {
        placeOverPanel(GetParent(dialog), dialog);
        SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, path);
    }
    return 0;
}

}  // namespace

void showSlot(HWND panel, bool always) {
    const std::wstring folder = folderOf(chosenSlot(panel));
    if (always || (folder != shown && !isTyped(panel))) {
        shown = folder;
        SetDlgItemTextW(panel, kFolderText, folder.c_str());
    }
}

void insertCard(HWND panel) {
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
        runHeadunit(panel, {"card", "insert", narrow(slot)});  // announced once more
    } else {
        runHeadunit(panel, {"card", isIn ? "change" : "insert", narrow(slot), narrow(folder)});
    }
}

void removeCard(HWND panel) {
    showSlot(panel, true);
    runHeadunit(panel, {"card", "remove", narrow(chosenSlot(panel))});
}

void browse(HWND panel) {
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
