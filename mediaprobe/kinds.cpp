// What a file that no recogniser claims begins like. The player's probe knows ten families; what
// else lies on a card should be called by its name, and a file that is only too short or of a brand
// that the probe does not take should say so.
#include <algorithm>
#include <cstring>

#include "mediaprobe/format_text.h"
#include "mediaprobe/looks.h"

namespace mediaprobe {
namespace {

using Head = std::span<const std::uint8_t>;

constexpr std::uint64_t kLeastHead = 256;        // most recognisers take no file below it
constexpr std::uint64_t kLeastStream = 0x40000;  // nor that of program streams one below this
constexpr std::uint64_t kLeastWave = 2048;
constexpr char kGraph[] = "; the unit's graph may play it all the same";

bool holds(Head head, std::size_t at, const char* magic, std::size_t length) {
    return head.size() >= at + length && std::memcmp(head.data() + at, magic, length) == 0;
}

// What the probe never reads.
constexpr struct {
    std::size_t at;
    std::size_t length;
    const char* magic;
    const char* name;
    bool mayPlay;  // recordings and films of this kind stand in the player's list
} kKinds[] = {
    {0, 4, "\x1A\x45\xDF\xA3", "Matroska or WebM", true},  // RFC 8794
    {0, 4, ".RMF", "RealMedia", true},
    {4, 4, "moov", "QuickTime without a file type", true},  // before ISO/IEC 14496-12
    {4, 4, "mdat", "QuickTime without a file type", true},
    {4, 4, "wide", "QuickTime without a file type", true},
    {0, 4, "\x00\x00\x01\xB3", "a bare MPEG picture stream", true},  // ISO/IEC 13818-2
    {0, 2, "\xFF\xF1", "AAC without a container", false},            // ADTS, ISO/IEC 13818-7
    {0, 2, "\xFF\xF9", "AAC without a container", false},
    {0, 5, "#!AMR", "AMR sound", false},  // RFC 4867
    {0, 4, "MThd", "a MIDI score", false},
    {0, 4, "RF64", "WAVE with 64-bit lengths", false},  // EBU Tech 3306
};

// What it reads when there is more of it.
constexpr struct {
    std::size_t at;
    std::size_t length;
    const char* magic;
    const char* name;
} kShort[] = {
    {8, 4, "AVI ", "AVI"},
    {8, 4, "WAVE", "WAVE"},
    {4, 4, "ftyp", "MP4"},
    {0, 4, "\x30\x26\xB2\x75", "ASF (Windows Media)"},
    {0, 4, "OggS", "Ogg"},
    {0, 4, "fLaC", "FLAC"},
    {0, 4, "MAC ", "Monkey's Audio"},
};

// ISO/IEC 13818-1: packets of 188 bytes, each beginning with 0x47; in recordings of camcorders a
// time of four bytes stands in front of each.
bool isTransportStream(Head head) {
    constexpr int kPackets = 4;
    for (const std::size_t extra : {0, 4}) {
        int packets = 0;
        for (std::size_t at = extra; at < head.size() && head[at] == 0x47; at += 188 + extra) {
            ++packets;
        }
        if (packets >= kPackets) {
            return true;
        }
    }
    return false;
}

// ISO/IEC 11172-3: eleven ones, then a version and a layer that are not reserved. FF FE is left
// out: UTF-16 texts begin with it.
bool isMpegFrame(Head head) {
    return head.size() >= 4 && head[0] == 0xFF && (head[1] & 0xE0) == 0xE0 &&
           (head[1] & 0x18) != 0x08 && (head[1] & 0x06) != 0 && head[1] != 0xFE;
}

bool isText(Head head) {
    const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
    return std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\n' && c != '\r' && c != '\t') || byte == 0x7F;
    });
}

}  // namespace

std::string kindOfUnclaimed(Look& look) {
    Head head;
    if (!look.file.view(0, probe::ReadWindow::kSmallest, head)) {
        return {};
    }
    for (const auto& one : kShort) {
        if (look.seen.fileBytes < kLeastHead && holds(head, one.at, one.magic, one.length)) {
            return std::string(one.name) + ", too short: the player's probe takes no file below " +
                   grouped(kLeastHead) + " bytes";
        }
    }
    if (holds(head, 4, "ftyp", 4) && head.size() >= 12) {
        return "MP4 or QuickTime of the brand \"" +
               escaped({reinterpret_cast<const char*>(head.data()) + 8, 4}) +
               "\", which the player's probe does not take" + kGraph;
    }
    if (holds(head, 0, "\x00\x00\x01\xBA", 4)) {
        return "an MPEG program stream, too short: the player's probe takes none below " +
               grouped(kLeastStream) + " bytes" + kGraph;
    }
    if (holds(head, 0, "ID3", 3)) {
        return "an ID3 tag, but no six frames of MPEG audio in a row behind it";
    }
    if (isMpegFrame(head)) {
        return "MPEG audio, but without six frames in a row";
    }
    if (holds(head, 8, "WAVE", 4) && holds(head, 0, "RIFF", 4)) {
        return "WAVE, but without a format, or below " + grouped(kLeastWave) + " bytes";
    }
    if (holds(head, 0, "RIFF", 4) && head.size() >= 12) {
        return "RIFF of the form \"" +
               escaped({reinterpret_cast<const char*>(head.data()) + 8, 4}) +
               "\", which the player's probe does not read";
    }
    for (const auto& one : kKinds) {
        if (holds(head, one.at, one.magic, one.length)) {
            return std::string(one.name) + ", which the player's probe does not read" +
                   (one.mayPlay ? kGraph : "");
        }
    }
    if (isText(head)) {
        return "it is text";
    }
    return isTransportStream(head)
               ? std::string("an MPEG transport stream, which the player's probe does not read") +
                     kGraph
               : "";
}

}  // namespace mediaprobe
