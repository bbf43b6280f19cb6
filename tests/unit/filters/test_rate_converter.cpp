// Sound of other rates: as many frames as the rates say, the same tone, no step between packets.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "simulator/filters/sound/rate_converter.h"

namespace test {
namespace {

constexpr double kPi = 3.14159265358979;
constexpr std::uint32_t kRate = 48000;
constexpr auto kPcm = filters::SampleKind::Pcm;
constexpr auto kFloat = filters::SampleKind::Float;

filters::SoundFormat format(filters::SampleKind kind, unsigned channels, std::uint32_t rate,
                            unsigned bits) {
    return {kind, bits, channels, channels * bits / 8, rate};
}

// Converts `frames` in packets of `packet` frames.
template <class Sample>
std::vector<Sample> convert(filters::RateConverter& converter, const std::vector<Sample>& frames,
                            std::size_t packet) {
    std::vector<Sample> all;
    for (std::size_t at = 0; at < frames.size(); at += packet) {
        const std::size_t bytes = std::min(packet, frames.size() - at) * sizeof(Sample);
        std::vector<Sample> out(converter.mostBytes(bytes) / sizeof(Sample));
        std::vector<std::uint8_t> in(bytes);
        std::memcpy(in.data(), &frames[at], bytes);
        const std::size_t written =
            converter.convert(in.data(), bytes, reinterpret_cast<std::uint8_t*>(out.data()));
        EXPECT_LE(written, out.size() * sizeof(Sample));
        all.insert(all.end(), out.begin(),
                   out.begin() + static_cast<std::ptrdiff_t>(written / sizeof(Sample)));
    }
    return all;
}

std::vector<std::int16_t> tone(std::uint32_t rate, double hertz, std::size_t frames) {
    std::vector<std::int16_t> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[i] = static_cast<std::int16_t>(
            20000 * std::sin(2 * kPi * hertz * static_cast<double>(i) / rate));
    }
    return samples;
}

class Rates : public testing::TestWithParam<std::uint32_t> {};

TEST_P(Rates, TheToneStaysTheSame) {
    const std::uint32_t rate = GetParam();
    filters::RateConverter converter;
    ASSERT_TRUE(converter.open(format(kPcm, 1, rate, 16), kRate));
    const double hertz = rate / 50.0;
    const auto out = convert(converter, tone(rate, hertz, rate), 441);
    ASSERT_EQ(out.size(), kRate);
    double worst = 0;
    for (std::size_t i = 100; i < out.size(); ++i) {
        // The curve's second point is two frames late.
        const double seconds = static_cast<double>(i) / kRate - 2.0 / rate;
        worst = std::max(worst, std::abs(out[i] - 20000 * std::sin(2 * kPi * hertz * seconds)));
    }
    EXPECT_LT(worst, 20000 * 0.002);
}

INSTANTIATE_TEST_SUITE_P(All, Rates, testing::Values(8000, 16000, 22050, 32000, 44100, 96000));

TEST(RateConverter, ChannelsStayApart) {
    filters::RateConverter converter;
    ASSERT_TRUE(converter.open(format(kPcm, 2, 24000, 16), kRate));
    const std::int16_t in[] = {100, -100, 100, -100, 100, -100, 100, -100, 100, -100, 100, -100};
    std::uint8_t bytes[sizeof in];
    std::memcpy(bytes, in, sizeof in);
    std::int16_t out[32] = {};
    ASSERT_EQ(converter.convert(bytes, sizeof in, reinterpret_cast<std::uint8_t*>(out)), 12u * 4);
    for (int i = 16; i < 24; i += 2) {
        EXPECT_EQ(out[i], 100);
        EXPECT_EQ(out[i + 1], -100);
    }
}

TEST(RateConverter, FloatsAndLoudSamplesKeepTheirRange) {
    filters::RateConverter converter;
    ASSERT_TRUE(converter.open(format(kFloat, 1, 44100, 32), kRate));
    const auto floats = convert(converter, std::vector<float>(1000, 0.5f), 100);
    EXPECT_FLOAT_EQ(floats[500], 0.5f);
    // Between extremes the curve overshoots; 16-bit samples must not wrap.
    ASSERT_TRUE(converter.open(format(kPcm, 1, 44100, 16), kRate));
    std::vector<std::int16_t> square(1000);
    for (std::size_t i = 0; i < square.size(); ++i) {
        square[i] = i / 10 % 2 ? 32767 : -32768;
    }
    const auto loud = convert(converter, square, 64);
    for (std::size_t i = 60; i < loud.size(); ++i) {
        const auto before = static_cast<std::size_t>(static_cast<double>(i) * 44100 / kRate - 2);
        if (square[before] == square[before + 1]) {
            EXPECT_EQ(loud[i] > 0, square[before] > 0) << i;
        }
    }
}

TEST(RateConverter, RestartForgetsTheSoundBefore) {
    filters::RateConverter converter;
    ASSERT_TRUE(converter.open(format(kPcm, 1, 44100, 16), kRate));
    convert(converter, std::vector<std::int16_t>(100, 30000), 100);
    converter.restart();
    for (const std::int16_t sample : convert(converter, std::vector<std::int16_t>(100, 0), 100)) {
        EXPECT_EQ(sample, 0);
    }
}

TEST(RateConverter, LeavesOtherFormatsAlone) {
    filters::RateConverter converter;
    for (const filters::SoundFormat& wave :
         {format(kPcm, 2, kRate, 16), format(kPcm, 1, 8000, 8), format(kPcm, 2, 44100, 24),
          format(kPcm, 0, 44100, 16), format(kPcm, 9, 44100, 16), format(kPcm, 2, 0, 16),
          format(filters::SampleKind::Other, 2, 44100, 16)}) {
        EXPECT_FALSE(converter.open(wave, kRate));
        EXPECT_FALSE(converter.isOpen());
    }
}

}  // namespace
}  // namespace test
