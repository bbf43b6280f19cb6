// The parts of the second look, one for each container.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

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
    // The file's last bytes, as many as `room` takes and the file has; none when they cannot be
    // read.
    [[nodiscard]] std::span<const std::uint8_t> tail(std::span<std::uint8_t> room) {
        const std::size_t wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(seen.fileBytes, room.size()));
        const std::span<std::uint8_t> bytes = room.first(wanted);
        return read(seen.fileBytes - wanted, bytes) ? bytes : std::span<std::uint8_t>();
    }
    // "cut off: 1.2 MB of 9.0 MB are there" when the file holds less than `declared` bytes; `least`
    // stands in front of the latter.
    bool noteCut(std::uint64_t declared, const char* least = "");
};

// Where the sound of MPEG audio or FLAC begins: behind an ID3 version 2 tag, whose size is four
// times seven bits and does not count the tag's own ten bytes, nor the ten of a footer. 0 without
// one.
std::uint64_t behindId3Tag(Look& look);

// What a file that no recogniser claims begins like, and why it is not claimed; empty for what has
// no name here.
std::string kindOfUnclaimed(Look& look);

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
void lookAtJpeg(Look& look);
void lookAtGif(Look& look);

}  // namespace mediaprobe
