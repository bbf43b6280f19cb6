// Writes the big-endian bit fields of MPEG streams.
#pragma once

#include <cstdint>
#include <utility>

#include "samples.h"

namespace probe_test {

class BitWriter {
public:
    void bits(std::uint32_t value, unsigned count) {
        for (unsigned i = count; i-- > 0;) {
            bit((value >> i) & 1);
        }
    }
    void golomb(std::uint32_t value) {
        unsigned length = 0;
        while (((value + 1) >> (length + 1)) != 0) {
            ++length;
        }
        bits(0, length);
        bits(value + 1, length + 1);
    }
    Bytes take() {
        bit(1);  // stop bit
        while (used_ % 8 != 0) {
            bit(0);
        }
        return std::move(bytes_);
    }

private:
    void bit(std::uint32_t value) {
        if (used_ % 8 == 0) {
            bytes_.push_back(0);
        }
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | (value << (7 - used_ % 8)));
        ++used_;
    }
    Bytes bytes_;
    std::size_t used_ = 0;
};

}  // namespace probe_test
