// Reading numbers out of bytes that are already in memory.
//
// ByteReader and BitReader never look beyond their bytes. ByteReader's first failure latches: it
// and every later read give 0 and do not move, so that a structure is read in one go and ok() is
// asked once, before a value is used as a count, size, divisor or index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace probe {

// Values at a fixed place of a head that is known to hold them.
inline std::uint16_t le16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}
inline std::uint32_t le32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}
inline std::uint16_t be16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}
inline std::uint32_t be24(const std::uint8_t* p) {
    return (static_cast<std::uint32_t>(p[0]) << 16) | (static_cast<std::uint32_t>(p[1]) << 8) |
           p[2];
}
inline std::uint32_t be32(const std::uint8_t* p) {
    return (static_cast<std::uint32_t>(p[0]) << 24) | be24(p + 1);
}

// The 64-bit value at the cursor, which moves on by 8. The caller vouches for the 8 bytes.
inline std::uint64_t ReadLE64(const std::uint8_t*& cursor) {
    const std::uint64_t value = le32(cursor) | (static_cast<std::uint64_t>(le32(cursor + 4)) << 32);
    cursor += 8;
    return value;
}
inline std::uint64_t ReadBE64(const std::uint8_t*& cursor) {
    const std::uint64_t value = (static_cast<std::uint64_t>(be32(cursor)) << 32) | be32(cursor + 4);
    cursor += 8;
    return value;
}

// The same at a fixed place.
inline std::uint64_t le64(const std::uint8_t* p) {
    return ReadLE64(p);
}
inline std::uint64_t be64(const std::uint8_t* p) {
    return ReadBE64(p);
}

class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool ok() const { return ok_; }
    std::size_t position() const { return position_; }
    std::size_t remaining() const { return bytes_.size() - position_; }

    std::uint8_t u8() {
        const std::uint8_t* p = advance(1);
        return p ? *p : std::uint8_t{0};
    }
    std::uint32_t le32() { return read<probe::le32>(); }
    std::uint32_t be32() { return read<probe::be32>(); }

    void skip(std::size_t count) { advance(count); }
    // The next `count` bytes, or none after a failure.
    std::span<const std::uint8_t> take(std::size_t count) {
        const std::uint8_t* p = advance(count);
        return p ? std::span(p, count) : std::span<const std::uint8_t>();
    }
    // A reader over the next `count` bytes that cannot see beyond them.
    ByteReader sub(std::size_t count) { return ByteReader(take(count)); }

private:
    const std::uint8_t* advance(std::size_t count) {
        if (!ok_ || count > remaining()) {
            ok_ = false;
            return nullptr;
        }
        const std::uint8_t* p = bytes_.data() + position_;
        position_ += count;
        return p;
    }
    template <std::uint32_t (*kDecode)(const std::uint8_t*)>
    std::uint32_t read() {
        const std::uint8_t* p = advance(4);
        return p ? kDecode(p) : 0;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t position_ = 0;
    bool ok_ = true;
};

}  // namespace probe
