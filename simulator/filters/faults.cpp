#include "simulator/filters/faults.h"

namespace filters {

DWORD fault(const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    const LSTATUS result = RegGetValueW(HKEY_CURRENT_USER, L"Software\\HeadUnit\\Faults", name,
                                        RRF_RT_REG_DWORD, nullptr, &value, &size);
    return result == ERROR_SUCCESS ? value : 0;
}

}  // namespace filters
