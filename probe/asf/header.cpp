#include "probe/asf/header.h"

#include <algorithm>

#include "probe/asf/tags.h"
#include "probe/read/block.h"
#include "probe/read/file_cursor.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

using Guid = std::array<std::uint8_t, 16>;  // as it stands in a file

constexpr Guid kFileProperties = {0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11,
                                  0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr Guid kStreamProperties = {0x91, 0x07, 0xDC, 0xB7, 0xB7, 0xA9, 0xCF, 0x11,
                                    0x8E, 0xE6, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr Guid kHeaderExtension = {0xB5, 0x03, 0xBF, 0x5F, 0x2E, 0xA9, 0xCF, 0x11,
                                   0x8E, 0xE3, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
constexpr Guid kContentDescription = {0x33, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                      0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
constexpr Guid kExtendedContentDescription = {0x40, 0xA4, 0xD0, 0xD2, 0x07, 0xE3, 0xD2, 0x11,
                                              0x97, 0xF0, 0x00, 0xA0, 0xC9, 0x5E, 0xA8, 0x50};
constexpr Guid kExtendedStreamProperties = {0xCB, 0xA5, 0xE6, 0x14, 0x72, 0xC6, 0x32, 0x43,
                                            0x83, 0x99, 0xA9, 0x69, 0x52, 0x06, 0x5B, 0x5A};
constexpr Guid kAudioMedia = {0x40, 0x9E, 0x69, 0xF8, 0x4D, 0x5B, 0xCF, 0x11,
                              0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};
constexpr Guid kVideoMedia = {0xC0, 0xEF, 0x19, 0xBC, 0x4D, 0x5B, 0xCF, 0x11,
                              0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};

constexpr std::uint64_t kObjectHeaderBytes = 24;  // GUID, 64-bit size
constexpr std::uint32_t kSmallestStep = 6;        // an attribute without name and value
constexpr std::uint32_t kPerSecond = 10'000'000;  // units of 100 ns

// Behind the object header: file identifier 16, file size 8, creation date 8, packets 8, then the
// play duration 8.
void readFileProperties(FileCursor& cursor, AsfReader& reader) {
    cursor.skip(40);
    const std::uint64_t playDuration = cursor.le64();
    if (cursor.ok()) {
        reader.durationSeconds = saturateToU32(playDuration / kPerSecond);
    }
}

// Behind the object header: start and end time 16, data bit rate 4, seven words 28, stream number
// 2 (at 48), language 2, average time per frame 8.
void readExtendedStreamProperties(FileCursor& cursor, AsfReader& reader) {
    cursor.skip(16);
    AsfStreamTiming timing;
    timing.dataBitRate = cursor.le32();
    cursor.skip(28);
    const std::uint32_t stream = cursor.le16();
    cursor.skip(2);
    timing.timePerFrame = cursor.le64();
    if (cursor.ok() && stream < kAsfStreams) {
        reader.timing[stream] = timing;
    }
}

// Moves to the end of an object. What was read beyond it will be read again, so it uses up as many
// steps as objects that lie side by side would in that stretch.
void moveToEnd(FileCursor& cursor, std::uint64_t end, AsfReader& reader) {
    if (cursor.position() > end) {
        const std::uint64_t steps = (cursor.position() - end) / kSmallestStep + 1;
        reader.stepsLeft -=
            static_cast<std::uint32_t>(std::min<std::uint64_t>(reader.stepsLeft, steps));
    }
    cursor.moveTo(end);
}

// Behind the object header: reserved GUID 16, reserved 2, data size 4, then further objects.
void readHeaderExtension(FileCursor& cursor, AsfReader& reader) {
    cursor.skip(16 + 2);
    const std::uint32_t dataBytes = cursor.le32();
    if (!cursor.ok() || dataBytes < kObjectHeaderBytes) {
        return;
    }
    const std::uint64_t end =
        cursor.position() + std::min<std::uint64_t>(dataBytes, cursor.remaining());
    while (cursor.ok() && end - cursor.position() >= kObjectHeaderBytes && takeAsfStep(reader)) {
        const std::uint64_t start = cursor.position();
        Guid guid;
        cursor.take(guid);
        const std::uint64_t size = cursor.le64();
        if (cursor.ok() && guid == kExtendedStreamProperties) {
            readExtendedStreamProperties(cursor, reader);
        }
        if (!cursor.ok() || size == 0 || size > end - start) {
            return;
        }
        moveToEnd(cursor, start + size, reader);
    }
}

// The 18 bytes of a WAVEFORMATEX.
void readAudioFormat(FileCursor& cursor, std::uint32_t stream, AsfReader& reader) {
    AsfWaveFormat format;
    format.wFormatTag = cursor.le16();
    format.nChannels = cursor.le16();
    format.nSamplesPerSec = cursor.le32();
    format.nAvgBytesPerSec = cursor.le32();
    format.nBlockAlign = cursor.le16();
    format.wBitsPerSample = cursor.le16();
    format.cbSize = cursor.le16();
    if (cursor.ok()) {
        reader.audio = format;
        reader.audioStream = stream;
    }
}

// Encoded width and height 8, reserved 1, format size 2, then the 40 bytes of a BITMAPINFOHEADER.
void readVideoFormat(FileCursor& cursor, std::uint32_t stream, AsfReader& reader) {
    cursor.skip(11);
    AsfBitmapInfo format;
    format.biSize = cursor.le32();
    format.biWidth = cursor.le32();
    format.biHeight = cursor.le32();
    format.biPlanes = cursor.le16();
    format.biBitCount = cursor.le16();
    format.biCompression = cursor.be32();
    format.biSizeImage = cursor.le32();
    format.biXPelsPerMeter = cursor.le32();
    format.biYPelsPerMeter = cursor.le32();
    format.biClrUsed = cursor.le32();
    format.biClrImportant = cursor.le32();
    if (cursor.ok()) {
        reader.video = format;
        reader.videoStream = stream;
    }
}

// Behind the object header: stream type 16, error correction type 16, time offset 8, the lengths
// of the two blocks of data 8, flags 2 (the stream number in the low seven bits), reserved 4. Of
// several streams of a kind the one with the lowest number is taken.
void readStreamProperties(FileCursor& cursor, AsfReader& reader) {
    constexpr std::uint32_t kStreamNumberMask = 0x7F;
    Guid type;
    cursor.take(type);
    cursor.skip(16 + 8 + 8);
    const std::uint32_t stream = cursor.le16() & kStreamNumberMask;
    cursor.skip(4);
    if (!cursor.ok()) {
        return;
    }
    if (type == kAudioMedia && stream < reader.audioStream) {
        readAudioFormat(cursor, stream, reader);
    } else if (type == kVideoMedia && stream < reader.videoStream) {
        readVideoFormat(cursor, stream, reader);
    }
}

struct ObjectRow {
    const Guid& guid;
    void (*read)(FileCursor& cursor, AsfReader& reader);
};

constexpr auto kObjects = std::to_array<ObjectRow>({
    {kFileProperties, readFileProperties},
    {kHeaderExtension, readHeaderExtension},
    {kStreamProperties, readStreamProperties},
    {kContentDescription, readAsfContentDescription},
    {kExtendedContentDescription, readAsfExtendedContentDescription},
});

// Each object is acted on, then its size moves the cursor from where it began. An object may so
// be read beyond its own size, and one smaller than its header leads into itself; only a size of
// 0, which leads nowhere, and one beyond the header's end stop the walk.
void walkObjects(FileCursor& cursor, AsfReader& reader) {
    cursor.skip(kObjectHeaderBytes);
    const std::uint32_t count = cursor.le32();
    cursor.skip(2);
    for (std::uint32_t i = 0; i < count && cursor.remaining() != 0 && takeAsfStep(reader); ++i) {
        const std::uint64_t start = cursor.position();
        Guid guid;
        cursor.take(guid);
        const std::uint64_t size = cursor.le64();
        if (!cursor.ok()) {
            return;
        }
        const auto row = std::ranges::find_if(
            kObjects, [&](const ObjectRow& each) { return each.guid == guid; });
        if (row != kObjects.end()) {
            row->read(cursor, reader);
        }
        if (!cursor.ok() || size == 0 || size > reader.headerSize - start) {
            return;
        }
        moveToEnd(cursor, start + size, reader);
    }
}

}  // namespace

bool takeAsfStep(AsfReader& reader) {
    if (reader.stepsLeft == 0) {
        return false;
    }
    --reader.stepsLeft;
    return true;
}

Result AsfReadHeader(AsfReader& reader) {
    if (!canAllocate(reader.headerSize)) {
        return kOutOfMemory;
    }
    reader.stepsLeft = reader.headerSize / kSmallestStep + 1;
    FileCursor cursor(reader.file, 0, reader.headerSize);
    walkObjects(cursor, reader);
    if (cursor.readFailed()) {
        return kFail;
    }
    if (reader.videoStream != kAsfNoStream) {
        const AsfStreamTiming& timing = reader.timing[reader.videoStream];
        reader.frameTimeMicroseconds = saturateToU32(timing.timePerFrame / 10);
        reader.videoBitRate = timing.dataBitRate;
    }
    return kOk;
}

}  // namespace probe
