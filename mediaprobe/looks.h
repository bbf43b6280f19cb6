// The parts of the second look, one for each container.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

#include "mediaprobe/second_look.h"

namespace mediaprobe {

// One look at one file.
struct Look {
    probe::ReadWindow& file;
    const probe::MediaRecord& record;
    SecondLook& seen;

    // Fills `out` from `offset`; false when the file does not hold it all.
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> out) {
        std::span<const std::uint8_t> bytes;
        if (!file.viewAll(offset, out.size(), bytes)) {
            return false;
        }
        std::copy(bytes.begin(), bytes.end(), out.begin());
        return true;
    }
    // "cut off: 1.2 MB of 9.0 MB are there" when the file holds less than `declared` bytes.
    bool noteCut(std::uint64_t declared);
};

void lookAtRiff(Look& look);
void lookAtMp4(Look& look);
void lookAtAsf(Look& look);
void lookAtOgg(Look& look);
void lookAtMpegAudio(Look& look);
void lookAtFlac(Look& look);
void lookAtApe(Look& look);
void lookAtFlv(Look& look);
void lookAtBmp(Look& look);
void lookAtPng(Look& look);

}  // namespace mediaprobe
