#include "probe/asf/asf.h"

#include <algorithm>
#include <array>

#include "probe/asf/header.h"
#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

// Start of the file (Advanced Systems Format Specification 1.20.03, section 3.1), little-endian:
//    0  16  GUID of the Header Object
//   16   8  size of the header
//   24   4  number of header objects
//   28   2  reserved
constexpr std::size_t kHeadBytes = 256;
constexpr std::array<std::uint8_t, 16> kHeaderObject = {
    0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11, 0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};

void copyText(const AsfText& text, std::span<char16_t, kTextLength> field, std::uint32_t& flag) {
    if (text.lengthBytes != 0) {
        std::ranges::copy(text.text, field.begin());
        flag = 1;
    }
}

void copyTexts(const AsfReader& reader, MediaRecord& record) {
    copyText(reader.title, record.title, record.hasTitle);
    copyText(reader.artist, record.artist, record.hasArtist);
    copyText(reader.track, record.track, record.hasTrack);
    copyText(reader.album, record.album, record.hasAlbum);
    copyText(reader.genre, record.genre, record.hasGenre);
    copyText(reader.composer, record.composer, record.hasComposer);
    copyText(reader.year, record.year, record.hasYear);
}

}  // namespace

Result AsfFillInfo(AsfReader& reader, MediaRecord& record, std::uint32_t headerSize) {
    if (reader.fileSize < headerSize) {
        return kFail;
    }
    reader.headerSize = headerSize;
    const Result result = AsfReadHeader(reader);
    if (result != kOk) {
        return result;
    }
    record.containerType = kContainerAsf;
    record.status = kOk;
    record.durationSeconds = reader.durationSeconds;
    if (reader.audio.wFormatTag != 0) {
        record.audioFormatTag = reader.audio.wFormatTag;
        record.audioChannels = reader.audio.nChannels;
        record.audioSampleRate = reader.audio.nSamplesPerSec;
        record.audioBitRate = saturateToU32(std::uint64_t{reader.audio.nAvgBytesPerSec} * 8);
    }
    record.videoFourCC = 0;
    if (reader.video.biCompression != 0) {
        record.videoFourCC = reader.video.biCompression;
        record.videoWidth = reader.video.biWidth;
        record.videoHeight = reader.video.biHeight;
        record.frameTimeMicroseconds = reader.frameTimeMicroseconds;
        record.videoBitRate = reader.videoBitRate;
        return kOk;  // required: a file with a picture shows no texts
    }
    copyTexts(reader, record);
    return kOk;
}

int AsfRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kHeadBytes, kHeadBytes, head)) {
        return decline(why);
    }
    if (!std::ranges::equal(kHeaderObject, head.bytes.first<16>())) {
        return decline("does not begin with the GUID of the Header Object");
    }
    record.setFileSize(head.fileSize);
    AsfReader reader{.file = file, .fileSize = head.fileSize};
    // Required: a damaged header leaves the record with its size alone, the status too.
    static_cast<void>(AsfFillInfo(reader, record, le32(&head.bytes[16])));
    return 1;
}

}  // namespace probe
