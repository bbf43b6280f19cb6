// Replacing the first bytes of a function by a jump to another. Windows on x86-64 only.
#pragma once

#include <windows.h>

#include <array>
#include <cstring>

namespace headunit {

using CodePatch = std::array<BYTE, 14>;

inline CodePatch jumpTo(void* target) {
    CodePatch patch = {0xFF, 0x25};  // jmp [rip + 0] (Intel 64 manual, volume 2A, "JMP")
    std::memcpy(patch.data() + 6, &target, sizeof target);
    return patch;
}

inline void writeCode(BYTE* at, const CodePatch& patch) {
    DWORD before = 0;
    VirtualProtect(at, patch.size(), PAGE_EXECUTE_READWRITE, &before);
    std::memcpy(at, patch.data(), patch.size());
    VirtualProtect(at, patch.size(), before, &before);
    FlushInstructionCache(GetCurrentProcess(), at, patch.size());
}

}  // namespace headunit
