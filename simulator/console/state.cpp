// What can be seen of the unit while it runs: its windows and the registry values it works with.
#include <cwchar>

#include "simulator/console/hub.h"

namespace hub {
namespace {

constexpr wchar_t kHandOverKey[] = L"SOFTWARE\\BLACKBOX";
constexpr wchar_t kPriorityKey[] = L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority";
// Helper windows that Windows itself gives every process.
const wchar_t* const kNotShown[] = {L"IME", L"MSCTFIME UI", L"OleMainThreadWndClass",
                                    L"headunit.witness"};

std::string quoted(const std::wstring& text) {
    std::string out = "\"";
    for (const char c : narrow(text)) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (code < 0x20) {
            constexpr char kDigits[] = "0123456789abcdef";
            out += "\\u00";
            out += kDigits[code >> 4];
            out += kDigits[code & 15];
        } else {
            out += c;
        }
    }
    return out + '"';
}

struct Listing {
    std::string json;
};

BOOL CALLBACK addWindow(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t className[128] = {};
    wchar_t title[256] = {};
    GetClassNameW(window, className, 128);
    GetWindowTextW(window, title, 256);
    const std::wstring owner = childName(process);
    if (owner.empty()) {
        return TRUE;
    }
    for (const wchar_t* const hidden : kNotShown) {
        if (std::wcscmp(className, hidden) == 0) {
            return TRUE;
        }
    }
    RECT area = {};
    GetWindowRect(window, &area);
    std::string& json = reinterpret_cast<Listing*>(parameter)->json;
    json += json.empty() ? "" : ", ";
    json += "{\"title\": " + quoted(title) + ", \"class\": " + quoted(className) +
            ", \"process\": " + quoted(owner) +
            ", \"visible\": " + (IsWindowVisible(window) ? "true" : "false") +
            ", \"enabled\": " + (IsWindowEnabled(window) ? "true" : "false") + ", \"rect\": [" +
            std::to_string(area.left) + ", " + std::to_string(area.top) + ", " +
            std::to_string(area.right) + ", " + std::to_string(area.bottom) + "]}";
    return TRUE;
}

std::string connectPath() {
    wchar_t text[260] = {};
    DWORD bytes = sizeof(text) - sizeof(wchar_t);
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, kHandOverKey, L"ConnectPath",
                                        RRF_RT_REG_SZ, nullptr, text, &bytes);
    return status == ERROR_SUCCESS ? quoted(text) : "null";
}

std::string priorities() {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kPriorityKey, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return "{}";
    }
    std::string json;
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
            json += (json.empty() ? "" : ", ") + quoted(name) + ": " + std::to_string(value);
        }
    }
    RegCloseKey(key);
    return "{" + json + "}";
}

}  // namespace

std::string stateJson() {
    Listing listing;
    EnumWindows(&addWindow, reinterpret_cast<LPARAM>(&listing));
    return "{\"windows\": [" + listing.json + "], \"connectPath\": " + connectPath() +
           ", \"priorities\": " + priorities() + "}";
}

}  // namespace hub
