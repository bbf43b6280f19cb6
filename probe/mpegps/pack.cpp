#include "probe/mpegps/pack.h"

#include <cstring>

#include "probe/read/byte_reader.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

// MPEG-1, 5 bytes: 0010 ttt1 | t(15) 1 | t(15) 1, t being 33 bits of a 90 kHz clock.
std::int64_t clockOfMpeg1(const std::uint8_t* p) {
    constexpr std::uint32_t kMarkers = 0x10001;
    const std::uint32_t low = be32(p + 1);
    if ((p[0] & 1) == 0 || (low & kMarkers) != kMarkers) {
        return kNoClock;
    }
    const std::int64_t ticks = (std::int64_t{p[0]} >> 1 & 7) << 30 | std::int64_t{low >> 17} << 15 |
                               std::int64_t{low >> 1 & 0x7FFF};
    return ticks * 1000 / 9;
}

// MPEG-2, 6 bytes: 01 ttt 1 tt | t(8) | t(5) 1 tt | t(8) | t(5) 1 ee | e(7) 1, t being 33 bits of
// a 90 kHz clock and e the 27 MHz steps between them, 0 to 299.
std::int64_t clockOfMpeg2(const std::uint8_t* p) {
    constexpr std::uint32_t kHighMask = 0xC400, kHigh = 0x4400, kMarkers = 0x4000401;
    const std::uint32_t high = be16(p), low = be32(p + 2);
    if ((high & kHighMask) != kHigh || (low & kMarkers) != kMarkers) {
        return kNoClock;
    }
    const std::int64_t base = std::int64_t{high >> 11 & 7} << 30 |
                              std::int64_t{high & 0x3FF} << 20 | std::int64_t{low >> 27} << 15 |
                              std::int64_t{low >> 11 & 0x7FFF};
    const std::int64_t extension = low >> 1 & 0x1FF;
    return (base * 300 + extension) * 10 / 27;
}

}  // namespace

PackClock packClock(std::span<const std::uint8_t, kPackClockBytes> bytes) {
    const bool isMpeg1 = bytes[0] >> 4 == 2;
    return {isMpeg1 ? clockOfMpeg1(bytes.data()) : clockOfMpeg2(bytes.data()), isMpeg1};
}

void diagnoseDamaged(const PackClock& clock) {
    diagnose("%s", clock.isMpeg1 ? "ERROR: GetSCR ERROR(MPEG1)\n" : "ERROR: GetSCR ERROR\n");
}

std::size_t findStartCode(std::span<const std::uint8_t> bytes, std::uint8_t lowest,
                          std::uint8_t highest) {
    // In coded pictures and sound a 1 is rare enough to be looked for by itself.
    for (std::size_t at = 2; at + 1 < bytes.size(); ++at) {
        const void* one = std::memchr(&bytes[at], 1, bytes.size() - 1 - at);
        if (!one) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(one) - bytes.data());
        if (bytes[at - 2] == 0 && bytes[at - 1] == 0 && bytes[at + 1] >= lowest &&
            bytes[at + 1] <= highest) {
            return at - 2;
        }
    }
    return bytes.size();
}

}  // namespace probe
