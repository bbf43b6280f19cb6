// Wine ends a process by ending its threads first, and gives the libraries' own ends a second after
// that. A thread that waits inside of the media library, as the reading thread of a splitter does
// that was left behind, may fall while it is ended there; and the library's ends may take longer on
// a busy machine. The process then ends of a signal instead of with its exit value.
// TerminateProcess ends the threads as well, only faster. So ExitProcess is made to leave by the
// PC's own system call, which ends all threads where they stand.
#include "simulator/filters/process_end.h"

#include <windows.h>

#include <cstdio>
#include <mutex>

#include "simulator/shared/code_patch.h"

namespace filters {

namespace {

constexpr long kExitGroup = 231;  // Linux for x86-64, asm/unistd_64.h

void WINAPI endAtOnce(UINT status) {
    std::fflush(nullptr);
    // Wine takes a process that is gone for one that ended with 0; only itself can tell another
    // value.
    if (status == 0) {
        asm volatile("syscall" : : "a"(kExitGroup), "D"(0L) : "rcx", "r11", "memory");
    }
    TerminateProcess(GetCurrentProcess(), status);
}

}  // namespace

void endAtOnceFromNowOn() {
    static std::once_flag once;
    std::call_once(once, [] {
        HMODULE unused = nullptr;  // stays loaded until then
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                           reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&endAtOnce)), &unused);
        auto* const at = reinterpret_cast<BYTE*>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "ExitProcess")));
        headunit::writeCode(at, headunit::jumpTo(reinterpret_cast<void*>(&endAtOnce)));
    });
}

}  // namespace filters
