#include "simulator/filters/length_watch.h"
#include "simulator/tape/faults.h"

#include <cmath>

namespace filters {

namespace {

constexpr LONG kLiveLengthEvent = 33024;
constexpr LONG kNewLengthEvent = 33773;
constexpr UINT kTickMilliseconds = 100;
constexpr int kLookTicks = 10;   // between two looks at the file
constexpr int kForcedTick = 20;  // when the fault's length is announced
// A file untouched for this long counts as finished (100 ns units).
constexpr LONGLONG kStillWritten = 5 * 10'000'000LL;

struct FileFacts {
    LONGLONG bytes = 0;
    LONGLONG age = 0;  // since the last write, 100 ns
};

bool readFacts(const std::wstring& path, FileFacts* facts) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return false;
    }
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const auto ticks = [](const FILETIME& time) {
        return static_cast<LONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    };
    facts->bytes = static_cast<LONGLONG>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    facts->age = ticks(now) - ticks(data.ftLastWriteTime);
    return true;
}

}  // namespace

void LengthWatch::start(IFilterGraph* graph, const std::wstring& path, double durationSeconds) {
    FileFacts facts;
    stop();
    forcedSeconds_ = tape::fault(L"LiveLength");
    if (!readFacts(path, &facts) || (!forcedSeconds_ && facts.age > kStillWritten)) {
        return;
    }
    graph_ = graph;
    path_ = path;
    durationSeconds_ = durationSeconds;
    firstBytes_ = facts.bytes;
    lastBytes_ = facts.bytes;
    ticks_ = 0;
    live_ = false;
    if (forcedSeconds_) {
        live_ = true;
        sendGraphEvent(graph_, kLiveLengthEvent, 0, 0);
    }
    AppWindow::instance().startTicks(this, kTickMilliseconds);
}

void LengthWatch::stop() {
    AppWindow::instance().stopTicks(this);
    live_ = false;
    lastBytes_ = 0;
    graph_ = nullptr;
}

void LengthWatch::announce(double seconds) {
    if (!live_) {
        live_ = true;
        sendGraphEvent(graph_, kLiveLengthEvent, 0, 0);
    }
    sendGraphEvent(graph_, kNewLengthEvent, static_cast<LONG_PTR>(seconds), 0);
}

void LengthWatch::tick() {
    if (++ticks_ == kForcedTick && forcedSeconds_) {
        announce(forcedSeconds_);
    }
    if (forcedSeconds_ || !firstBytes_) {
        return;
    }
    if (ticks_ % kLookTicks == 0) {
        look();
    }
    if (live_) {
        watched_();
    }
}

void LengthWatch::look() {
    FileFacts facts;
    if (readFacts(path_, &facts) && facts.bytes > lastBytes_) {
        lastBytes_ = facts.bytes;
        announce(durationSeconds_ * static_cast<double>(facts.bytes) /
                 static_cast<double>(firstBytes_));
    }
}

void LengthWatch::measured(double seconds, LONGLONG bytes) {
    durationSeconds_ = seconds;
    firstBytes_ = bytes;
    announce(std::ceil(seconds));
}

}  // namespace filters
