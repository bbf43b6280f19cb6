#include "probe/mpegps_duration.h"

#include <algorithm>
#include <array>

namespace probe {
namespace {

constexpr std::int64_t kSecond = 10'000'000;
constexpr std::int64_t kLeap = 10 * kSecond;  // packs lie at most 0.7 s apart
constexpr std::size_t kPlaces = 8;
constexpr std::uint64_t kSearchBytes = 0x40000;  // how far a pack is looked for from a place
constexpr int kMostLookups = 1024;               // for streams of nothing but new starts

constexpr std::uint64_t kShortStretch = 0x8000;
constexpr int kHalvings = 6;

struct Clock {
    MpegPsReader& reader;
    double pace = 0.0;  // time for each byte of the stream; 0 unknown
    int lookups = 0;
    bool readFailed = false;
};

// The first pack with a good clock in [from, limit); its time is kNoClock when there is none.
ClockPoint findPack(Clock& clock, std::uint64_t from, std::uint64_t limit) {
    constexpr std::size_t kNeeded = kStartCodeBytes + kPackClockBytes;
    ++clock.lookups;
    limit = std::min(limit, from + kSearchBytes);
    while (from + kNeeded <= limit) {
        std::span<const std::uint8_t> bytes;
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(limit - from, ReadWindow::kSmallest));
        if (!clock.reader.file.view(from, wanted, bytes)) {
            clock.readFailed = true;
            return {};
        }
        if (bytes.size() < kNeeded) {
            return {};
        }
        const std::size_t at = findStartCode(bytes, kPackStart, kPackStart);
        if (at + kNeeded > bytes.size()) {  // none, or cut: begin the next view at it
            from += std::min(at, bytes.size() - (kStartCodeBytes - 1));
            if (at == 0) {
                return {};
            }
            continue;
        }
        const std::int64_t time =
            packClock(bytes.subspan(at + kStartCodeBytes).first<kPackClockBytes>()).time;
        if (time != kNoClock) {
            return {from + at, time};
        }
        from += at + kStartCodeBytes;
    }
    return {};
}

// The last pack with a good clock in front of `end` and behind `start`.
ClockPoint findLastPack(Clock& clock, std::uint64_t start, std::uint64_t end) {
    constexpr std::uint64_t kMostBytes = 0x200000;
    std::uint64_t limit = end;
    for (std::uint64_t step = ReadWindow::kSmallest; limit > start && end - limit < kMostBytes;
         step = std::min<std::uint64_t>(step * 2, kSearchBytes)) {
        const std::uint64_t from = limit - std::min(step, limit - start);
        ClockPoint last;
        for (std::uint64_t at = from; at < limit && !clock.readFailed;) {
            const ClockPoint found = findPack(clock, at, end);
            if (found.time == kNoClock || found.offset >= limit) {
                break;
            }
            last = found;
            at = found.offset + kStartCodeBytes;
        }
        if (last.time != kNoClock || clock.readFailed) {
            return last;
        }
        limit = from;
    }
    return {};
}

using Places = std::array<ClockPoint, kPlaces + 2>;

// At most one whole turn of the clock, which is all that two places can tell.
std::int64_t expectedTime(const Clock& clock, const ClockPoint& a, const ClockPoint& b) {
    constexpr double kTurn = 8589934592.0 * 1000 / 9;
    return static_cast<std::int64_t>(
        std::min(clock.pace * static_cast<double>(b.offset - a.offset), kTurn));
}

// Whether the clock runs back from a to b, or leaps far beyond its pace where that is known.
bool isBroken(const Clock& clock, const ClockPoint& a, const ClockPoint& b) {
    const std::int64_t elapsed = b.time - a.time;
    return elapsed < 0 || (clock.pace > 0.0 && elapsed > kLeap + 8 * expectedTime(clock, a, b));
}

// Time from a to b, between which the clock starts again or leaps at least once: halves the
// stretch towards the break, adding up what lies on its sound sides.
std::int64_t timeAcrossBreak(Clock& clock, ClockPoint a, ClockPoint b) {
    std::int64_t sum = 0;
    while (clock.lookups < kMostLookups && !clock.readFailed) {
        const ClockPoint middle =
            findPack(clock, a.offset + (b.offset - a.offset) / 2 + 1, b.offset);
        if (middle.time == kNoClock) {
            // Nothing in the upper half: a pack may still follow `a` in the lower one.
            const ClockPoint next = findPack(clock, a.offset + kStartCodeBytes, b.offset);
            if (next.time == kNoClock) {
                return sum;  // a and b are neighbours: the gap between them counts nothing
            }
            sum += isBroken(clock, a, next) ? 0 : next.time - a.time;
            a = next;
        } else if (!isBroken(clock, a, middle)) {
            sum += middle.time - a.time;
            a = middle;
        } else if (!isBroken(clock, middle, b)) {
            sum += b.time - middle.time;
            b = middle;
        } else {  // broken on both sides: the lower one is measured by its pace alone
            sum += expectedTime(clock, a, middle);
            a = middle;
        }
        if (!isBroken(clock, a, b)) {
            return sum + b.time - a.time;
        }
    }
    return sum;
}

// Time from a to b. A stretch that took less than its bytes let expect is halved a few times: the
// clock may have run back in it unseen.
std::int64_t timeBetween(Clock& clock, const ClockPoint& a, const ClockPoint& b, int halvings) {
    if (isBroken(clock, a, b)) {
        return timeAcrossBreak(clock, a, b);
    }
    const std::int64_t elapsed = b.time - a.time, expected = expectedTime(clock, a, b);
    if (elapsed >= expected / 5 * 3 || expected < kSecond || halvings == 0 ||
        clock.lookups >= kMostLookups) {
        return elapsed;
    }
    const ClockPoint middle = findPack(clock, a.offset + (b.offset - a.offset) / 2 + 1, b.offset);
    if (middle.time == kNoClock) {
        return elapsed;
    }
    return timeBetween(clock, a, middle, halvings - 1) +
           timeBetween(clock, middle, b, halvings - 1);
}

// Looks at the file in equal steps between the first and the last pack. Returns how many places
// were found, both ends included; sets the pace of the clock to the median over short stretches
// behind the places, which no break between them disturbs.
std::size_t findPlaces(Clock& clock, const ClockPoint& last, Places& places) {
    const ClockPoint first = clock.reader.firstClock;
    const std::uint64_t step = (last.offset - first.offset) / (kPlaces + 1);
    std::array<double, kPlaces> paces;
    std::size_t count = 0, measured = 0;
    places[count++] = first;
    for (std::size_t i = 1; step >= 2 * kShortStretch && i <= kPlaces; ++i) {
        const ClockPoint found = findPack(clock, first.offset + i * step, last.offset);
        if (found.time == kNoClock || found.offset <= places[count - 1].offset) {
            continue;
        }
        places[count++] = found;
        const ClockPoint next = findPack(clock, found.offset + kShortStretch, last.offset);
        if (next.time > found.time) {
            paces[measured++] = static_cast<double>(next.time - found.time) /
                                static_cast<double>(next.offset - found.offset);
        }
    }
    places[count++] = last;
    if (measured >= kPlaces / 2) {
        const auto middle = paces.begin() + static_cast<std::ptrdiff_t>(measured / 2);
        std::nth_element(paces.begin(), middle,
                         paces.begin() + static_cast<std::ptrdiff_t>(measured));
        clock.pace = *middle;
    }
    return count;
}

}  // namespace

Result measureMpegPs(MpegPsReader& reader, std::int64_t& duration) {
    duration = 0;
    if (reader.firstClock.time == kNoClock) {
        return kOk;
    }
    Clock clock{reader};
    const ClockPoint last =
        findLastPack(clock, reader.firstClock.offset + kStartCodeBytes, reader.end);
    if (last.time != kNoClock) {
        Places places;
        const std::size_t count = findPlaces(clock, last, places);
        for (std::size_t i = 0; i + 1 < count; ++i) {
            duration += timeBetween(clock, places[i], places[i + 1], kHalvings);
        }
    }
    return clock.readFailed ? kFail : kOk;
}

}  // namespace probe
