// BMP and PNG: the length in the head, and the chunk that must end the file.
#include <algorithm>
#include <array>

#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"

namespace mediaprobe {

void lookAtBmp(Look& look) {
    std::uint8_t head[6];
    if (look.read(0, head)) {
        look.noteCut(probe::le32(head + 2));
    }
}

// IEND may have something else behind it; what it lacks altogether is cut.
void lookAtPng(Look& look) {
    static constexpr std::uint8_t kEnd[4] = {'I', 'E', 'N', 'D'};
    std::array<std::uint8_t, probe::ReadWindow::kSmallest> tail;
    const std::uint64_t bytes = look.seen.fileBytes;
    const std::size_t wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(bytes, tail.size()));
    if (!look.read(bytes - wanted, std::span(tail).first(wanted))) {
        return;
    }
    const auto end = tail.begin() + static_cast<std::ptrdiff_t>(wanted);
    if (std::search(tail.begin(), end, kEnd, kEnd + 4) == end) {
        look.seen.damage = "cut off: its end is missing";
    }
}

}  // namespace mediaprobe
