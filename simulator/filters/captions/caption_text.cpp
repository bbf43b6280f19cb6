#include "simulator/filters/captions/caption_text.h"

#include <algorithm>

#include "simulator/filters/captions/caption_scan.h"

namespace filters {

namespace {

Captions readType(SubtitleType type, View file) {
    switch (type) {
        case SubtitleType::Smi:
            return readSami(file);
        case SubtitleType::Srt:
            return readSubRip(file);
        case SubtitleType::Sub: {
            Captions captions = readMicroDvd(file);
            return captions.empty() ? readSubViewer(file) : captions;
        }
        case SubtitleType::Ssa:
            return readSubStationAlpha(file);
    }
    return {};
}

}  // namespace

std::vector<Caption> readCaptions(SubtitleType type, std::u16string_view file) {
    Captions captions = readType(type, file);
    std::stable_sort(captions.begin(), captions.end(),
                     [](const Caption& a, const Caption& b) { return a.start < b.start; });
    return captions;
}

int captionAt(const std::vector<Caption>& captions, std::uint32_t milliseconds) {
    constexpr int kMostOverlapping = 9;  // overlaps are short
    const auto after = std::upper_bound(
        captions.begin(), captions.end(), milliseconds,
        [](std::uint32_t time, const Caption& caption) { return time < caption.start; });
    for (auto at = after; at != captions.begin() && after - at < kMostOverlapping;) {
        --at;
        if (milliseconds < at->end) {
            return static_cast<int>(at - captions.begin());
        }
    }
    return -1;
}

}  // namespace filters
