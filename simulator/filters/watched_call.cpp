#include "simulator/filters/watched_call.h"

#include <objbase.h>

#include <memory>

namespace filters {

namespace {

constexpr DWORD kLookMilliseconds = 250;

DWORD WINAPI run(void* parameter) {
    const std::unique_ptr<std::function<void()>> call(
        static_cast<std::function<void()>*>(parameter));
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    (*call)();
    CoUninitialize();
    return 0;
}

}  // namespace

bool callWatched(std::function<void()> call, const std::atomic<unsigned>& progress,
                 DWORD quietMilliseconds) {
    auto copy = std::make_unique<std::function<void()>>(call);
    const HANDLE thread = CreateThread(nullptr, 0, run, copy.get(), 0, nullptr);
    if (!thread) {
        call();
        return true;
    }
    copy.release();
    unsigned seen = progress;
    DWORD quietSince = GetTickCount();
    bool returned = true;
    while (WaitForSingleObject(thread, kLookMilliseconds) == WAIT_TIMEOUT) {
        const unsigned now = progress;
        if (now != seen) {
            seen = now;
            quietSince = GetTickCount();
        } else if (GetTickCount() - quietSince >= quietMilliseconds) {
            returned = false;
            break;
        }
    }
    CloseHandle(thread);
    return returned;
}

}  // namespace filters
