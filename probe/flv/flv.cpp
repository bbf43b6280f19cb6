#include "probe/flv/flv.h"

#include <algorithm>
#include <array>

#include "probe/flv/script.h"
#include "probe/flv/timestamp.h"
#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

// Adobe Flash Video File Format Specification 10.1, annex E. All numbers are big-endian.
//
// File header:                          Before each tag, and the tag's header:
//   0  3  "FLV"                           0  4  size of the previous tag
//   3  1  version                         4  1  tag type: 8 audio, 9 video, 18 script data
//   4  1  flags: 1 video, 4 audio         5  3  data size
//   5  4  header size                     8  3  time stamp, milliseconds
//                                        11  1  its upper eight bits
//                                        12  3  stream identifier
namespace probe {
namespace {

constexpr std::size_t kFileHeaderBytes = 9;
constexpr std::size_t kTagPrefixBytes = 15;
constexpr std::uint8_t kFlagVideo = 0x01, kFlagAudio = 0x04;
constexpr std::uint8_t kTagAudio = 8, kTagVideo = 9, kTagScript = 18;
constexpr std::uint8_t kCodecSorenson = 2, kCodecAvc = 7;

struct FlvReader {
    ReadWindow& file;
    std::uint64_t dataStart = 0;
    std::uint64_t position = 0;
    std::uint64_t end = 0;
    std::uint8_t flags = 0;
    std::uint8_t firstAudioByte = 0;
    std::uint8_t videoCodecByte = 0;
    FlvMetadata metadata{};
};

struct PictureSize {
    std::uint16_t width, height;
};

// Sorenson H.263 picture sizes by size code; codes 0 and 1 carry the size in the header.
constexpr std::array<PictureSize, 8> kSorensonSizes = {
    {{0, 0}, {0, 0}, {352, 288}, {176, 144}, {128, 96}, {320, 240}, {160, 120}, {0, 0}}};

// The first bytes of a video tag: the codec byte, a picture start code of 17 bits, 5 bits of
// version, 8 bits of temporal reference, 3 bits of size code, the size itself.
constexpr std::size_t kSorensonBytes = 10;

void readSorensonSize(const std::uint8_t* data, FlvMetadata& metadata) {
    if ((data[3] & 0x7C) >= 5) {  // versions 0 and 1 are known
        return;
    }
    const std::uint32_t sizeCode = (data[5] >> 7) | ((data[4] & 3u) << 1);
    if (sizeCode == 0) {
        metadata.width = ((data[5] & 0x7Fu) << 1) | (data[6] >> 7);
        metadata.height = ((data[6] & 0x7Fu) << 1) | (data[7] >> 7);
    } else if (sizeCode == 1) {
        metadata.width = (((data[5] & 0x7Fu) << 8 | data[6]) << 1) | (data[7] >> 7);
        metadata.height = (((data[7] & 0x7Fu) << 8 | data[8]) << 1) | (data[9] >> 7);
    } else {
        metadata.width = kSorensonSizes[sizeCode].width;
        metadata.height = kSorensonSizes[sizeCode].height;
    }
}

Result readScriptTag(FlvReader& reader, std::uint32_t dataSize) {
    FileCursor cursor(reader.file, reader.position, reader.position + dataSize);
    // The name of the script, then its properties; the second is read whatever the first was.
    static_cast<void>(parseFlvScriptValue(cursor, reader.metadata));
    if (!cursor.readFailed()) {
        static_cast<void>(parseFlvScriptValue(cursor, reader.metadata));
    }
    return cursor.readFailed() ? kFail : kOk;
}

Result readVideoTag(FlvReader& reader, std::uint32_t dataSize) {
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(reader.position, std::min<std::size_t>(dataSize, kSorensonBytes),
                             head)) {
        return kFail;
    }
    reader.videoCodecByte = head.empty() ? std::uint8_t{0} : head[0];
    if ((reader.videoCodecByte & 0x0F) == kCodecSorenson && dataSize >= kSorensonBytes) {
        readSorensonSize(head.data(), reader.metadata);
    }
    return kOk;
}

Result readAudioTag(FlvReader& reader, std::uint32_t dataSize) {
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(reader.position, std::min<std::size_t>(dataSize, 1), head)) {
        return kFail;
    }
    reader.firstAudioByte = head.empty() ? std::uint8_t{0} : head[0];
    return kOk;
}

