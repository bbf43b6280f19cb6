// The simulated coredll.dll: the one library of the system that movie.exe calls besides ole32.dll.
// Where the desktop's function does the same it is handed on (coredll.def); what Windows CE does
// differently is code in this folder, and so are the failures that a unit has and a PC does not.
// Windows only.
#pragma once

#include <windows.h>

#include <string>

namespace coredll {

// Windows CE has neither drives nor a current folder: "\A\B" and "A\B" are the same file. The
// unit's file system is the drive of the folder in which the program was started. A path with a
// drive of its own is left as it is, for tests that read the PC's files.
std::wstring hostPath(const wchar_t* path);

// What can be asked of the library, by the registry (values of the same names below
// HKEY_CURRENT_USER\Software\HeadUnit\Faults, read when the library is loaded) or by a test in the
// same process.
enum class Setting {
    // The n-th allocation from now fails, and no other: memory, device contexts, bitmaps, fonts and
    // brushes alike. 0: none.
    AllocationFails,
    // What code page 0 is, 0: the PC's own.
    CodePage,
    // The n-th character that is read from a text file from now on cannot be converted. 0: none.
    UnreadableCharacter,
    // Not 0: the program prints what it has allocated when it ends.
    ReportMemory,
};

DWORD setting(Setting setting);

// Counts one allocation. False when it is the one to fail.
bool mayAllocate();

// Bitmaps count in bytes of the unit's screen, 16 bits a pixel.
void countBitmap(HBITMAP bitmap);

}  // namespace coredll

extern "C" {

// For tests in the process that has loaded the library.
void coredllSet(coredll::Setting setting, DWORD value);

struct CoredllUse {
    DWORD allocations;  // since the library was loaded
    DWORD heapBytes;    // allocated and not given back
    DWORD mostHeapBytes;
    DWORD bitmapBytes;
    DWORD mostBitmapBytes;
};
CoredllUse coredllUse();

}  // extern "C"
