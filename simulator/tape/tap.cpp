// Watches the player from inside: the unit loads this library into the new process before its first
// instruction runs. What leaves the player towards another process is recorded by who receives it;
// here only what nobody else can see is put on the tape, and passed on unchanged:
//   - kernel debug output, which on the unit goes to the debug port, with its text as printed;
//   - registered messages that the player (or a second start of it) posts to the player's window;
//   - files that the player writes and deletes.
// Two faults of the unit are made here too: the power cut after a number of messages, and the order
// in which folders list their entries. A window of the unit's own beside the player's tells when
// the player has taken what was on its way to it (settled.h). The player's standard output is made
// unbuffered, as the unit's debug port is.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "simulator/tape/tap.h"

namespace {

struct Tap {
    const char* function;
    void* replacement;
};
const Tap kTaps[] = {
    {"OutputDebugStringW", reinterpret_cast<void*>(&tap::debugString)},
    {"PostMessageW", reinterpret_cast<void*>(&tap::postMessage)},
    {"SendMessageW", reinterpret_cast<void*>(&tap::sendMessage)},
    {"CreateWindowExW", reinterpret_cast<void*>(&tap::createWindow)},
    {"CreateFileW", reinterpret_cast<void*>(&tap::createFile)},
    {"DeleteFileW", reinterpret_cast<void*>(&tap::deleteFile)},
    {"_wfopen", reinterpret_cast<void*>(&tap::openFile)},
    {"FindFirstFileW", reinterpret_cast<void*>(&tap::findFirstFile)},
    {"FindNextFileW", reinterpret_cast<void*>(&tap::findNextFile)},
    {"FindClose", reinterpret_cast<void*>(&tap::findClose)},
};

void replaceIn(IMAGE_THUNK_DATA& slot, void* function) {
    DWORD before = 0;
    if (VirtualProtect(&slot, sizeof(slot), PAGE_READWRITE, &before)) {
        slot.u1.Function = reinterpret_cast<ULONGLONG>(function);
        VirtualProtect(&slot, sizeof(slot), before, &before);
    }
}

// Walks the import table of the program (PE format, section 6.4 "The .idata section").
void installTaps() {
    auto* base = reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD offset =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    if (offset == 0) {
        return;
    }
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + offset);
    for (; library->Name != 0; ++library) {
        const auto* name =
            reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* slot = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                continue;
            }
            const auto* import =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            for (const Tap& tap : kTaps) {
                if (std::strcmp(tap.function, reinterpret_cast<const char*>(import->Name)) == 0) {
                    replaceIn(*slot, tap.replacement);
                }
            }
        }
    }
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        std::setvbuf(stdout, nullptr, _IONBF, 0);
        installTaps();
    }
    return TRUE;
}
