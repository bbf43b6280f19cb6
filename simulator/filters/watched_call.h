// Makes a call that may never return. GStreamer's demuxers report some broken files without ending
// their change of state, or keep the end of their streams to themselves once reads fail, and then
// Wine's splitter waits for it without end.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>

namespace filters {

// What is seen of a call from outside. Any thread.
struct Activity {
    std::atomic<unsigned> steps = 0;   // counts what the call gets done
    std::atomic<int> reading = 0;      // reads under way
    std::atomic<bool> failed = false;  // a read has failed, and so will all others
};

// Milliseconds.
struct Patience {
    DWORD quiet = 2000;    // without a step, a read under way and work, on a machine with idle time
    DWORD failed = 500;    // without a step and work, once reads fail
    DWORD longest = 4000;  // without a step, whatever else
    DWORD whole = 20000;
};

// Makes `call` on a thread of its own (a multithreaded apartment of COM) and waits for it. True
// when it has returned. False when patience is at its end: the thread is left behind then, and
// `call` must keep alive whatever it uses. When no thread can be made the call is made on the
// caller's.
bool callWatched(std::function<void()> call, const Activity& activity, const Patience& patience);

}  // namespace filters
