// Prints what a process holds, in one line. Usage: figures.exe PROGRAM.exe | figures.exe --check
// --check makes handles, keys, GDI objects, a thread and memory of its own, and tells whether all
// of them were counted, and were seen to be gone afterwards.
#include "tests/soak/figures.h"

// Needs windows.h before it.
#include <tlhelp32.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <vector>

namespace {

// 0 when no such program runs.
DWORD findProcess(const wchar_t* program) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    DWORD found = 0;
    for (BOOL more = Process32FirstW(snapshot, &entry); more && found == 0;
         more = Process32NextW(snapshot, &entry)) {
        found = _wcsicmp(entry.szExeFile, program) == 0 ? entry.th32ProcessID : 0;
    }
    CloseHandle(snapshot);
    return found;
}

DWORD WINAPI waitFor(void* event) {
    return WaitForSingleObject(event, INFINITE);
}

// Are a handful of things of our own seen, and seen to be gone?
int check() {
    constexpr unsigned kMade = 10;
    const DWORD self = GetCurrentProcessId();
    Figures before, with, after;
    std::vector<HGDIOBJ> brushes(kMade);
    std::vector<HANDLE> events(kMade);
    std::vector<HKEY> keys(kMade);
    constexpr std::size_t kBytes = 8u << 20;
    bool good = measure(self, before);
    for (unsigned i = 0; i < kMade; ++i) {
        brushes[i] = CreateSolidBrush(i);
        events[i] = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_READ, &keys[i]);
    }
    const HANDLE thread = CreateThread(nullptr, 0, waitFor, events[0], 0, nullptr);
    void* const memory = VirtualAlloc(nullptr, kBytes, MEM_COMMIT, PAGE_READWRITE);
    std::memset(memory, 1, kBytes);  // only what was touched counts
    good = measure(self, with) && good;
    SetEvent(events[0]);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    VirtualFree(memory, 0, MEM_RELEASE);
    for (unsigned i = 0; i < kMade; ++i) {
        DeleteObject(brushes[i]);
        CloseHandle(events[i]);
        RegCloseKey(keys[i]);
    }
    good = measure(self, after) && good;
    good = good && with.gdiObjects == before.gdiObjects + kMade &&
           after.gdiObjects == before.gdiObjects && with.handles == before.handles + kMade + 1 &&
           after.handles == before.handles && with.registryKeys == before.registryKeys + kMade &&
           after.registryKeys == before.registryKeys && with.threads == before.threads + 1 &&
           after.threads == before.threads && with.privateKib >= before.privateKib + kBytes / 1024;
    print(before);
    print(with);
    print(after);
    std::puts(good ? "counted" : "NOT COUNTED");
    return good ? 0 : 1;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: figures.exe PROGRAM.exe | figures.exe --check\n", stderr);
        return 2;
    }
    if (std::wcscmp(arguments[1], L"--check") == 0) {
        return check();
    }
    Figures figures;
    const DWORD process = findProcess(arguments[1]);
    if (process == 0 || !measure(process, figures)) {
        std::fputs("figures: the program does not run, or cannot be looked into\n", stderr);
        return 1;
    }
    print(figures);
    return 0;
}
