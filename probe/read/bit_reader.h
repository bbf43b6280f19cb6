// Reading big-endian bit fields out of bytes that are already in memory: the bit streams of
// MPEG audio and video, H.264, AAC and FLAC.
//
// Bits beyond the end are 0; ok() tells whether any was asked for.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace probe {

class BitReader {
public:
    explicit BitReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool ok() const { return ok_; }
    std::size_t bitPosition() const { return position_; }

    std::uint32_t bit() {
        if (position_ >= bytes_.size() * 8) {
            ok_ = false;
            return 0;
        }
        const std::uint32_t value = (bytes_[position_ / 8] >> (7 - position_ % 8)) & 1u;
        ++position_;
        return value;
    }
    bool flag() { return bit() != 0; }
    // `count` is 0 to 32.
    std::uint32_t bits(unsigned count) {
        const std::size_t end = position_ + count;
        std::uint64_t value = 0;
        if (end > bytes_.size() * 8) {
            while (count-- > 0) {
                value = (value << 1) | bit();
            }
            return static_cast<std::uint32_t>(value);
        }
        for (std::size_t at = position_ / 8; at * 8 < end; ++at) {
            value = (value << 8) | bytes_[at];
        }
        position_ = end;
        const std::uint64_t wanted = (std::uint64_t{1} << count) - 1;
        return static_cast<std::uint32_t>((value >> ((0 - end) % 8)) & wanted);
    }
    // Passes the 0 bits before the next 1 and that bit too; returns how many 0 bits there were.
    // Stops behind `most` of them or a few more.
    unsigned zeros(unsigned most) {
        unsigned count = 0;
        while (position_ < bytes_.size() * 8 && count <= most) {
            const auto shift = static_cast<unsigned>(position_ % 8);
            const auto rest = static_cast<std::uint8_t>(bytes_[position_ / 8] << shift);
            if (rest != 0) {
                const auto run = static_cast<unsigned>(std::countl_zero(rest));
                position_ += run + 1;
                return count + run;
            }
            count += 8 - shift;
            position_ += 8 - shift;
        }
        ok_ = ok_ && count > most;
        return count;
    }
    void skip(std::size_t count) {
        const std::size_t left = bytes_.size() * 8 - position_;
        ok_ = ok_ && count <= left;
        position_ += count < left ? count : left;
    }
    // To the next byte border; at a border it stays.
    void align() { skip((8 - position_ % 8) % 8); }

private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
    bool ok_ = true;
};

}  // namespace probe
