// The sequence header of an MPEG-1 or MPEG-2 video stream (ISO/IEC 11172-2 section 2.4.2.3,
// ISO/IEC 13818-2 sections 6.2.2.1 and 6.2.2.3), gathered from the packets that carry it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace probe {

struct VideoSequence {
    std::uint32_t width = 0;      // pixels
    std::uint32_t height = 0;     // pixels
    std::uint32_t aspect = 0;     // aspect ratio code, 0 to 15
    std::uint32_t frameTime = 0;  // units of 100 ns; 0 for an unknown rate code
    std::uint32_t bitRate = 0;    // bits per second; MPEG-1 writes 104857200 for a variable rate
};

class SequenceFinder {
public:
    // Takes the next bytes of the stream; what comes after the header is ignored.
    void feed(std::span<const std::uint8_t> bytes);

    // Whether as much of the header was seen as is ever looked at.
    bool complete() const { return count_ == header_.size(); }

    // Reads what was gathered. False when no sequence header was found, or less than its fixed
    // part.
    [[nodiscard]] bool read(VideoSequence& sequence) const;

private:
    static constexpr std::size_t kFixedBytes = 8;  // behind the start code
    static constexpr std::size_t kMatrixBytes = std::size_t{2} * 64;
    static constexpr std::size_t kExtensionBytes = 10;  // start code included

    std::array<std::uint8_t, kFixedBytes + kMatrixBytes + kExtensionBytes> header_{};
    std::size_t count_ = 0;
    std::uint32_t lastBytes_ = 0xFFFFFFFF;  // the last four bytes fed, while searching
    bool found_ = false;
};

}  // namespace probe
