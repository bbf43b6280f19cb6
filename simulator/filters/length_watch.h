// Watches a recording that is still being written while it plays: once the file is seen to grow,
// graph event 0x8100 marks it as a file of live length, and every further growth is announced by
// event 33773 with the new length in seconds. The length is estimated from the size, as the file's
// own headers say nothing about what comes behind them. Application's thread only.
#pragma once

#include <dshow.h>

#include <atomic>
#include <functional>
#include <string>

#include "simulator/filters/app_window.h"

namespace filters {

class LengthWatch final : public TickListener {
public:
    // `watched` is called ten times a second once the file was seen to grow, even when it does no
    // more.
    explicit LengthWatch(std::function<void()> watched) : watched_(std::move(watched)) {}

    // Begins to watch `path` when it was written to within the last seconds, or when the fault
    // LiveLength says so. `durationSeconds` is what the file's headers say now.
    void start(IFilterGraph* graph, const std::wstring& path, double durationSeconds);
    void stop();
    // Whether the file was seen to grow. Any thread.
    bool live() const { return live_; }
    // Its size as seen last; 0 when it is not watched. Any thread.
    LONGLONG bytes() const { return lastBytes_; }

    // What the file, at that size, was found to last; announced at once.
    void measured(double seconds, LONGLONG bytes);

    void tick() override;

private:
    void announce(double seconds);
    void look();

    const std::function<void()> watched_;
    IFilterGraph* graph_ = nullptr;
    std::wstring path_;
    double durationSeconds_ = 0;
    LONGLONG firstBytes_ = 0;  // size that durationSeconds_ belongs to
    std::atomic<LONGLONG> lastBytes_ = 0;
    DWORD forcedSeconds_ = 0;
    int ticks_ = 0;
    std::atomic<bool> live_ = false;  // the first event was sent
};

}  // namespace filters
