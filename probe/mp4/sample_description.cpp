// The sample description box "stsd" and the entries in it (ISO/IEC 14496-12 8.5.2, 14496-14 5.6,
// 14496-15 5.3.3) with the descriptors of "esds" (ISO/IEC 14496-1 7.2.6).
#include <algorithm>
#include <array>

#include "probe/mp4/reader.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

// Visual entry: 8 reserved, 14 data reference, 16 pre-defined, 32 width, 34 height, ... 86 boxes.
constexpr std::uint64_t kVisualEntry = 86;
// Audio entry: 8 reserved, 14 data reference, 16 reserved, 24 channels, 26 sample size,
// 28 pre-defined, 32 sample rate (16.16), 36 boxes.
constexpr std::size_t kAudioEntry = 36;
constexpr std::size_t kEntriesAt = 8;  // in "stsd": behind version, flags and entry count

constexpr std::uint8_t kEsDescriptor = 3;
constexpr std::uint8_t kDecoderConfigDescriptor = 4;
constexpr std::uint8_t kDecoderSpecificInfo = 5;

// A descriptor's length: seven bits a byte, most significant first, at most four bytes.
std::size_t descriptorLength(ByteReader& bytes) {
    std::size_t length = 0;
    for (int i = 0; i < 4; ++i) {
        const std::uint8_t byte = bytes.u8();
        length = (length << 7) | (byte & 0x7Fu);
        if ((byte & 0x80) == 0) {
            break;
        }
    }
    return std::min(length, bytes.remaining());
}

// DecoderConfigDescriptor: 0 object type indication, 1 stream type, 2 buffer size (24 bits),
// 5 maximum bit rate, 9 average bit rate, 13 descriptors.
void readDecoderConfig(ByteReader bytes, std::uint64_t at, SampleDescription& description) {
    description.objectType = bytes.u8();
    bytes.skip(1 + 3 + 4);
    description.averageBitRate = bytes.be32();
    while (bytes.ok() && bytes.remaining() > 1) {
        const std::uint8_t tag = bytes.u8();
        const std::size_t length = descriptorLength(bytes);
        if (tag == kDecoderSpecificInfo) {
            description.decoderInfo = {at + bytes.position(), length};
            return;
        }
        bytes.skip(length);
    }
}

// "esds": 0 version and flags, 4 ES descriptor: ES_ID, flags, what the flags announce,
// descriptors. A damaged one gives what could be read of it.
Result readEsds(Mp4Reader& reader, const Mp4Box& box) {
    if (reader.entry->format == fourCc("avc1")) {
        return kOk;
    }
    std::span<const std::uint8_t> body;
    const auto size = static_cast<std::size_t>(
        std::min<std::uint64_t>(box.size - Mp4Box::kHeader, ReadWindow::kLargest));
    if (!reader.file.viewAll(box.body(), size, body)) {
        return kFail;
    }
    ByteReader bytes(body);
    bytes.skip(4);
    if (bytes.u8() != kEsDescriptor) {
        return kOk;
    }
    descriptorLength(bytes);
    bytes.skip(2);
    const std::uint8_t flags = bytes.u8();
    bytes.skip((flags & 0x80) != 0 ? 2 : 0);           // dependsOn_ES_ID
    bytes.skip((flags & 0x40) != 0 ? bytes.u8() : 0);  // URL
    bytes.skip((flags & 0x20) != 0 ? 2 : 0);           // OCR_ES_ID
    while (bytes.ok() && bytes.remaining() > 1) {
        const std::uint8_t tag = bytes.u8();
        const std::size_t length = descriptorLength(bytes);
        const std::uint64_t at = box.body() + bytes.position();
        const ByteReader content = bytes.sub(length);
        if (tag == kDecoderConfigDescriptor) {
            readDecoderConfig(content, at, *reader.entry);
            break;
        }
    }
    return kOk;
}

// "avcC": 0 version, 1 profile, 2 compatibility, 3 level, 4 length size, 5 number of sequence
// parameter sets (low 5 bits), then each with a 16-bit length before it.
Result readAvcConfiguration(Mp4Reader& reader, const Mp4Box& box) {
    constexpr std::size_t kFirstSet = 8;
    if (reader.entry->format != fourCc("avc1") || box.size < Mp4Box::kHeader + kFirstSet) {
        return kOk;
    }
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(box.body(), kFirstSet, head)) {
        return kFail;
    }
    if ((head[5] & 0x1F) != 0) {
        const std::uint64_t start = box.body() + kFirstSet;
        reader.entry->parameterSet = {start,
                                      std::min<std::uint64_t>(be16(&head[6]), box.end() - start)};
    }
    return kOk;
}

// The boxes behind the fixed part of an entry.
constexpr auto kEntryBoxes =
    std::to_array<BoxRow>({{fourCc("esds"), readEsds}, {fourCc("avcC"), readAvcConfiguration}});

struct Layout {
    bool visual;
    bool boxes;  // whether the boxes behind the fixed part are read
};

Layout layoutOf(std::uint32_t format, TrackKind kind) {
    switch (format) {
        case fourCc("avc1"):
        case fourCc("mp4v"):
            return {.visual = true, .boxes = true};
        case fourCc("mp4a"):
            return {.visual = false, .boxes = true};
        case fourCc("mp4s"):
            diagnose("MPEG Sample Entry is not supported\n");
            break;
        default:
            break;
    }
    return {.visual = kind == TrackKind::Video, .boxes = false};
}

Result readEntry(Mp4Reader& reader, const Mp4Box& entry, TrackKind kind) {
    const Layout layout = layoutOf(entry.type, kind);
    const std::uint64_t fixed = layout.visual ? kVisualEntry : kAudioEntry;
    if (entry.size < fixed) {
        return kOutOfMemory;
    }
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(entry.start, kAudioEntry, head)) {  // what is wanted of either kind
        return kFail;
    }
    SampleDescription& description = reader.of(kind).description;
    description = {};
    description.format = entry.type;
    if (layout.visual) {
        description.width = be16(&head[32]);
        description.height = be16(&head[34]);
    } else {
        description.channels = be16(&head[24]);
        description.sampleRate = be16(&head[32]);
    }
    reader.entry = &description;
    const FileRange boxes{entry.start + fixed, layout.boxes ? entry.size - fixed : 0};
    return forEachBox(reader, boxes, kEntryBoxes);
}

}  // namespace

Result Mp4ParseSampleDescription(Mp4Reader& reader, const Mp4Box& stsd, TrackKind kind) {
    if (stsd.size < Mp4Box::kHeader + kEntriesAt) {
        return kOutOfMemory;
    }
    std::span<const std::uint8_t> header;
    if (!reader.file.viewAll(stsd.body(), kEntriesAt, header)) {
        return kFail;
    }
    std::uint64_t position = stsd.body() + kEntriesAt;
    for (std::uint32_t left = be32(&header[4]); left > 0; --left) {
        if (stsd.end() - position < Mp4Box::kHeader) {
            return kOutOfMemory;
        }
        if (!reader.file.viewAll(position, Mp4Box::kHeader, header)) {
            return kFail;
        }
        const Mp4Box entry{.start = position, .size = be32(&header[0]), .type = be32(&header[4])};
        if (entry.size > stsd.end() - position) {
            return kOutOfMemory;
        }
        if (const Result result = readEntry(reader, entry, kind); result != kOk) {
            return result;
        }
        position += entry.size;
    }
    return kOk;
}

}  // namespace probe
