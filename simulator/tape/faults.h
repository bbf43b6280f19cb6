// The faults (shared/fault_names.h) as the unit's programs and libraries see them. Windows only.
#pragma once

#include <windows.h>

#include <vector>

namespace tape {

// The value of the fault `name`, 0 when it is not set. Any thread.
DWORD fault(const wchar_t* name);

// Puts the entries of one folder into the order that the fault DirectoryOrder asks for: 1 ascending
// by code unit, 2 descending, 3 mixed up, the same way every time, 4 the oldest first, as a FAT
// card fills its folder; 0 as Wine hands them out, sorted without regard to case.
void orderEntries(std::vector<WIN32_FIND_DATAW>& entries);

}  // namespace tape
