// Code page 0 of a unit is that of its country, not the PC's.
#include "simulator/coredll/unit.h"

namespace {

UINT codePage(UINT page) {
    const DWORD own = coredll::setting(coredll::Setting::CodePage);
    return page == CP_ACP && own != 0 ? own : page;
}

}  // namespace

extern "C" {

int WINAPI unitMultiByteToWideChar(UINT page, DWORD flags, const char* text, int bytes,
                                   wchar_t* wide, int capacity) {
    return MultiByteToWideChar(codePage(page), flags, text, bytes, wide, capacity);
}

BOOL WINAPI unitIsDBCSLeadByte(BYTE character) {
    return IsDBCSLeadByteEx(codePage(CP_ACP), character);
}

}  // extern "C"