// Walks the tags until the first of each announced kind has been seen.
Result readTags(FlvReader& reader) {
    bool videoWanted = (reader.flags & kFlagVideo) != 0;
    bool audioWanted = (reader.flags & kFlagAudio) != 0;
    reader.position = reader.dataStart;
    while (videoWanted || audioWanted) {
        std::span<const std::uint8_t> prefix;
        if (!reader.file.viewAll(reader.position, kTagPrefixBytes, prefix)) {
            return kFail;
        }
        reader.position += kTagPrefixBytes;
        const std::uint8_t type = prefix[4];
        const std::uint32_t dataSize = be24(&prefix[5]);
        const bool isVideo = type == kTagVideo && videoWanted;
        const bool isAudio = type == kTagAudio && audioWanted;
        if (isVideo || isAudio || type == kTagScript) {
            // All of it must be there, though only the first few bytes are looked at.
            if (!fileHolds(reader.end, reader.position, dataSize)) {
                return kFail;
            }
            const Result result = isVideo   ? readVideoTag(reader, dataSize)
                                  : isAudio ? readAudioTag(reader, dataSize)
                                            : readScriptTag(reader, dataSize);
            if (result != kOk) {
                return result;
            }
        }
        videoWanted = videoWanted && !isVideo;
        audioWanted = audioWanted && !isAudio;
        reader.position += dataSize;
    }
    return kOk;
}

void fillVideo(const FlvReader& reader, MediaRecord& record) {
    record.videoWidth = reader.metadata.width;
    record.videoHeight = reader.metadata.height;
    record.videoBitRate = reader.metadata.videoDataRate;
    switch (reader.videoCodecByte & 0x0F) {
        case kCodecAvc:
            record.videoFourCC = fourCc("H264");
            break;
        case kCodecSorenson:
            record.videoFourCC = fourCc("S263");
            break;
        default:  // a file without a video tag too
            record.videoFourCC = kUnknownVideo;
    }
    if (reader.metadata.frameRate > 0.0) {
        record.frameTimeMicroseconds = saturateToU32(1'000'000.0 / reader.metadata.frameRate);
    }
}

void fillAudio(const FlvReader& reader, MediaRecord& record) {
    struct Row {
        std::uint8_t soundFormat;
        std::uint32_t tag;
    };
    constexpr auto kFormats = std::to_array<Row>(
        {{0, kAudioPcm}, {1, kAudioAdpcm}, {2, kAudioMpegLayer3}, {3, kAudioPcm}, {10, kAudioAac}});
    // Required: the lowest rate is 5500 exactly, not 5512.
    constexpr std::array<std::uint32_t, 4> kSampleRates = {5500, 11025, 22050, 44100};

    const std::uint8_t byte = reader.firstAudioByte;
    const auto row = std::ranges::find(kFormats, byte >> 4, &Row::soundFormat);
    if (row != kFormats.end()) {
        record.audioFormatTag = row->tag;
    }
    record.audioSampleRate = kSampleRates[(byte >> 2) & 3u];
    record.audioChannels = (byte & 1u) + 1;
    record.audioBitRate = reader.metadata.audioDataRate;
}

Result parseFlv(FlvReader& reader, MediaRecord& record) {
    const Result result = readTags(reader);
    if (result != kOk) {
        return result;  // required: the record keeps its status
    }
    std::uint32_t milliseconds = 0;
    if (findLastFlvTimestamp(reader.file, reader.dataStart, reader.end, FlvTags::Any,
                             milliseconds)) {
        record.durationSeconds = milliseconds / 1000;
    }
    record.containerType = kContainerFlv;
    record.status = kOk;
    fillVideo(reader, record);
    if ((reader.flags & kFlagAudio) != 0) {
        fillAudio(reader, record);
    }
    return kOk;
}

}  // namespace

int FlvRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kFileHeaderBytes, kFileHeaderBytes, head)) {
        return decline(why);
    }
    if (!beginsWith(head.bytes, "FLV")) {
        return decline("does not begin with FLV");
    }
    record.setFileSize(head.fileSize);
    FlvReader reader{.file = file,
                     .dataStart = be32(&head.bytes[5]),
                     .end = head.fileSize,
                     .flags = head.bytes[4]};
    static_cast<void>(parseFlv(reader, record));
    return 1;
}

}  // namespace probe
