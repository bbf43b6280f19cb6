// ASF, FLV and Ogg: the length that a header gives, or how the last tag or page ends.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"

namespace mediaprobe {

// The File Properties Object (Advanced Systems Format, section 3.2), looked for in the file's head:
//   +0 GUID, +16 size (8), +24 file id (16), +40 file size (8), +88 flags (4; bit 0 broadcast)
void lookAtAsf(Look& look) {
    static constexpr std::uint8_t kFileProperties[16] = {0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9,
                                                         0xCF, 0x11, 0x8E, 0xE4, 0x00, 0xC0,
                                                         0x0C, 0x20, 0x53, 0x65};
    constexpr std::size_t kObject = 92;
    std::array<std::uint8_t, probe::ReadWindow::kSmallest> head;
    std::size_t got = 0;
    if (!look.file.readAside(0, head, got)) {
        return;
    }
    const auto end = head.begin() + static_cast<std::ptrdiff_t>(got);
    const auto found = std::search(head.begin(), end, kFileProperties, kFileProperties + 16);
    if (end - found < static_cast<std::ptrdiff_t>(kObject)) {
        return;
    }
    const std::uint64_t declared = probe::le64(&*found + 40);
    const bool broadcast = (probe::le32(&*found + 88) & 1) != 0;
    if (!broadcast && declared == 0) {
        look.seen.damage = "cut off: its length was never written";
    } else if (!broadcast) {
        look.noteCut(declared);
    }
}

// The last four bytes tell how long the tag in front of them is: its header of 11 bytes and the
// data size that stands in the header's bytes 1 to 3.
void lookAtFlv(Look& look) {
    constexpr std::uint64_t kFirstTag = 9 + 4;
    if (look.record.status == probe::kNotParsed) {
        look.seen.damage = "its header announces sound or pictures that do not come";
        return;
    }
    std::uint8_t tail[4], tag[4];
    const std::uint64_t bytes = look.seen.fileBytes;
    if (bytes <= kFirstTag || !look.read(bytes - sizeof tail, tail)) {
        return;
    }
    const std::uint64_t tagBytes = probe::be32(tail);
    const bool whole = tagBytes >= 11 && tagBytes + sizeof tail + kFirstTag <= bytes &&
                       look.read(bytes - sizeof tail - tagBytes, tag) &&
                       probe::be24(tag + 1) + 11 == tagBytes;
    if (!whole) {
        look.seen.damage = "cut off: it does not end with a whole tag";
    }
}

// The codec of the first page, whose packet begins at +28, by the mappings of RFC 7845 (Opus) and
// of xiph.org; null for one that is not known here. Of all codecs the player's probe reads Vorbis.
const char* oggCodec(Look& look) {
    static constexpr struct {
        std::size_t length;
        const char* magic;
        const char* name;
    } kCodecs[] = {{8, "OpusHead", "Opus"},
                   {7, "\x80theora", "Theora"},
                   {5,
                    "\x7F"
                    "FLAC",
                    "FLAC"},
                   {8, "Speex   ", "Speex"},
                   {8, "fishead", "a skeleton"}};
    std::uint8_t packet[8];
    if (!look.read(28, packet)) {
        return nullptr;
    }
    for (const auto& one : kCodecs) {
        if (std::memcmp(packet, one.magic, one.length) == 0) {
            return one.name;
        }
    }
    return nullptr;
}

// The last page (RFC 3533): "OggS", +5 header type (4: last page of its stream), +26 number of
// segments, +27 their lengths.
void lookAtOgg(Look& look) {
    constexpr std::size_t kTail = 8192;
    constexpr std::size_t kPageHead = 27;
    if (const char* const codec = oggCodec(look)) {
        look.seen.note = std::string("Ogg that begins with ") + codec +
                         "; the player's probe reads Vorbis alone";
    }
    std::array<std::uint8_t, kTail> room;
    const std::span<const std::uint8_t> tail = look.tail(room);
    const std::size_t wanted = tail.size();
    for (std::size_t at = wanted - std::min(wanted, kPageHead) + 1; at-- > 0;) {
        const std::uint8_t* const page = tail.data() + at;
        if (wanted - at < kPageHead || std::memcmp(page, "OggS", 4) != 0) {
            continue;
        }
        std::size_t length = kPageHead + page[26];
        for (std::size_t i = 0; i < page[26] && at + kPageHead + i < wanted; ++i) {
            length += page[kPageHead + i];
        }
        if (length > wanted - at) {
            look.seen.damage = "cut off: its last page is not whole";
        } else if ((page[5] & 4) == 0) {
            look.seen.damage = "cut off: its last page does not end the stream";
        }
        return;
    }
}

}  // namespace mediaprobe
