// What can be seen of the unit while it runs: its windows, the registry values it works with, and
// what the car around the player does.
#include <algorithm>
#include <string_view>

#include "simulator/hub/requests.h"

namespace hub {
namespace {

// Helper windows that Windows itself gives every process.
constexpr std::wstring_view kNotShown[] = {L"IME", L"MSCTFIME UI", L"OleMainThreadWndClass",
                                           L"headunit.witness"};

BOOL CALLBACK addWindow(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t className[128] = {};
    wchar_t title[256] = {};
    GetClassNameW(window, className, 128);
    GetWindowTextW(window, title, 256);
    const std::wstring owner = childName(process);
    if (owner.empty() || std::ranges::find(kNotShown, className) != std::end(kNotShown)) {
        return TRUE;
    }
    RECT area = {};
    GetWindowRect(window, &area);
    reinterpret_cast<Json*>(parameter)->push_back(
        {{"title", narrow(title)},
         {"class", narrow(className)},
         {"process", narrow(owner)},
         {"visible", IsWindowVisible(window) != FALSE},
         {"enabled", IsWindowEnabled(window) != FALSE},
         {"rect", {area.left, area.top, area.right, area.bottom}}});
    return TRUE;
}

Json connectPath() {
    wchar_t text[260] = {};
    DWORD bytes = sizeof(text) - sizeof(wchar_t);
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, kHandOverKey, L"ConnectPath",
                                        RRF_RT_REG_SZ, nullptr, text, &bytes);
    return status == ERROR_SUCCESS ? Json(narrow(text)) : Json();
}

// The DWORD values of a key by their names.
Json numbersOf(HKEY root, const wchar_t* path) {
    Json out = Json::object();
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return out;
    }
    wchar_t name[256];
    for (DWORD i = 0;; ++i) {
        DWORD length = 256;
        DWORD value = 0;
        DWORD bytes = sizeof(value);
        DWORD type = 0;
        const LSTATUS status = RegEnumValueW(key, i, name, &length, nullptr, &type,
                                             reinterpret_cast<BYTE*>(&value), &bytes);
        if (status == ERROR_NO_MORE_ITEMS) {
            break;
        }
        if (status == ERROR_SUCCESS && type == REG_DWORD) {
            out[narrow(name)] = value;
        }
    }
    RegCloseKey(key);
    return out;
}

}  // namespace

Json state() {
    Json windows = Json::array();
    EnumWindows(&addWindow, reinterpret_cast<LPARAM>(&windows));
    return {{"windows", windows},
            {"connectPath", connectPath()},
            {"priorities", numbersOf(HKEY_LOCAL_MACHINE, kPriorityKey)},
            {"power", hasPower() ? "on" : "cut"},
            {"player", isRunning(kPlayer)},
            {"speed", speed() == kNoSignal ? Json() : Json(speed())},
            {"muted", muted() < 0 ? Json() : Json(muted() == 1)},
            {"faults", numbersOf(HKEY_CURRENT_USER, kFaultKey)}};
}

std::wstring statusLine() {
    return std::wstring(hasPower() ? L"power on, " : L"POWER CUT, ") +
           (isRunning(kPlayer) ? L"player runs, " : L"no player, ") +
           (speed() == kNoSignal ? L"no speed signal" : std::to_wstring(speed()) + L" km/h") +
           (muted() == 1 ? L", muted" : L"");
}

}  // namespace hub
