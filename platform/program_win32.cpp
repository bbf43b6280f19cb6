#include "platform/program.h"

#include <windows.h>

#include "platform/wide.h"

namespace platform {

void startProgram(const char16_t* path) {
    PROCESS_INFORMATION process{};
    if (CreateProcessW(wide(path), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, nullptr,
                       &process) != 0) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

}  // namespace platform
