// Makes a call that may never return. GStreamer's demuxers report some broken files without ending
// their change of state, and then Wine's splitter waits for it without end.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>

namespace filters {

// Makes `call` on a thread of its own (a multithreaded apartment of COM) and waits for it. True
// when it has returned. False when `progress` has not changed for `quietMilliseconds`: the thread
// is left behind then, and `call` must keep alive whatever it uses. When no thread can be made the
// call is made on the caller's.
bool callWatched(std::function<void()> call, const std::atomic<unsigned>& progress,
                 DWORD quietMilliseconds);

}  // namespace filters
