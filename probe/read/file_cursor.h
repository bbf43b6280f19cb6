// ByteReader's contract over a stretch of a file: numbers are read one after the other, skipping
// costs nothing, and nothing beyond the stretch is seen. Reads go through the file's window, so
// a structure of megabytes needs no block of its own.
//
// The first failure latches: it and every later read give 0 and do not move. A read that failed,
// or met the end of the file inside the stretch, is told apart from one that would have passed
// the end of the stretch.
#pragma once

#include <cstdint>
#include <span>

#include "probe/read/byte_reader.h"
#include "probe/read/read_window.h"

namespace probe {

class FileCursor {
public:
    // The stretch from `begin` to `end`, exclusive; empty when `end` is not above `begin`.
    FileCursor(ReadWindow& file, std::uint64_t begin, std::uint64_t end)
        : file_(file), begin_(begin), position_(begin), end_(end > begin ? end : begin) {}

    bool ok() const { return ok_; }
    bool readFailed() const { return readFailed_; }
    std::uint64_t position() const { return position_; }
    std::uint64_t remaining() const { return end_ - position_; }

    std::uint8_t u8();
    std::uint16_t le16() { return read<std::uint16_t, 2, probe::le16>(); }
    std::uint32_t le32() { return read<std::uint32_t, 4, probe::le32>(); }
    std::uint64_t le64() { return read<std::uint64_t, 8, probe::le64>(); }
    std::uint16_t be16() { return read<std::uint16_t, 2, probe::be16>(); }
    std::uint32_t be32() { return read<std::uint32_t, 4, probe::be32>(); }
    std::uint64_t be64() { return read<std::uint64_t, 8, probe::be64>(); }

    void skip(std::uint64_t count);
    // To an offset of the file inside the stretch, its end included; back as well.
    void moveTo(std::uint64_t position);
    // Fills `out`, at most ReadWindow::kLargest bytes. Returns ok().
    bool take(std::span<std::uint8_t> out);

private:
    // The next `count` bytes, valid until the next call; null after a failure.
    const std::uint8_t* advance(std::size_t count);

    template <typename T, std::size_t kBytes, T (*kDecode)(const std::uint8_t*)>
    T read() {
        const std::uint8_t* p = advance(kBytes);
        return p ? kDecode(p) : T{0};
    }

    ReadWindow& file_;
    std::uint64_t begin_;
    std::uint64_t position_;
    std::uint64_t end_;
    bool ok_ = true;
    bool readFailed_ = false;
};

}  // namespace probe
