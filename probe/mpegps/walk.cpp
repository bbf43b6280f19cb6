#include "probe/mpegps/walk.h"

#include <algorithm>
#include <array>

#include "probe/read/byte_reader.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

constexpr std::uint64_t kWalkBytes = 0x200000;
// How far sound is looked for though the system header lists none: the header may be wrong.
constexpr std::uint64_t kSilentBytes = 0x40000;
constexpr std::size_t kPacketHeaderBytes = 6;  // start code and length
constexpr std::size_t kLongestHeader = 32;     // what a packet's header is judged by
constexpr std::size_t kMpeg2FixedBytes = 3;    // its flags and length, in MPEG-2
constexpr std::uint8_t kAllAudioStreams = 0xB8;
constexpr std::uint8_t kFirstVideoStream = 0xE0, kLastVideoStream = 0xEF;

struct Walk {
    MpegPsReader& reader;
    std::uint64_t at;
    std::uint64_t limit;

    // Up to `wanted` bytes at `offset`, fewer at the limit. False when a read failed.
    bool view(std::uint64_t offset, std::size_t wanted, std::span<const std::uint8_t>& bytes) {
        const std::uint64_t left = offset < limit ? limit - offset : 0;
        return reader.file.view(
            offset, static_cast<std::size_t>(std::min<std::uint64_t>(wanted, left)), bytes);
    }
};

bool isAudio(std::uint8_t stream) {
    return stream == kPrivateStream1 || (stream >= kFirstAudioStream && stream <= kLastAudioStream);
}

bool isVideo(std::uint8_t stream) {
    return stream >= kFirstVideoStream && stream <= kLastVideoStream;
}

// Whether packets of this stream carry a header with time stamps: all but the program stream map,
// padding, private stream 2, ECM, EMM, DSM-CC, H.222.1 type E and the directory.
bool hasPacketHeader(std::uint8_t stream) {
    constexpr auto kWithout =
        std::to_array<std::uint8_t>({0xBC, 0xBE, 0xBF, 0xF0, 0xF1, 0xF2, 0xF8, 0xFF});
    return std::ranges::find(kWithout, stream) == kWithout.end();
}

bool isSilent(const Walk& walk) {
    return walk.reader.announcesNoSound && !walk.reader.sawSoundPacket &&
           walk.at - walk.reader.firstPack >= kSilentBytes;
}

bool isComplete(const Walk& walk) {
    const MpegPsReader& reader = walk.reader;
    return reader.sequence.complete() && reader.firstClock.time != kNoClock &&
           (reader.audio.formatTag != 0 || isSilent(walk));
}

// Pack header: start code, clock (5 or 6 bytes), multiplex rate 3; MPEG-2 adds a byte whose low
// three bits count the stuffing bytes that follow.
Result readPack(Walk& walk) {
    constexpr std::size_t kMpeg1Bytes = 12, kMpeg2Bytes = 14;
    std::span<const std::uint8_t> bytes;
    if (!walk.view(walk.at, kMpeg2Bytes, bytes)) {
        return kFail;
    }
    MpegPsReader& reader = walk.reader;
    reader.sawSystemLayer = true;
    if (bytes.size() < kMpeg2Bytes) {
        walk.at = walk.limit;
        return kOk;
    }
    const PackClock clock = packClock(bytes.subspan<kStartCodeBytes, kPackClockBytes>());
    reader.packsReadTo = walk.at + kStartCodeBytes;
    if (clock.time == kNoClock) {
        diagnoseDamaged(clock);
        walk.at += kStartCodeBytes;
        return kOk;
    }
    reader.isMpeg1 = reader.isMpeg1 || clock.isMpeg1;
    if (reader.firstClock.time == kNoClock) {
        reader.firstClock = {walk.at, clock.time};
    }
    walk.at += clock.isMpeg1 ? kMpeg1Bytes : kMpeg2Bytes + (bytes[kMpeg2Bytes - 1] & 7u);
    return kOk;
}

// System header: start code, length 2, rate and bounds 6, then 3 bytes for each stream, the first
// of them its number with the top bit set.
Result readSystemHeader(Walk& walk, std::uint64_t data, std::uint32_t length) {
    constexpr std::size_t kBoundsBytes = 6, kEntryBytes = 3;
    std::span<const std::uint8_t> bytes;
    if (!walk.view(data, length, bytes)) {
        return kFail;
    }
    walk.reader.sawSystemLayer = true;
    bool listsStreams = false, listsSound = false;
    for (std::size_t at = kBoundsBytes; at + kEntryBytes <= bytes.size() && bytes[at] >= 0x80;
         at += kEntryBytes) {
        listsStreams = true;
        listsSound = listsSound || isAudio(bytes[at]) || bytes[at] == kAllAudioStreams;
    }
    // An MPEG-1 stream may have a header for each stream; MPEG-2 lists all in one.
    walk.reader.announcesNoSound = !walk.reader.isMpeg1 && listsStreams && !listsSound;
    return kOk;
}

// Length of an MPEG-2 packet header behind start code and length, up to the payload: 10 and 14
// flag bits, of which two announce time stamps, header length, header. 0 when the bytes hold none.
std::size_t mpeg2HeaderBytes(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < kMpeg2FixedBytes || (bytes[0] & 0xC0) != 0x80) {
        return 0;
    }
    if (bytes[1] >> 6 == 1) {
        diagnose("PES Packet Parse ERROR: PTS_DTS_flags =0x01\r\n");
    }
    return kMpeg2FixedBytes + bytes[2];
}

