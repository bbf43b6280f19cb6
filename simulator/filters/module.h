// The library itself.
#pragma once

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;  // made by the linker

namespace filters {

inline HINSTANCE moduleHandle() {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

// registration.cpp
// Whether the library has this class of filters.
bool isOwnClass(const CLSID& classId);
// Enters all into the registry: S_OK or the first failure; may be called again.
HRESULT registerAll();

}  // namespace filters
