#include <windows.h>

#include <algorithm>

#include "platform/wide.h"
#include "settings/hand_over.h"

namespace settings {
namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\BLACKBOX";
constexpr wchar_t kValue[] = L"ConnectPath";
constexpr DWORD kLongestValueBytes = platform::kPathCapacity * sizeof(char16_t);

bool stopAtFirst(void*, const char16_t*, platform::EntryKind) {
    return false;
}

}  // namespace

void ReadConnectPath(std::int32_t& connectMode, char16_t (&connectPath)[platform::kPathCapacity]) {
    std::fill(std::begin(connectPath), std::end(connectPath), u'\0');
    connectMode = 0;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) {
        return;
    }
    DWORD type = 0;
    DWORD bytes = kLongestValueBytes;
    const LONG result =
        RegQueryValueExW(key, kValue, nullptr, &type, reinterpret_cast<BYTE*>(connectPath), &bytes);
    if (result != ERROR_SUCCESS || type != REG_SZ) {
        connectPath[0] = u'\0';
    }
    connectPath[platform::kPathCapacity - 1] = u'\0';
    if (connectPath[0] != u'\0' && platform::walkFolder(connectPath, stopAtFirst, nullptr)) {
        connectMode = 1;
        RegDeleteValueW(key, kValue);
    }
    RegCloseKey(key);
}

}  // namespace settings
