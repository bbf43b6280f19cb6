// GDI objects are counted in the table that the system shares with the process (it stands in the
// process environment block), handles in the system's list of all handles: Wine's GetGuiResources
// and GetProcessHandleCount tell nothing.
#include "tests/soak/figures.h"

// These need windows.h before them.
#include <psapi.h>
#include <tlhelp32.h>
#include <winternl.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

// An entry of the GDI handle table; the type of a free one is 0.
struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t userPointer;
};
static_assert(sizeof(GdiEntry) == 24);
constexpr std::size_t kGdiEntries = 0x4000;
constexpr std::size_t kGdiTableInPeb = 0xF8;  // 64-bit PEB, GdiSharedHandleTable

bool countGdiObjects(HANDLE process, unsigned& count) {
    PROCESS_BASIC_INFORMATION basic{};
    const auto* const peb = reinterpret_cast<const std::uint8_t*>(
        NtQueryInformationProcess(process, ProcessBasicInformation, &basic, sizeof basic,
                                  nullptr) == 0
            ? basic.PebBaseAddress
            : nullptr);
    const std::uint8_t* table = nullptr;
    std::vector<GdiEntry> entries(kGdiEntries);
    if (peb == nullptr ||
        !ReadProcessMemory(process, peb + kGdiTableInPeb, &table, sizeof table, nullptr) ||
        !ReadProcessMemory(process, table, entries.data(), kGdiEntries * sizeof(GdiEntry),
                           nullptr)) {
        return false;
    }
    for (const GdiEntry& entry : entries) {
        count += entry.type != 0 ? 1 : 0;
    }
    return true;
}

// The system's list of handles as NtQuerySystemInformation(16) gives it.
struct SystemHandle {
    std::uint32_t process;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint16_t value;
    void* object;
    std::uint32_t access;
};
static_assert(sizeof(SystemHandle) == 24);

bool listHandles(std::vector<SystemHandle>& handles) {
    constexpr auto kSystemHandles = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    constexpr std::size_t kListBytes = 4u << 20;
    constexpr std::size_t kListStart = 8;  // behind the number of entries
    std::vector<std::uint8_t> list(kListBytes);
    if (NtQuerySystemInformation(kSystemHandles, list.data(), static_cast<ULONG>(kListBytes),
                                 nullptr) != 0) {
        return false;
    }
    std::uint32_t entries = 0;
    std::memcpy(&entries, list.data(), sizeof entries);
    handles.resize(entries);
    std::memcpy(handles.data(), list.data() + kListStart, entries * sizeof(SystemHandle));
    return true;
}

// The system's number for the type of registry keys is found by looking at one of our own.
bool countHandles(DWORD process, Figures& figures) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return false;
    }
    std::vector<SystemHandle> handles;
    const bool listed = listHandles(handles);
    RegCloseKey(key);
    const auto keyValue = static_cast<std::uint16_t>(reinterpret_cast<std::uintptr_t>(key));
    int keyType = -1;
    for (const SystemHandle& handle : handles) {
        if (handle.process == GetCurrentProcessId() && handle.value == keyValue) {
            keyType = handle.type;
        }
    }
    for (const SystemHandle& handle : handles) {
        if (handle.process == process) {
            ++(handle.type == keyType ? figures.registryKeys : figures.handles);
        }
    }
    return listed && keyType >= 0;
}

unsigned countThreads(DWORD process) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    unsigned count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == process ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

}  // namespace

bool measure(DWORD number, Figures& figures) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, number);
    if (process == nullptr) {
        return false;
    }
    PROCESS_MEMORY_COUNTERS memory{};
    figures = {};
    const bool good = countHandles(number, figures) &&
                      GetProcessMemoryInfo(process, &memory, sizeof memory) &&
                      countGdiObjects(process, figures.gdiObjects);
    constexpr std::size_t kKib = 1024;
    figures.privateKib = memory.PagefileUsage / kKib;
    figures.threads = countThreads(number);
    CloseHandle(process);
    return good;
}

void print(const Figures& figures) {
    std::printf("%u %u %u %u %zu\n", figures.handles, figures.registryKeys, figures.gdiObjects,
                figures.threads, figures.privateKib);
    std::fflush(stdout);
}
