#include "probe/codec/mpeg_video.h"

#include <algorithm>

#include "probe/read/bit_reader.h"
#include "probe/read/byte_reader.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

constexpr std::uint32_t kSequenceHeader = 0x000001B3, kExtension = 0x000001B5;
constexpr std::uint32_t kSequenceExtension = 1;
constexpr std::uint32_t kBitRateUnit = 400;

// By frame rate code: 23.976, 24, 25, 29.97, 30, 50, 59.94 and 60 frames per second.
constexpr std::array<std::uint32_t, 9> kFrameTimes = {0,      417083, 416667, 400000, 333667,
                                                      333333, 200000, 166833, 166667};

// What MPEG-2 adds to the fields of the header.
struct Extension {
    std::uint32_t width = 0, height = 0;  // upper two bits
    std::uint32_t bitRate = 0;            // upper twelve bits
    std::uint32_t rateNumerator = 1, rateDenominator = 1;
};

Extension readExtension(std::span<const std::uint8_t> bytes) {
    BitReader bits(bytes);
    Extension extension;
    if (bits.bits(32) != kExtension || bits.bits(4) != kSequenceExtension) {
        return extension;
    }
    bits.skip(8 + 1 + 2);  // profile and level, progressive, chroma format
    extension.width = bits.bits(2);
    extension.height = bits.bits(2);
    extension.bitRate = bits.bits(12);
    bits.skip(1 + 8 + 1);  // marker, buffer size, low delay
    extension.rateNumerator = bits.bits(2) + 1;
    extension.rateDenominator = bits.bits(5) + 1;
    return bits.ok() ? extension : Extension{};
}

}  // namespace

void SequenceFinder::feed(std::span<const std::uint8_t> bytes) {
    std::size_t at = 0;
    while (!found_ && at < bytes.size()) {
        lastBytes_ = (lastBytes_ << 8) | bytes[at++];
        found_ = lastBytes_ == kSequenceHeader;
    }
    if (found_) {
        const std::size_t taken = std::min(bytes.size() - at, header_.size() - count_);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), taken,
                    header_.begin() + static_cast<std::ptrdiff_t>(count_));
        count_ += taken;
    }
}

// Width 12, height 12, aspect 4, frame rate 4, bit rate 18, marker 1, buffer size 10, constrained
// 1, then a bit and 64 bytes for each of two matrices where the bit is set.
bool SequenceFinder::read(VideoSequence& sequence) const {
    constexpr std::size_t kMatrixBits = 512;
    if (count_ < kFixedBytes) {
        return false;
    }
    const std::span<const std::uint8_t> gathered = std::span(header_).first(count_);
    BitReader bits(gathered);
    const std::uint32_t width = bits.bits(12), height = bits.bits(12);
    sequence.aspect = bits.bits(4);
    const std::uint32_t rateCode = bits.bits(4), bitRate = bits.bits(18);
    bits.skip(1 + 10 + 1);
    if (bits.flag()) {
        bits.skip(kMatrixBits);
    }
    if (bits.flag()) {
        bits.skip(kMatrixBits);
    }
    const Extension extension = readExtension(gathered.subspan(bits.bitPosition() / 8));
    sequence.width = extension.width << 12 | width;
    sequence.height = extension.height << 12 | height;
    const std::uint32_t frameTime = rateCode < kFrameTimes.size() ? kFrameTimes[rateCode] : 0;
    sequence.frameTime = frameTime * extension.rateDenominator / extension.rateNumerator;
    sequence.bitRate =
        saturateToU32((std::uint64_t{extension.bitRate} << 18 | bitRate) * kBitRateUnit);
    return true;
}

}  // namespace probe
