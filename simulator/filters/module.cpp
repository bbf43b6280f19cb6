#include "simulator/filters/module.h"

namespace filters {

HINSTANCE moduleHandle() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&moduleHandle), &module);
    return module;
}

}  // namespace filters
