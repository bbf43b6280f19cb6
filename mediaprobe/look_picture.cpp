// Still images: the length in the head, and what must end the file.
#include <algorithm>
#include <array>

#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"

namespace mediaprobe {
namespace {

constexpr char kNoEnd[] = "cut off: its end is missing";

}  // namespace

void lookAtBmp(Look& look) {
    std::uint8_t head[6];
    if (look.read(0, head)) {
        look.noteCut(probe::le32(head + 2));
    }
}

// IEND may have something else behind it; what it lacks altogether is cut.
void lookAtPng(Look& look) {
    static constexpr std::uint8_t kEnd[4] = {'I', 'E', 'N', 'D'};
    constexpr std::ptrdiff_t kChunk = 4 + 4;  // the letters and a checksum
    std::array<std::uint8_t, probe::ReadWindow::kSmallest> room;
    const auto tail = look.tail(room);
    if (!tail.empty() &&
        tail.end() - std::search(tail.begin(), tail.end(), kEnd, kEnd + 4) < kChunk) {
        look.seen.damage = kNoEnd;
    }
}

// ITU-T T.81: in the coded picture each FF is followed by 00, a restart marker (D0 to D7) or
// another FF; an end that holds nothing else is an end in the middle of it. Cameras put much behind
// the true end, so that nothing is said of other ends.
void lookAtJpeg(Look& look) {
    static constexpr std::uint8_t kScan[2] = {0xFF, 0xDA};
    std::array<std::uint8_t, 2048> room;
    auto tail = look.tail(room);
    // Of a small file only what stands behind the scan's marker.
    const auto scan = std::find_end(tail.begin(), tail.end(), kScan, kScan + 2);
    if (scan != tail.end()) {
        tail = tail.last(static_cast<std::size_t>(tail.end() - scan) - 2);
    }
    bool coded = false;
    for (std::size_t i = 0; i + 1 < tail.size(); ++i) {
        const std::uint8_t next = tail[i + 1];
        if (tail[i] != 0xFF || (next >= 0xD0 && next <= 0xD7) || next == 0xFF) {
            continue;
        }
        if (next != 0) {
            return;
        }
        coded = true;
    }
    if (coded) {
        look.seen.damage = "cut off: it ends in the middle of the coded picture";
    }
}

// GIF 89a, section 27: the last byte is 3B; zeros behind it do no harm.
void lookAtGif(Look& look) {
    std::array<std::uint8_t, probe::ReadWindow::kSmallest> room;
    auto tail = look.tail(room);
    while (!tail.empty() && tail.back() == 0) {
        tail = tail.first(tail.size() - 1);
    }
    if (!tail.empty() && tail.back() != 0x3B) {
        look.seen.damage = kNoEnd;
    }
}

}  // namespace mediaprobe
