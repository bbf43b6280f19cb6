// The start of a program. The kernel of Windows CE calls a program's entry with the arguments of
// WinMain; the desktop calls it with none that it could use. So the first bytes of the entry of a
// program that has been built for the unit are replaced, before the program runs, by a jump to
// here, where they are put back and the entry is called as the unit does it.
#include <cstdio>
#include <cstring>

#include "simulator/coredll/settings.h"
#include "simulator/shared/code_patch.h"

namespace {

using Entry = int (*)(HINSTANCE program, HINSTANCE previous, wchar_t* commandLine, int show);

BYTE* entryOfProgram = nullptr;
headunit::CodePatch entryBytes;

// What follows the program's own name, which may stand in quotation marks.
wchar_t* argumentsOf(wchar_t* line) {
    const wchar_t end = *line == L'"' ? L'"' : L' ';
    line += *line == L'"' ? 1 : 0;
    while (*line != L'\0' && *line != end) {
        ++line;
    }
    line += *line == L'"' ? 1 : 0;
    while (*line == L' ') {
        ++line;
    }
    return line;
}

// How deep the stack of the program's thread gets: what lies below the start is filled with a byte
// that hardly anybody writes, and at the end it is looked how far down it is gone.
constexpr std::size_t kWatchedStack = 512 * 1024;
constexpr int kUntouched = 0xC5;
const BYTE* watchedStack = nullptr;

__attribute__((noinline)) void watchStack() {
    void* const below = __builtin_alloca(kWatchedStack);
    std::memset(below, kUntouched, kWatchedStack);
    watchedStack = static_cast<const BYTE*>(below);
    __asm__ volatile("" ::"r"(below) : "memory");
}

std::size_t usedStack() {
    std::size_t untouched = 0;
    while (untouched < kWatchedStack && watchedStack[untouched] == kUntouched) {
        ++untouched;
    }
    return kWatchedStack - untouched;
}

void reportMemory() {
    const CoredllUse use = coredllUse();
    std::printf("[coredll] %lu allocations, heap %lu, at most %lu, bitmaps %lu, at most %lu\n",
                use.allocations, use.heapBytes, use.mostHeapBytes, use.bitmapBytes,
                use.mostBitmapBytes);
    std::printf("[coredll] stack at most %lu\n", static_cast<unsigned long>(usedStack()));
    std::fflush(stdout);
}

void startAsUnit() {
    headunit::writeCode(entryOfProgram, entryBytes);
    std::setvbuf(stdout, nullptr, _IONBF, 0);  // as the unit's debug port is
    STARTUPINFOW start{};
    GetStartupInfoW(&start);
    const int show =
        (start.dwFlags & STARTF_USESHOWWINDOW) != 0 ? start.wShowWindow : SW_SHOWNORMAL;
    if (coredll::setting(coredll::Setting::ReportMemory) != 0) {
        watchStack();
    }
    const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(entryOfProgram));
    const int result =
        entry(GetModuleHandleW(nullptr), nullptr, argumentsOf(GetCommandLineW()), show);
    if (watchedStack != nullptr) {
        reportMemory();
    }
    ExitProcess(static_cast<UINT>(result));
}

const IMAGE_NT_HEADERS* headersOf(const BYTE* base) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    return reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
}

// The unit's programs import from the unit's libraries alone.
bool importsOfUnit(const BYTE* base) {
    const DWORD offset =
        headersOf(base)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + offset);
    for (; offset != 0 && library->Name != 0; ++library) {
        const char* const name = reinterpret_cast<const char*>(base + library->Name);
        if (_stricmp(name, "coredll.dll") != 0 && _stricmp(name, "ole32.dll") != 0) {
            return false;
        }
    }
    return offset != 0;
}

void takeOverEntry() {
    auto* const base = reinterpret_cast<BYTE*>(GetModuleHandleW(nullptr));
    if (!importsOfUnit(base)) {
        return;
    }
    entryOfProgram = base + headersOf(base)->OptionalHeader.AddressOfEntryPoint;
    std::memcpy(entryBytes.data(), entryOfProgram, entryBytes.size());
    headunit::writeCode(entryOfProgram, headunit::jumpTo(reinterpret_cast<void*>(&startAsUnit)));
}

}  // namespace

bool coredll::isProgramOfUnit() {
    return entryOfProgram != nullptr;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(library);
        coredll::readSettings();
        takeOverEntry();
    }
    return TRUE;
}
