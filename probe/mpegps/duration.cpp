#include "probe/mpegps/duration.h"

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

constexpr std::size_t kPackBytes = kStartCodeBytes + kPackClockBytes;  // what is looked at

struct Clock {
    MpegPsReader& reader;
    std::uint64_t mostBytes = 0;  // of the file's window, counted from its making
    double pace = 0.0;            // time for each byte of the stream; 0 unknown
    int lookups = 0;
    bool readFailed = false;

    bool exhausted() const {
        return readFailed || lookups >= kMostLookups || reader.file.counts().bytes >= mostBytes;
    }
};

// The first pack in `bytes`, which stand at `offset` of the file, whose clock is good; its time is
// kNoClock when there is none.
ClockPoint firstPack(std::span<const std::uint8_t> bytes, std::uint64_t offset) {
    for (std::size_t at = 0; at + kPackBytes <= bytes.size(); at += kStartCodeBytes) {
        at += findStartCode(bytes.subspan(at), kPackStart, kPackStart);
        if (at + kPackBytes > bytes.size()) {
            break;
        }
        const std::int64_t time =
            packClock(bytes.subspan(at + kStartCodeBytes).first<kPackClockBytes>()).time;
        if (time != kNoClock) {
            return {offset + at, time};
        }
    }
    return {};
}

// The same in [from, limit) of the file, as far as a pack is looked for.
ClockPoint findPack(Clock& clock, std::uint64_t from, std::uint64_t limit) {
    ++clock.lookups;
    limit = std::min(limit, from + kSearchBytes);
    while (from + kPackBytes <= limit && !clock.exhausted()) {
        std::span<const std::uint8_t> bytes;
        const auto most = static_cast<std::size_t>(limit - from);
        if (!clock.reader.file.view(from, kPackBytes, most, bytes)) {
            clock.readFailed = true;
            break;
        }
        if (bytes.size() < kPackBytes) {
            break;
        }
        const ClockPoint found = firstPack(bytes, from);
        if (found.time != kNoClock) {
            return found;
        }
        from += bytes.size() - (kPackBytes - 1);
    }
    return {};
}

// Prints the lines of the packs with a damaged clock that begin from `from` on and in front of
// `limit`; `bytes` stand at `offset` of the file.
void diagnosePacks(std::span<const std::uint8_t> bytes, std::uint64_t offset, std::uint64_t from,
                   std::uint64_t limit) {
    auto at = static_cast<std::size_t>(std::max(from, offset) - offset);
    for (; at + kPackBytes <= bytes.size(); at += kStartCodeBytes) {
        at += findStartCode(bytes.subspan(at), kPackStart, kPackStart);
        if (at + kPackBytes > bytes.size() || offset + at >= limit) {
            break;
        }
        const PackClock clock =
            packClock(bytes.subspan(at + kStartCodeBytes).first<kPackClockBytes>());
        if (clock.time == kNoClock) {
            diagnoseDamaged(clock);
        }
    }
}

// The last pack with a good clock in front of `end` and behind `start`. The damaged ones behind it
// print their lines, unless the walk was there before. Nowhere else does the search for packs
// print: it would meet the same header several times.
ClockPoint findLastPack(Clock& clock, std::uint64_t start, std::uint64_t end) {
    constexpr std::uint64_t kMostBytes = 0x200000;
    constexpr std::uint64_t kLargestStep = ReadWindow::kLargest - kPackBytes;
    std::uint64_t limit = end;
    for (std::uint64_t step = ReadWindow::kSmallest - kPackBytes;
         limit > start && end - limit < kMostBytes; step = std::min(step * 2, kLargestStep)) {
        const std::uint64_t from = limit - std::min(step, limit - start);
        const auto wanted = static_cast<std::size_t>(std::min(end, limit + kPackBytes) - from);
        std::span<const std::uint8_t> bytes;
        if (!clock.reader.file.view(from, wanted, bytes)) {
            clock.readFailed = true;
            return {};
        }
        ClockPoint last;
        for (ClockPoint found = firstPack(bytes, from); found.time != kNoClock;
             found = firstPack(
                 bytes.subspan(static_cast<std::size_t>(last.offset - from) + kStartCodeBytes),
                 last.offset + kStartCodeBytes)) {
            last = found;
        }
        const bool isFound = last.time != kNoClock;
        const std::uint64_t behind = isFound ? last.offset + kStartCodeBytes : from;
        diagnosePacks(bytes, from, std::max(behind, clock.reader.packsReadTo), limit);
        if (isFound) {
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
    std::uint64_t high = b.offset;  // no pack lies between here and b
    while (!clock.exhausted()) {
        const std::uint64_t half = a.offset + (high - a.offset) / 2;
        if (half <= a.offset) {
            return sum;  // a and b are neighbours: the gap between them counts nothing
        }
        const ClockPoint middle = findPack(clock, half, high);
        if (middle.time == kNoClock) {
            high = half;
            continue;
        }
        if (!isBroken(clock, a, middle)) {
            sum += middle.time - a.time;
            a = middle;
        } else if (!isBroken(clock, middle, b)) {
            sum += b.time - middle.time;
            b = middle;
            high = middle.offset;
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
    if (elapsed >= expected / 5 * 3 || expected < kSecond || halvings == 0 || clock.exhausted()) {
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
        const std::uint64_t place = first.offset + i * step;
        const ClockPoint found = findPack(clock, place, place + step);
        if (found.time == kNoClock) {
            continue;
        }
        places[count++] = found;
        const ClockPoint next = findPack(clock, found.offset + kShortStretch,
                                         std::min(found.offset + 2 * kShortStretch, last.offset));
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
    constexpr std::uint64_t kMostBytes = 0x200000;
    Clock clock{reader};
    const ClockPoint last =
        findLastPack(clock, reader.firstClock.offset + kStartCodeBytes, reader.end);
    if (last.time != kNoClock) {
        Places places;
        const std::uint64_t budget = std::min(kMostBytes, reader.end + kSearchBytes);
        clock.mostBytes = reader.file.counts().bytes + budget;
        const std::size_t count = findPlaces(clock, last, places);
        clock.mostBytes = reader.file.counts().bytes + budget;
        for (std::size_t i = 0; i + 1 < count; ++i) {
            duration += timeBetween(clock, places[i], places[i + 1], kHalvings);
        }
    }
    return clock.readFailed ? kFail : kOk;
}

}  // namespace probe
