// FLAC (RFC 9639): whether the sound that the stream information promises is there. A file that was
// cut off ends with an older frame than the last one; which one it is stands in the frame's header.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <span>

#include "mediaprobe/format_text.h"
#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"

namespace mediaprobe {
namespace {

constexpr std::uint64_t kInfo = 8;        // behind "fLaC" and a block header of 4 bytes
constexpr std::uint64_t kInfoBytes = 34;  // of which the last 16 are a checksum
constexpr std::size_t kMostTail = std::size_t{1} << 20;  // an eighth of it is rare
constexpr std::size_t kMostHeaderBytes = 16;
constexpr std::size_t kFooterBytes = 2;

// Section 8.2: +0 least and +2 most samples of a block, +4 least and +7 most bytes of a frame (0
// unknown), +10 packed: sample rate (20 bits), channels - 1 (3), bits of a sample - 1 (5), samples
// (36, 0 unknown).
struct StreamInfo {
    std::uint64_t blockSamples = 0;
    std::uint64_t leastFrameBytes = 0;
    std::uint64_t mostFrameBytes = 0;
    std::uint64_t sampleRate = 0;
    std::uint64_t channels = 0;
    std::uint64_t sampleBits = 0;
    std::uint64_t samples = 0;

    // No frame is larger: stored without compression, with 8 bytes for each subframe's own header.
    std::uint64_t largestFrame() const {
        const std::uint64_t plain =
            channels * (blockSamples * (sampleBits + 1) / 8 + 8) + kMostHeaderBytes + kFooterBytes;
        return mostFrameBytes != 0 ? std::min(mostFrameBytes, plain) : plain;
    }
};

// A frame by its header, and the samples in front of it and in it.
struct Frame {
    std::uint64_t firstSample = 0;
    std::uint64_t samples = 0;
};

// Section 9.1.8: x^8 + x^2 + x + 1 over the header; with its checksum behind it the rest is 0.
std::uint8_t headerCheck(std::span<const std::uint8_t> header) {
    unsigned check = 0;
    for (const std::uint8_t byte : header) {
        check ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            check = (check << 1 ^ ((check & 0x80) != 0 ? 0x07u : 0u)) & 0xFF;
        }
    }
    return static_cast<std::uint8_t>(check);
}

// Section 9.3: x^16 + x^15 + x^2 + 1 over the whole frame. Zeros behind it change nothing.
bool isWhole(std::span<const std::uint8_t> frame) {
    static constexpr auto kTable = [] {
        std::array<std::uint16_t, 256> table{};
        for (unsigned i = 0; i < table.size(); ++i) {
            unsigned check = i << 8;
            for (int bit = 0; bit < 8; ++bit) {
                check = check << 1 ^ ((check & 0x8000) != 0 ? 0x8005u : 0u);
            }
            table[i] = static_cast<std::uint16_t>(check);
        }
        return table;
    }();
    unsigned check = 0;
    for (const std::uint8_t byte : frame) {
        check = (check << 8 & 0xFFFF) ^ kTable[check >> 8 ^ byte];
    }
    return check == 0;
}

// Section 9.1.1: samples of the block by the header's third byte; 0 where they stand behind the
// coded number, or where the code is reserved.
std::uint64_t usualBlock(unsigned code) {
    return code == 1 ? 192 : code >= 2 && code <= 5 ? 144u << code : code >= 8 ? 1u << code : 0;
}

// Section 9.1.2, codes 1 to 11, in Hz.
constexpr std::uint32_t kRates[] = {88200, 176400, 192000, 8000,  16000, 22050,
                                    24000, 32000,  44100,  48000, 96000};
// Section 9.1.4; 0 is reserved but for the first, which refers to the stream information.
constexpr std::uint8_t kBits[] = {0, 8, 12, 0, 16, 20, 24, 32};

// Section 9.1.5: as many leading ones as the number has bytes, none for a single one, then six bits
// in each further byte.
bool readNumber(probe::ByteReader& reader, std::uint64_t& number) {
    const unsigned first = reader.u8();
    int bytes = 0;
    while (bytes < 8 && (first << bytes & 0x80) != 0) {
        ++bytes;
    }
    if (bytes == 1 || bytes == 8) {
        return false;
    }
    number = first & 0x7Fu >> bytes;
    for (int i = 1; i < bytes; ++i) {
        const unsigned byte = reader.u8();
        if ((byte & 0xC0) != 0x80) {
            return false;
        }
        number = number << 6 | (byte & 0x3F);
    }
    return true;
}

// The frame header at the start of `bytes`; none when it is no header, or one that does not fit the
// stream. Section 9.1: sync code (15 bits), 1 for blocks of many sizes; block (4), rate (4);
// channels (4), bits of a sample (3), 0; the coded number; what the codes leave to the end; a
// checksum.
std::optional<Frame> readHeader(std::span<const std::uint8_t> bytes, const StreamInfo& info) {
    if (bytes.size() < 6 || bytes[0] != 0xFF || (bytes[1] & 0xFE) != 0xF8) {
        return {};
    }
    const unsigned blockCode = bytes[2] >> 4, rateCode = bytes[2] & 15u;
    const unsigned channelCode = bytes[3] >> 4, bitsCode = bytes[3] >> 1 & 7u;
    // Codes 8 to 10 are two channels, of which one is stored as a difference.
    const unsigned channels = channelCode < 8 ? channelCode + 1 : channelCode <= 10 ? 2 : 0;
    const bool fits = channels == info.channels && (bytes[3] & 1) == 0 &&
                      (bitsCode == 0 || kBits[bitsCode] == info.sampleBits) &&
                      (rateCode == 0 || rateCode >= 12 || kRates[rateCode - 1] == info.sampleRate);
    if (!fits || blockCode == 0 || rateCode == 15) {
        return {};
    }
    probe::ByteReader reader(bytes);
    reader.skip(4);
    Frame frame;
    if (!readNumber(reader, frame.firstSample)) {
        return {};
    }
    frame.samples = usualBlock(blockCode);
    if (blockCode == 6) {
        frame.samples = reader.u8() + 1u;
    } else if (blockCode == 7) {
        const unsigned high = reader.u8();
        frame.samples = (high << 8 | reader.u8()) + 1u;
    }
    // An unusual rate: code 12 in kHz, 13 in Hz, 14 in tens of Hz.
    reader.skip(rateCode < 12 ? 0 : rateCode == 12 ? 1 : 2);
    reader.skip(1);  // the checksum
    if (!reader.ok() || headerCheck(bytes.first(reader.position())) != 0) {
        return {};
    }
    if ((bytes[1] & 1) == 0) {
        frame.firstSample *= info.blockSamples;  // blocks of one size are counted, not samples
    }
    return frame;
}

bool readInfo(Look& look, std::uint64_t start, StreamInfo& info) {
    std::uint8_t bytes[18];
    if (!look.read(start + kInfo, bytes)) {
        return false;
    }
    const std::uint64_t packed = probe::be64(bytes + 10);
    info.blockSamples = probe::be16(bytes + 2);
    info.leastFrameBytes = probe::be24(bytes + 4);
    info.mostFrameBytes = probe::be24(bytes + 7);
    info.sampleRate = packed >> 44;
    info.channels = (packed >> 41 & 7) + 1;
    info.sampleBits = (packed >> 36 & 31) + 1;
    info.samples = packed & 0xFFFFFFFFF;
    return info.blockSamples != 0;
}

// Where the sound ends: in front of an ID3 version 1 tag (128 bytes that begin with "TAG") and an
// APE tag (a footer of 32 bytes: +0 "APETAGEX", +12 bytes of items and footer, +20 flags, of which
// the top bit announces a header of 32 bytes).
std::uint64_t soundEnd(Look& look) {
    constexpr std::uint64_t kId3Bytes = 128;
    constexpr std::uint64_t kFooter = 32;
    std::uint64_t end = look.seen.fileBytes;
    std::uint8_t tag[3], footer[kFooter];
    if (end > kId3Bytes && look.read(end - kId3Bytes, tag) && std::memcmp(tag, "TAG", 3) == 0) {
        end -= kId3Bytes;
    }
    if (end > kFooter && look.read(end - kFooter, footer) &&
        std::memcmp(footer, "APETAGEX", 8) == 0) {
        const std::uint64_t head = (probe::le32(footer + 20) >> 31) != 0 ? kFooter : 0;
        end -= std::min(end, probe::le32(footer + 12) + head);
    }
    return end;
}

// The last frame that begins in `tail`; what it says goes to the look.
void judgeLastFrame(Look& look, const StreamInfo& info, std::span<const std::uint8_t> tail) {
    std::optional<Frame> frame;
    std::size_t at = tail.size();
    while (!frame && at-- > 0) {
        if (tail[at] == 0xFF) {
            frame = readHeader(tail.subspan(at), info);
        }
    }
    std::string& damage = look.seen.damage;
    if (!frame) {
        damage = "its end holds no sound";
        return;
    }
    const bool whole = isWhole(tail.subspan(at));
    const std::uint64_t there = frame->firstSample + (whole ? frame->samples : 0);
    if (frame->firstSample + frame->samples < info.samples && info.sampleRate != 0) {
        const auto seconds = [&info](std::uint64_t samples) {
            return playTime(static_cast<std::uint32_t>(
                std::min<std::uint64_t>(samples / info.sampleRate, UINT32_MAX)));
        };
        const std::string has = seconds(there), wants = seconds(info.samples);
        damage = has != wants ? "cut off: " + has + " of " + wants + " are there"
                              : "cut off: " + grouped(there) + " of " + grouped(info.samples) +
                                    " samples are there";
    } else if (!whole) {
        damage = "its last frame is not whole, or something else stands behind it";
    }
}

}  // namespace

void lookAtFlac(Look& look) {
    const std::uint64_t start = behindId3Tag(look);
    StreamInfo info;
    if (look.record.status != probe::kOk || !readInfo(look, start, info)) {
        return;
    }
    const std::uint64_t least = info.samples / info.blockSamples * info.leastFrameBytes;
    if (look.noteCut(least, "at least ")) {
        return;
    }
    const std::uint64_t begin = start + kInfo + kInfoBytes, end = soundEnd(look);
    // A frame may begin that far in front of the end, and be all there but for its last byte.
    const std::uint64_t wanted = std::min(info.largestFrame(), end - std::min(begin, end));
    if (wanted > kMostTail) {
        return;
    }
    const std::size_t bytes = static_cast<std::size_t>(wanted);
    const std::unique_ptr<std::uint8_t[]> tail(new (std::nothrow) std::uint8_t[bytes]);
    std::size_t got = 0;
    if (tail && look.file.readAside(end - wanted, {tail.get(), bytes}, got) && got == bytes) {
        judgeLastFrame(look, info, {tail.get(), bytes});
    }
}

}  // namespace mediaprobe
