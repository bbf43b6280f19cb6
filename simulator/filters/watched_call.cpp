#include "simulator/filters/watched_call.h"

#include <objbase.h>

#include <memory>

namespace filters {

namespace {

constexpr DWORD kLookMilliseconds = 100;
// What the process must use of a processor to count as at work; sound alone takes a fiftieth.
constexpr DWORD kBusyShare = 12;
// What of the processors must have been idle, or others may have kept the process from its work.
constexpr ULONGLONG kIdleShare = 10;

DWORD WINAPI run(void* parameter) {
    const std::unique_ptr<std::function<void()>> call(
        static_cast<std::function<void()>*>(parameter));
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    (*call)();
    CoUninitialize();
    return 0;
}

// Processor time of this process in milliseconds.
DWORD processorTime() {
    FILETIME created, ended, kernel, user;
    if (!GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user)) {
        return 0;
    }
    return (kernel.dwLowDateTime + user.dwLowDateTime) / 10000;
}

ULONGLONG in100Nanoseconds(const FILETIME& time) {
    return static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Time of all processors together since the machine's start, 100 ns.
struct MachineTime {
    ULONGLONG idle = 0;
    ULONGLONG all = 0;
};

MachineTime machineTime() {
    FILETIME idle, kernel, user;  // kernel includes idle
    if (!GetSystemTimes(&idle, &kernel, &user)) {
        return {};
    }
    return {in100Nanoseconds(idle), in100Nanoseconds(kernel) + in100Nanoseconds(user)};
}

class Watch {
public:
    Watch(const Activity& activity, const Patience& patience)
        : activity_(activity), patience_(patience) {}

    // To be asked every now and then.
    bool atItsEnd() {
        const DWORD now = GetTickCount();
        if (const unsigned steps = activity_.steps; steps != steps_) {
            steps_ = steps;
            stepped_ = worked_ = now;
        }
        const DWORD used = processorTime();
        if (used - used_ > (now - looked_) / kBusyShare) {
            worked_ = now;
        }
        used_ = used;
        looked_ = now;
        if (machineIsBusy() && !activity_.failed) {
            worked_ = now;
        }
        const DWORD quiet = activity_.failed    ? patience_.failed
                            : activity_.reading ? patience_.longest
                                                : patience_.quiet;
        return now - worked_ >= quiet || now - stepped_ >= patience_.longest ||
               now - begun_ >= patience_.whole;
    }

private:
    bool machineIsBusy() {
        const MachineTime before = machine_;
        machine_ = machineTime();
        return (machine_.idle - before.idle) * kIdleShare < machine_.all - before.all;
    }

    const Activity& activity_;
    const Patience& patience_;
    const DWORD begun_ = GetTickCount();
    unsigned steps_ = activity_.steps;
    DWORD stepped_ = begun_;
    DWORD worked_ = begun_;
    DWORD looked_ = begun_;
    DWORD used_ = processorTime();
    MachineTime machine_ = machineTime();
};

}  // namespace

bool callWatched(std::function<void()> call, const Activity& activity, const Patience& patience) {
    auto copy = std::make_unique<std::function<void()>>(call);
    const HANDLE thread = CreateThread(nullptr, 0, run, copy.get(), 0, nullptr);
    if (!thread) {
        call();
        return true;
    }
    copy.release();
    Watch watch(activity, patience);
    bool returned = true;
    while (returned && WaitForSingleObject(thread, kLookMilliseconds) == WAIT_TIMEOUT) {
        returned = !watch.atItsEnd();
    }
    CloseHandle(thread);
    return returned;
}

}  // namespace filters
