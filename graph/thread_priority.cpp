// Writes and removes the registry values that set the priorities of DirectShow's threads.
#include "graph/thread_priority.h"

#include <windows.h>

namespace {

constexpr wchar_t kDirectShowKey[] = L"SOFTWARE\\Microsoft\\DirectShow";
constexpr wchar_t kGraphCacheKey[] =
    L"SOFTWARE\\Microsoft\\DirectX\\DirectShow\\GraphCache\\Entries";
constexpr wchar_t kPriorityKey[] = L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority";

// Windows CE thread priorities, 0 the highest, 255 the lowest. The asynchronous video renderer
// shares the highest on purpose: late frames show more than late sound.
struct Priority {
    const wchar_t* name;
    DWORD value;
};
constexpr Priority kPriorities[] = {
    {L"Highest", 249},     {L"AboveNormal", 250}, {L"Normal", 251},
    {L"BelowNormal", 252}, {L"Video", 250},       {L"AsyncVideoRenderer", 249},
};

}  // namespace

std::int32_t SetDirectShowThreadPriority(int enable) {
    if (enable == 0) {
        // The parent key, because the program manages all of it. Required.
        return RegDeleteKeyW(HKEY_LOCAL_MACHINE, kDirectShowKey);
    }
    HKEY key = nullptr;
    LONG result = RegCreateKeyExW(HKEY_LOCAL_MACHINE, kPriorityKey, 0, nullptr, 0, KEY_ALL_ACCESS,
                                  nullptr, &key, nullptr);
    if (result != ERROR_SUCCESS) {
        return result;
    }
    for (const Priority& priority : kPriorities) {
        result =
            RegSetValueExW(key, priority.name, 0, REG_DWORD,
                           reinterpret_cast<const BYTE*>(&priority.value), sizeof priority.value);
        if (result != ERROR_SUCCESS) {
            break;
        }
    }
    RegCloseKey(key);
    return result;
}

void ForgetCachedGraphs() {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kGraphCacheKey);
}
