// The library itself.
#pragma once

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;  // made by the linker

namespace filters {

inline HINSTANCE moduleHandle() {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

}  // namespace filters
