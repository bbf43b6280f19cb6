// Registry operations that differ between Windows CE and the desktop. Windows only.
#pragma once

#include <windows.h>

namespace platform {

// Deletes a key with all of its sub-keys, as RegDeleteKey does on Windows CE. Returns the
// registry call's result, ERROR_FILE_NOT_FOUND when there is no such key.
LONG deleteRegistryTree(HKEY root, const wchar_t* key);

}  // namespace platform
