// Watches a recording that is still being written while it plays: once the file is seen to grow,
// graph event 0x8100 marks it as a file of live length, and every further growth is announced by
// event 33773 with the new length in seconds. The length is estimated from the size, as the file's
// own headers say nothing about what comes behind them. Application's thread only.
#pragma once

#include <dshow.h>

#include <string>

#include "simulator/filters/app_window.h"

namespace filters {

class LengthWatch final : public TickListener {
public:
    // Begins to watch `path` when it was written to within the last seconds, or when the fault
    // LiveLength says so. `durationSeconds` is what the file's headers say now.
    void start(IFilterGraph* graph, const std::wstring& path, double durationSeconds);
    void stop();

    void tick() override;

private:
    void announce(double seconds);

    IFilterGraph* graph_ = nullptr;
    std::wstring path_;
    double durationSeconds_ = 0;
    LONGLONG firstBytes_ = 0;  // size that durationSeconds_ belongs to
    LONGLONG lastBytes_ = 0;
    DWORD forcedSeconds_ = 0;
    int ticks_ = 0;
    bool live_ = false;
};

}  // namespace filters