// The same of either kind. MPEG-1: stuffing, buffer size, time stamps.
std::size_t payloadOffset(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kMostStuffing = 16;
    if (const std::size_t header = mpeg2HeaderBytes(bytes); header != 0) {
        return header;
    }
    std::size_t at = 0;
    while (at < bytes.size() && at < kMostStuffing && bytes[at] == 0xFF) {
        ++at;
    }
    if (at + 2 < bytes.size() && (bytes[at] & 0xC0) == 0x40) {
        at += 2;
    }
    if (at >= bytes.size()) {
        return 0;
    }
    const unsigned stamps = bytes[at] >> 4;
    return at + (stamps == 2 ? 5u : stamps == 3 ? 10u : 1u);
}

// Looks for sound in a packet. The first stream that may be sound is the one that is described:
// where its frames fill single packets, no packet tells for certain, and two alike are enough.
void readAudio(MpegPsReader& reader, std::uint8_t stream, std::span<const std::uint8_t> payload) {
    PacketAudio audio;
    const AudioFound found = readPacketAudio(stream, payload, audio);
    if (found == AudioFound::No) {
        return;
    }
    const PacketAudio& before = reader.likelyAudio;
    if (found == AudioFound::Certain ||
        (audio.layer == before.layer && audio.sampleRate == before.sampleRate)) {
        reader.audio = audio;
        return;
    }
    reader.likelyAudio = audio;
    reader.likelyStream = stream;
}

// The payload of the packet whose data begin at `data` and are `length` bytes long.
Result readPacket(Walk& walk, std::uint8_t stream, std::uint64_t data, std::uint32_t length) {
    MpegPsReader& reader = walk.reader;
    if (isVideo(stream) && reader.videoStream == 0) {
        reader.videoStream = stream;
    }
    reader.sawSoundPacket = reader.sawSoundPacket || isAudio(stream);
    const bool videoWanted = stream == reader.videoStream && !reader.sequence.complete();
    const bool audioWanted = isAudio(stream) && reader.audio.formatTag == 0 &&
                             (reader.likelyStream == 0 || reader.likelyStream == stream);
    const std::size_t wanted = videoWanted || audioWanted ? length : kLongestHeader;
    std::span<const std::uint8_t> bytes;
    if (!walk.view(data, std::min<std::size_t>(wanted, length), bytes)) {
        return kFail;
    }
    const std::size_t offset = payloadOffset(bytes);
    if (offset == 0 || offset >= bytes.size()) {
        return kOk;
    }
    const auto payload = bytes.subspan(offset);
    if (videoWanted) {
        reader.sequence.feed(payload);
    } else if (audioWanted) {
        readAudio(reader, stream, payload);
    }
    return kOk;
}

// A packet of a stream that describes nothing: only its flags are looked at.
Result checkPacketHeader(Walk& walk, std::uint64_t data, std::uint32_t length) {
    std::span<const std::uint8_t> bytes;
    if (!walk.view(data, std::min<std::size_t>(kMpeg2FixedBytes, length), bytes)) {
        return kFail;
    }
    static_cast<void>(mpeg2HeaderBytes(bytes));
    return kOk;
}

// Moves to the next start code of the system layer at or behind the present place, or to the
// limit.
Result findNext(Walk& walk) {
    while (walk.at < walk.limit) {
        std::span<const std::uint8_t> bytes;
        const auto most = static_cast<std::size_t>(walk.limit - walk.at);
        if (!walk.reader.file.view(walk.at, std::min(most, kStartCodeBytes), most, bytes)) {
            return kFail;
        }
        if (bytes.size() < kStartCodeBytes) {
            break;
        }
        const std::size_t found = findStartCode(bytes, kProgramEnd, 0xFF);
        if (found < bytes.size()) {
            walk.at += found;
            return kOk;
        }
        walk.at += bytes.size() - (kStartCodeBytes - 1);
    }
    walk.at = walk.limit;
    return kOk;
}

// Acts on the start code at the present place and moves behind what it begins.
Result readNext(Walk& walk) {
    std::span<const std::uint8_t> bytes;
    if (!walk.view(walk.at, kPacketHeaderBytes, bytes)) {
        return kFail;
    }
    if (bytes.size() < kPacketHeaderBytes) {
        walk.at = walk.limit;
        return kOk;
    }
    const std::uint8_t code = bytes[3];
    std::uint32_t length = be16(&bytes[4]);
    if (code == kPackStart) {
        return readPack(walk);
    }
    if (code == kProgramEnd) {
        walk.at += kStartCodeBytes;
        return kOk;
    }
    const std::uint64_t data = walk.at + kPacketHeaderBytes;
    walk.at = data + length;
    if (length == 0) {  // some writers do not tell: up to the next start code of the layer
        if (findNext(walk) != kOk) {
            return kFail;
        }
        length = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(walk.at - data, ReadWindow::kLargest));
    }
    if (code == kSystemHeaderStart) {
        return readSystemHeader(walk, data, length);
    }
    if (isVideo(code) || isAudio(code)) {
        return readPacket(walk, code, data, length);
    }
    return hasPacketHeader(code) ? checkPacketHeader(walk, data, length) : kOk;
}

}  // namespace

Result walkMpegPs(MpegPsReader& reader) {
    Walk walk{reader, reader.firstPack, std::min(reader.end, reader.firstPack + kWalkBytes)};
    while (walk.at < walk.limit && !isComplete(walk)) {
        Result result = findNext(walk);
        if (result == kOk && walk.at < walk.limit) {
            result = readNext(walk);
        }
        if (result != kOk) {
            return result;
        }
    }
    if (reader.audio.formatTag == 0) {
        reader.audio = reader.likelyAudio;
    }
    return kOk;
}

}  // namespace probe
