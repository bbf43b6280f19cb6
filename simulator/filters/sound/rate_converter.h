// Brings PCM sound to another rate by cubic interpolation: a Catmull-Rom curve through four
// neighbouring frames. Wine's mixer does the same with a long filter that costs more than decoding
// a picture of 800 x 480.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace filters {

enum class SampleKind { Pcm, Float, Other };

struct SoundFormat {
    SampleKind kind;
    unsigned bits;  // a sample
    unsigned channels;
    unsigned frameBytes;  // a sample of every channel
    std::uint32_t rate;   // frames a second
};

class RateConverter {
public:
    // Whether sound of this format is converted to `rate` frames a second: 16-bit or float samples
    // of another rate, up to eight channels. False leaves the converter closed.
    bool open(const SoundFormat& format, std::uint32_t rate);
    void close() { frameBytes_ = 0; }
    bool isOpen() const { return frameBytes_ != 0; }

    // The next sound does not continue the last. From any thread.
    void restart() { restart_ = true; }
    // The most bytes that convert() makes of so many.
    std::size_t mostBytes(std::size_t bytes) const;
    // Converts whole frames; returns the bytes written to `out`. Sound comes out two frames late.
    std::size_t convert(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out);

private:
    template <class Sample>
    std::size_t convertFrames(const std::uint8_t* in, std::size_t frames, std::uint8_t* out);

    std::size_t frameBytes_ = 0;
    std::size_t channels_ = 0;
    bool floats_ = false;
    // Rates without their common divisor: for each frame out the position moves by from_ / to_.
    std::uint64_t from_ = 1;
    std::uint64_t to_ = 1;
    std::uint64_t position_ = 0;  // behind the second of the frames kept, in 1 / to_ frames
    std::vector<float> frames_;   // the last three of the sound before, then the new ones
    std::atomic<bool> restart_ = true;
};

}  // namespace filters
