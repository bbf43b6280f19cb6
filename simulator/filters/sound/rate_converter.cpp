#include "simulator/filters/sound/rate_converter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <type_traits>

namespace filters {

namespace {

constexpr std::size_t kKept = 3;
constexpr std::size_t kMostChannels = 8;

template <class Sample>
Sample fromFloat(float value) {
    if constexpr (std::is_same_v<Sample, float>) {
        return value;
    } else {
        constexpr float kLeast = std::numeric_limits<Sample>::min();
        constexpr float kMost = std::numeric_limits<Sample>::max();
        return static_cast<Sample>(std::lrint(std::clamp(value, kLeast, kMost)));
    }
}

// Between b (t = 0) and c (t = 1).
float curve(float a, float b, float c, float d, float t) {
    const float linear = c - a;
    const float square = 2 * a - 5 * b + 4 * c - d;
    const float cube = 3 * (b - c) + d - a;
    return b + 0.5f * t * (linear + t * (square + t * cube));
}

}  // namespace

bool RateConverter::open(const SoundFormat& format, std::uint32_t rate) {
    close();
    const bool floats = format.kind == SampleKind::Float && format.bits == 32;
    const bool shorts = format.kind == SampleKind::Pcm && format.bits == 16;
    if ((!floats && !shorts) || !format.channels || format.channels > kMostChannels ||
        format.frameBytes != format.channels * format.bits / 8 || !format.rate ||
        format.rate == rate) {
        return false;
    }
    const std::uint32_t common = std::gcd(format.rate, rate);
    from_ = format.rate / common;
    to_ = rate / common;
    channels_ = format.channels;
    floats_ = floats;
    frameBytes_ = format.frameBytes;
    restart();
    return true;
}

std::size_t RateConverter::mostBytes(std::size_t bytes) const {
    const std::uint64_t frames = bytes / frameBytes_;
    return static_cast<std::size_t>((frames * to_ / from_ + 2) * frameBytes_);
}

std::size_t RateConverter::convert(const std::uint8_t* in, std::size_t bytes, std::uint8_t* out) {
    const std::size_t frames = bytes / frameBytes_;
    if (!frames) {
        return 0;
    }
    return floats_ ? convertFrames<float>(in, frames, out)
                   : convertFrames<std::int16_t>(in, frames, out);
}

template <class Sample>
std::size_t RateConverter::convertFrames(const std::uint8_t* in, std::size_t frames,
                                         std::uint8_t* out) {
    if (restart_.exchange(false)) {
        frames_.assign(kKept * channels_, 0);
        position_ = 0;
    }
    frames_.resize((kKept + frames) * channels_);
    float* added = frames_.data() + kKept * channels_;
    for (std::size_t i = 0; i < frames * channels_; ++i) {
        Sample sample;
        std::memcpy(&sample, in + i * sizeof sample, sizeof sample);
        added[i] = static_cast<float>(sample);
    }
    std::size_t written = 0;
    const float unit = 1.0f / static_cast<float>(to_);
    // The curve's second point may reach the last frame but two.
    for (; position_ / to_ < frames; position_ += from_) {
        const auto t = static_cast<float>(position_ % to_) * unit;
        const float* first = frames_.data() + static_cast<std::size_t>(position_ / to_) * channels_;
        for (std::size_t c = 0; c < channels_; ++c) {
            const float* p = first + c;
            const auto sample =
                fromFloat<Sample>(curve(p[0], p[channels_], p[2 * channels_], p[3 * channels_], t));
            std::memcpy(out + written, &sample, sizeof sample);
            written += sizeof sample;
        }
    }
    position_ -= frames * to_;
    std::copy(frames_.end() - static_cast<std::ptrdiff_t>(kKept * channels_), frames_.end(),
              frames_.begin());
    return written;
}

}  // namespace filters
