// Puts bytes together for the samples: numbers of either byte order, texts, and sizes that are
// patched when a chunk or box is closed.
#pragma once

#include <cstdint>
#include <string_view>

#include "samples.h"

namespace probe_test {

class Builder {
public:
    Builder& u8(std::uint64_t v) { return big(v, 1); }
    Builder& be16(std::uint64_t v) { return big(v, 2); }
    Builder& be24(std::uint64_t v) { return big(v, 3); }
    Builder& be32(std::uint64_t v) { return big(v, 4); }
    Builder& be64(std::uint64_t v) { return big(v, 8); }
    Builder& le16(std::uint64_t v) { return little(v, 2); }
    Builder& le32(std::uint64_t v) { return little(v, 4); }
    Builder& le64(std::uint64_t v) { return little(v, 8); }
    Builder& text(std::string_view s) {
        bytes_.insert(bytes_.end(), s.begin(), s.end());
        return *this;
    }
    Builder& bytes(const Bytes& b) {
        bytes_.insert(bytes_.end(), b.begin(), b.end());
        return *this;
    }
    Builder& fill(std::size_t count, std::uint8_t value = 0) {
        bytes_.insert(bytes_.end(), count, value);
        return *this;
    }
    // Fills up to a total size; a larger content stays as it is.
    Builder& padTo(std::size_t total, std::uint8_t value = 0) {
        if (bytes_.size() < total) {
            bytes_.resize(total, value);
        }
        return *this;
    }

    std::size_t size() const { return bytes_.size(); }
    Builder& patchBe32(std::size_t at, std::uint64_t v) {
        for (std::size_t i = 0; i < 4; ++i) {
            bytes_.at(at + i) = static_cast<std::uint8_t>(v >> (24 - 8 * i));
        }
        return *this;
    }
    Builder& patchLe32(std::size_t at, std::uint64_t v) {
        for (std::size_t i = 0; i < 4; ++i) {
            bytes_.at(at + i) = static_cast<std::uint8_t>(v >> (8 * i));
        }
        return *this;
    }

    Bytes take() { return std::move(bytes_); }
    const Bytes& view() const { return bytes_; }

private:
    Builder& big(std::uint64_t v, unsigned count) {
        for (unsigned i = count; i-- > 0;) {
            bytes_.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
        }
        return *this;
    }
    Builder& little(std::uint64_t v, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            bytes_.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
        }
        return *this;
    }
    Bytes bytes_;
};

// Joins pieces in their order.
inline Bytes join(std::initializer_list<Bytes> pieces) {
    Builder all;
    for (const Bytes& piece : pieces) {
        all.bytes(piece);
    }
    return all.take();
}

// Without the last `count` bytes, which there must be.
inline Bytes withoutLast(const Bytes& bytes, std::size_t count) {
    return Bytes(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(count));
}

}  // namespace probe_test
