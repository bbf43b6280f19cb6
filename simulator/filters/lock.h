// Holds a critical section for the length of a scope.
#pragma once

#include <windows.h>

namespace filters {

class Guard {
public:
    explicit Guard(CRITICAL_SECTION& lock) : lock_(lock) { EnterCriticalSection(&lock_); }
    ~Guard() { LeaveCriticalSection(&lock_); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    CRITICAL_SECTION& lock_;
};

}  // namespace filters
