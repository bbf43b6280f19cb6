#include "simulator/filters/picture/picture_scaler.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>

namespace filters {

namespace {

// Conversion factors, times 64: ITU-R BT.601-7 (3.5) and BT.709-6 (3.5), studio range 16 to 235.
struct Matrix {
    short redV, greenU, greenV, blueU;
};
constexpr Matrix kStandard = {102, 25, 52, 129};
constexpr Matrix kHighDefinition = {115, 14, 34, 135};
constexpr short kLumaFactor = 19077;  // 1.1644 * 64 * 256: luma enters shifted left by eight bits

// Rows are read in whole vectors of eight bytes, which may begin at any of its pixels.
constexpr int kSpare = 16;

struct Vectors {
    __m128i red, green, blue;
};

// Eight pixels; y, u and v are 16-bit lanes.
inline Vectors toRgb(__m128i y, __m128i u, __m128i v, const Matrix& m) {
    const __m128i bias = _mm_set1_epi16(128);
    const __m128i luma = _mm_mulhi_epu16(_mm_slli_epi16(_mm_subs_epu16(y, _mm_set1_epi16(16)), 8),
                                         _mm_set1_epi16(kLumaFactor));
    u = _mm_sub_epi16(u, bias);
    v = _mm_sub_epi16(v, bias);
    const __m128i half = _mm_set1_epi16(32);
    const __m128i level = _mm_add_epi16(luma, half);
    const __m128i red = _mm_adds_epi16(level, _mm_mullo_epi16(v, _mm_set1_epi16(m.redV)));
    const __m128i green =
        _mm_subs_epi16(_mm_subs_epi16(level, _mm_mullo_epi16(u, _mm_set1_epi16(m.greenU))),
                       _mm_mullo_epi16(v, _mm_set1_epi16(m.greenV)));
    const __m128i blue = _mm_adds_epi16(level, _mm_mullo_epi16(u, _mm_set1_epi16(m.blueU)));
    return {_mm_srai_epi16(red, 6), _mm_srai_epi16(green, 6), _mm_srai_epi16(blue, 6)};
}

inline void storeEight(std::uint32_t* out, const Vectors& low) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i blue = _mm_packus_epi16(low.blue, zero);
    const __m128i green = _mm_packus_epi16(low.green, zero);
    const __m128i red = _mm_packus_epi16(low.red, zero);
    const __m128i blueGreen = _mm_unpacklo_epi8(blue, green);
    const __m128i redZero = _mm_unpacklo_epi8(red, zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi16(blueGreen, redZero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4), _mm_unpackhi_epi16(blueGreen, redZero));
}

inline __m128i eightBytes(const std::uint8_t* bytes) {
    return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes)),
                             _mm_setzero_si128());
}

// `halved`: u and v have one sample for two pixels.
void convertRow(const std::uint8_t* y, const std::uint8_t* u, const std::uint8_t* v, bool halved,
                const Matrix& matrix, std::uint32_t* out, int count) {
    std::uint32_t last[8];
    for (int x = 0; x < count; x += 8) {
        __m128i chromaU = eightBytes(u + (halved ? x / 2 : x));
        __m128i chromaV = eightBytes(v + (halved ? x / 2 : x));
        if (halved) {
            chromaU = _mm_unpacklo_epi16(chromaU, chromaU);
            chromaV = _mm_unpacklo_epi16(chromaV, chromaV);
        }
        const Vectors pixels = toRgb(eightBytes(y + x), chromaU, chromaV, matrix);
        if (count - x >= 8) {
            storeEight(out + x, pixels);
        } else {
            storeEight(last, pixels);
            std::memcpy(out + x, last, static_cast<std::size_t>(count - x) * 4);
        }
    }
}

}  // namespace

PictureScaler::Steps PictureScaler::makeSteps(int source, int target) {
    Steps steps(static_cast<std::size_t>(target));
    for (int i = 0; i < target; ++i) {
        // Centres of pixels lie on each other: position = (i + 1/2) * source / target - 1/2.
        const std::int64_t scaled =
            ((2 * static_cast<std::int64_t>(i) + 1) * source * 128) / target - 128;
        const std::int64_t position = std::clamp<std::int64_t>(scaled, 0, (source - 1) * 256LL);
        Step& step = steps[static_cast<std::size_t>(i)];
        step.index = static_cast<std::uint16_t>(position >> 8);
        step.weight = static_cast<std::uint16_t>(position & 255);
    }
    return steps;
}

