// The priorities of DirectShow's threads, which the unit keeps in the registry under
// HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\DirectShow\ThreadPriority. Written once, when playback is
// initialised.
#pragma once

#include <cstdint>

// Not 0: writes the priorities. 0: removes them, and the whole "DirectShow" key with them. Returns
// the registry call's result: ERROR_SUCCESS, or the error of the key or value that could not be
// written; an error, too, when there is nothing to remove.
std::int32_t SetDirectShowThreadPriority(int enable);

// Deletes HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\DirectX\DirectShow\GraphCache\Entries, so that no
// graph of an earlier run is used again.
void ForgetCachedGraphs();
