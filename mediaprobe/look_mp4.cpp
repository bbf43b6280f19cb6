// MP4 and 3GP (ISO/IEC 14496-12): boxes that lead beyond the file's end, a missing index ("moov"),
// and the codecs that the sample entries really name: the record calls every picture that is not
// H.264 "MP4V", and every sound that is not MPEG audio AAC.
#include "mediaprobe/format_text.h"
#include "mediaprobe/looks.h"
#include "mediaprobe/names.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;

constexpr int kMostBoxes = 4096;  // of one level

struct Box {
    std::uint32_t type = 0;
    std::uint64_t body = 0;  // where it begins
    std::uint64_t end = 0;   // first byte behind it
    bool longSize = false;   // its size has 64 bits
};

// The boxes of one level in turn, between two offsets.
class Boxes {
public:
    Boxes(Look& look, std::uint64_t begin, std::uint64_t end)
        : look_(look), at_(begin), end_(end) {}

    bool next(Box& box) {
        std::uint8_t head[16];
        if (++count_ > kMostBoxes || at_ + 8 > end_ || !look_.read(at_, std::span(head).first(8))) {
            return false;
        }
        std::uint64_t size = probe::be32(head);
        std::uint64_t headBytes = 8;
        if (size == 1) {
            if (!look_.read(at_, head)) {
                return false;
            }
            size = probe::be64(head + 8);
            headBytes = 16;
        }
        if (size < headBytes || size > UINT64_MAX - at_) {
            return false;
        }
        box = {probe::be32(head + 4), at_ + headBytes, at_ + size, headBytes == 16};
        at_ = box.end;
        return true;
    }
    // Where the next box begins.
    std::uint64_t position() const { return at_; }

private:
    Look& look_;
    std::uint64_t at_;
    std::uint64_t end_;
    int count_ = 0;
};

bool findBox(Look& look, const Box& parent, std::uint32_t type, Box& found) {
    Boxes boxes(look, parent.body, parent.end);
    while (boxes.next(found)) {
        if (found.type == type) {
            return true;
        }
    }
    return false;
}

// Length of a descriptor, seven bits a byte while the top bit is set; moves `at` behind it.
void skipLength(Look& look, std::uint64_t& at) {
    std::uint8_t byte[1] = {0x80};
    for (int i = 0; i < 4 && (byte[0] & 0x80) != 0 && look.read(at, byte); ++i) {
        ++at;
    }
}

// The object type of the visual sample entry at `entry`: behind its 86 bytes an "esds" box with an
// elementary stream descriptor (tag 3: id, flags) around a decoder configuration (tag 4).
std::uint8_t readObjectType(Look& look, std::uint64_t entry, std::uint64_t end) {
    constexpr std::uint64_t kVisualEntry = 86;
    Box esds;
    std::uint8_t head[4], type[1];
    if (!findBox(look, {0, entry + kVisualEntry, end}, fourCc("esds"), esds)) {
        return 0;
    }
    std::uint64_t at = esds.body + 5;  // version, flags, tag
    skipLength(look, at);
    // A stream that depends on another, or names an address, has more in front of its
    // configuration.
    if (!look.read(at, head) || (head[2] & 0xE0) != 0 || head[3] != 4) {
        return 0;
    }
    at += sizeof head;
    skipLength(look, at);
    return look.read(at, type) ? type[0] : std::uint8_t{0};
}

// The first sample entry of a track's description, and what kind of track it is.
struct Track {
    std::uint32_t handler = 0;
    std::uint32_t entry = 0;
    std::uint8_t objectType = 0;
    bool onlyLongOffsets = false;
};

Track readTrack(Look& look, const Box& trak) {
    Track track;
    Box mdia, hdlr, minf, stbl, stsd, table;
    std::uint8_t field[4];
    if (!findBox(look, trak, fourCc("mdia"), mdia) || !findBox(look, mdia, fourCc("hdlr"), hdlr) ||
        !look.read(hdlr.body + 8, field)) {
        return track;
    }
    track.handler = probe::be32(field);
    if (!findBox(look, mdia, fourCc("minf"), minf) || !findBox(look, minf, fourCc("stbl"), stbl)) {
        return track;
    }
    // Version, flags and count, then the first entry's size and its letters.
    if (findBox(look, stbl, fourCc("stsd"), stsd) && look.read(stsd.body + 12, field)) {
        track.entry = probe::be32(field);
        if (track.entry == fourCc("mp4v")) {
            track.objectType = readObjectType(look, stsd.body + 8, stsd.end);
        }
    }
    track.onlyLongOffsets =
        !findBox(look, stbl, fourCc("stco"), table) && findBox(look, stbl, fourCc("co64"), table);
    return track;
}

void lookAtTracks(Look& look, const Box& moov) {
    Boxes boxes(look, moov.body, moov.end);
    for (Box box; boxes.next(box);) {
        if (box.type != fourCc("trak")) {
            continue;
        }
        const Track track = readTrack(look, box);
        const bool isVideo = track.handler == fourCc("vide");
        if (!isVideo && track.handler != fourCc("soun")) {
            continue;
        }
        if (isVideo && look.seen.videoEntry == 0) {
            look.seen.videoEntry = track.entry;
            look.seen.videoObjectType = track.objectType;
        } else if (!isVideo && look.seen.audioEntry == 0) {
            look.seen.audioEntry = track.entry;
        }
        if (track.onlyLongOffsets && look.record.status != probe::kOk) {
            look.seen.note =
                "its chunk offsets have 64 bits, which the player's probe does not read";
        }
    }
}

}  // namespace

void lookAtMp4(Look& look) {
    const std::uint64_t fileBytes = look.seen.fileBytes;
    Boxes boxes(look, 0, fileBytes);
    bool indexed = false;
    std::uint64_t end = 0;
    for (Box box; boxes.next(box);) {
        end = box.end;
        if (box.longSize && !indexed && look.record.status != probe::kOk) {
            look.seen.note =
                "a box in front of its index has a 64-bit size, which the player's probe does not "
                "read";
        }
        if (box.type == fourCc("moov") && box.end <= fileBytes) {
            indexed = true;
            lookAtTracks(look, box);
        }
    }
    std::string& damage = look.seen.damage;
    const bool cut = look.noteCut(end);
    if (!indexed) {
        // What is missing behind the last box that begins is not known.
        damage = cut ? "cut off: the index is missing, " + partOf(fileBytes, end, "at least ") +
                           " are there"
                     : "the index is missing";
    } else if (!cut && end < fileBytes && look.seen.note.empty() &&
               look.record.status != probe::kOk) {
        damage = "what stands at byte " + grouped(boxes.position()) + " is no box";
    }
}

}  // namespace mediaprobe
