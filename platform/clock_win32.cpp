#include "platform/clock.h"

#include <windows.h>

namespace platform {

std::uint32_t tickCount() {
    return GetTickCount();
}

LocalTime localTime() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wHour, now.wMinute};
}

void sleep(std::uint32_t milliseconds) {
    Sleep(milliseconds);
}

}  // namespace platform
