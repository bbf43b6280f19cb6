// Functions of libraries that a unit may lack. Windows only.
#pragma once

#include <windows.h>

namespace platform {

// Loads the library, which then stays loaded, and finds the exported function. Null when either
// is missing.
FARPROC loadProcedure(const wchar_t* library, const wchar_t* name);

template <typename Function>
Function loadFunction(const wchar_t* library, const wchar_t* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(loadProcedure(library, name)));
}

}  // namespace platform