void PictureScaler::prepare(const PictureFormat& format, int width, int height) {
    if (width == width_ && height == height_ && format.width == format_.width &&
        format.height == format_.height) {
        return;
    }
    format_ = format;
    width_ = width;
    height_ = height;
    lumaColumns_ = makeSteps(format.width, width);
    lumaRows_ = makeSteps(format.height, height);
    chromaColumns_ = makeSteps((format.width + 1) / 2, width);
    chromaRows_ = makeSteps((format.height + 1) / 2, height);
    const auto longest = static_cast<std::size_t>(std::max(width, format.width) + kSpare);
    for (auto* row : {&blended_, &y_, &u_, &v_}) {
        row->assign(longest, 0);
    }
}

const std::uint8_t* PictureScaler::planeRow(const std::uint8_t* plane, int stride, int width,
                                            Step vertical, const Steps& horizontal,
                                            std::vector<std::uint8_t>& row) {
    const std::uint8_t* upper = plane + static_cast<std::ptrdiff_t>(vertical.index) * stride;
    const std::uint8_t* source = upper;
    const auto count = static_cast<int>(horizontal.size());
    if (vertical.weight) {
        const std::uint8_t* lower = upper + stride;
        const int weight = vertical.weight;
        std::uint8_t* blended = count == width ? row.data() : blended_.data();
        for (int x = 0; x < width; ++x) {
            blended[x] =
                static_cast<std::uint8_t>((upper[x] * (256 - weight) + lower[x] * weight) >> 8);
        }
        source = blended;
    }
    if (count == width) {
        return source;
    }
    std::uint8_t* out = row.data();
    // The last pixel has weight 0, so its right neighbour (one byte beyond) does not count.
    for (int x = 0; x < count; ++x) {
        const Step step = horizontal[static_cast<std::size_t>(x)];
        const int left = source[step.index];
        const int right = step.weight ? source[step.index + 1] : left;
        out[x] = static_cast<std::uint8_t>(left + (((right - left) * step.weight) >> 8));
    }
    return out;
}

const std::uint8_t* PictureScaler::spared(const std::uint8_t* row, int width,
                                          const std::uint8_t* end,
                                          std::vector<std::uint8_t>& copy) {
    if (row == copy.data() || end - row >= width + kSpare || row >= end) {
        return row;
    }
    std::memcpy(copy.data(), row, static_cast<std::size_t>(width));
    return copy.data();
}

void PictureScaler::draw(const PictureFormat& format, const std::uint8_t* picture,
                         const PixelTarget& target) {
    const int width = target.place.right - target.place.left;
    const int height = target.place.bottom - target.place.top;
    if (width <= 0 || height <= 0) {
        return;
    }
    prepare(format, width, height);
    const int chromaWidth = (format.width + 1) / 2;
    const int stride = format.chromaStride();
    const std::uint8_t* const first = picture + format.lumaStride() * format.lumaRows();
    const std::uint8_t* const second = first + stride * (format.lumaRows() / 2);
    const std::uint8_t* const end = picture + format.bytes();
    const bool halved = width == format.width;
    const Matrix& matrix = format.fullHd ? kHighDefinition : kStandard;
    const int left = std::max(target.clip.left, target.place.left);
    const int count = std::min(target.clip.right, target.place.right) - left;
    const int skip = left - target.place.left;
    const int chromaSkip = halved ? skip / 2 : skip;
    const Steps identity(static_cast<std::size_t>(chromaWidth));
    const Steps& columns = halved ? identity : chromaColumns_;
    for (int y = std::max(target.clip.top, target.place.top);
         y < std::min(target.clip.bottom, target.place.bottom); ++y) {
        const auto row = static_cast<std::size_t>(y - target.place.top);
        const std::uint8_t* luma =
            planeRow(picture, format.lumaStride(), format.width, lumaRows_[row], lumaColumns_, y_);
        const std::uint8_t* u = planeRow(first, stride, chromaWidth, chromaRows_[row], columns, u_);
        const std::uint8_t* v =
            planeRow(second, stride, chromaWidth, chromaRows_[row], columns, v_);
        u = spared(u, chromaWidth, end, u_);
        v = spared(v, chromaWidth, end, v_);
        convertRow(luma + skip, u + chromaSkip, v + chromaSkip, halved, matrix,
                   target.pixels + static_cast<std::ptrdiff_t>(y) * target.stride + left, count);
    }
}

}  // namespace filters
