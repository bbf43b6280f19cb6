#include "probe/image/image.h"

#include <span>

#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 64;
constexpr std::size_t kSegmentBytes = 16;  // read of every marker segment

struct Picture {
    ContainerType container;
    std::uint32_t width, height, bitsPerPixel;
};

int fill(MediaRecord& record, const Picture& picture) {
    record.containerType = picture.container;
    record.imageWidth = picture.width;
    record.imageHeight = picture.height;
    record.imageBitsPerPixel = picture.bitsPerPixel;
    record.status = kOk;
    return 1;
}

}  // namespace

// Marker segment: 0 FF, 1 marker, 2-3 length (big-endian, itself included); in a frame header
// then 4 precision, 5-6 lines, 7-8 samples per line, 9 components (ITU-T T.81, B.2.2).
Result JpegFindFrame(JpegReader& reader) {
    while (reader.position < reader.fileSize) {
        std::span<const std::uint8_t> segment;
        if (!reader.file.viewAll(reader.position, kSegmentBytes, segment) || segment[0] != 0xFF) {
            return kFail;
        }
        if ((segment[1] & 0xFC) == 0xC0) {
            reader.precision = segment[4];
            reader.height = be16(&segment[5]);
            reader.width = be16(&segment[7]);
            reader.components = segment[9];
            return kOk;
        }
        // Required: a marker without a length (a restart marker) is not treated specially.
        reader.position += be16(&segment[2]) + 2u;
    }
    return kFail;
}

Result JpegReadHeader(JpegReader& reader, MediaRecord& record) {
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(0, kSegmentBytes, head)) {
        return kFail;
    }
    Result result = kOk;
    const unsigned markerClass = head[3] >> 4;
    if (head[2] == 0xFF && (markerClass == 0xE || markerClass == 0xD || markerClass == 0xC)) {
        reader.position = 2;
        result = JpegFindFrame(reader);
    } else {
        // Required: without a marker behind SOI a fixed layout is taken, whatever it holds.
        reader.width = be16(&head[2]);
        reader.height = be16(&head[4]);
        reader.precision = 8;
        reader.components = head[6];
    }
    record.status = result;
    if (result == kOk) {
        fill(record,
             {kContainerJpeg, reader.width, reader.height, reader.precision * reader.components});
    }
    return result;
}

int ImageRecognise(MediaRecord& record, ReadWindow& file) {
    Head start;
    if (const char* why = readHead(file, kHeadBytes, kHeadBytes, start)) {
        return decline(why);
    }
    const auto head = start.bytes;
    record.setFileSize(start.fileSize);
    if (beginsWith(head, "\xFF\xD8")) {
        JpegReader reader{.file = file, .fileSize = start.fileSize};
        return JpegReadHeader(reader, record) == kOk ? 1 : decline("JPEG without a frame header");
    }
    // The three depths mean different things, and must: GIF's colour resolution, BMP's bit count
    // of the whole pixel, PNG's depth of one channel.
    if (beginsWith(head, "GIF")) {
        return fill(record,
                    {kContainerGif, le16(&head[6]), le16(&head[8]), ((head[10] >> 4) & 7u) + 1});
    }
    if (beginsWith(head, "BM")) {
        return fill(record, {kContainerBmp, le32(&head[18]), le32(&head[22]), le16(&head[28])});
    }
    if (beginsWith(head, "\x89PNG\r\n\x1A\n") && beginsWith(head.subspan(12), "IHDR")) {
        return fill(record, {kContainerPng, be32(&head[16]), be32(&head[20]), head[24]});
    }
    return decline("it begins as none of the four kinds");
}

}  // namespace probe
