// MPEG audio and Monkey's Audio: how many bytes their headers promise.
#include <cstring>

#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"

namespace mediaprobe {

std::uint64_t behindId3Tag(Look& look) {
    std::uint8_t tag[10];
    if (!look.read(0, tag) || std::memcmp(tag, "ID3", 3) != 0) {
        return 0;
    }
    std::uint64_t size = 0;
    for (int i = 6; i < 10; ++i) {
        size = size << 7 | (tag[i] & 0x7F);
    }
    return sizeof tag + size + ((tag[5] & 0x10) != 0 ? sizeof tag : 0);
}

// A Xing or Info header lies behind the side information of the first frame: +0 the letters, +4
// flags (1 frames, 2 bytes), then the numbers that the flags announce.
void lookAtMpegAudio(Look& look) {
    const std::uint64_t start = behindId3Tag(look);
    std::uint8_t frame[52];
    if (!look.read(start, frame)) {
        return;
    }
    if (frame[0] != 0xFF || (frame[1] & 0xE0) != 0xE0) {
        look.seen.note =
            "no MPEG audio stands at its start; the player's probe found six frames further on";
        return;
    }
    if ((frame[1] & 0x06) != 0x02) {
        return;  // only layer III has such a header
    }
    const bool isMpeg1 = (frame[1] & 0x18) == 0x18;
    const bool isMono = (frame[3] & 0xC0) == 0xC0;
    const std::size_t sideBytes = isMpeg1 ? (isMono ? 17 : 32) : (isMono ? 9 : 17);
    const std::uint8_t* const head = frame + 4 + sideBytes;
    if (std::memcmp(head, "Xing", 4) != 0 && std::memcmp(head, "Info", 4) != 0) {
        return;
    }
    const std::uint32_t flags = probe::be32(head + 4);
    std::uint8_t count[4];
    const std::uint64_t place = start + 4 + sideBytes + 8 + ((flags & 1) != 0 ? 4 : 0);
    if ((flags & 2) != 0 && look.read(place, count)) {
        look.noteCut(start + probe::be32(count));
    }
}

// The descriptor of version 3.98 and later: +4 version (2), +8 descriptor, +12 header, +16 seek
// table, +20 header data, +24 frame data (+28 its high half), +32 terminating data; in bytes.
void lookAtApe(Look& look) {
    std::uint8_t head[36];
    if (!look.read(0, head) || probe::le16(head + 4) < 3980) {
        return;
    }
    std::uint64_t declared = static_cast<std::uint64_t>(probe::le32(head + 28)) << 32;
    for (const int at : {8, 12, 16, 20, 24, 32}) {
        declared += probe::le32(head + at);
    }
    look.noteCut(declared);
}

}  // namespace mediaprobe
