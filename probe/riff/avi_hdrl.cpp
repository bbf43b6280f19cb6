// The "hdrl" list: main header, stream lists, stream headers and formats, super indexes.
#include <algorithm>

#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"
#include "probe/riff/avi.h"

namespace probe {
namespace {

constexpr std::uint64_t kChunkHeader = 8;
constexpr std::uint64_t kSmallestWalk = 9;      // bytes left below which the walk ends
constexpr std::uint64_t kSmallestPayload = 13;  // the type word and the smallest walk
constexpr std::int64_t kStreamListMargin = 40;  // no child begins with fewer bytes left
constexpr std::uint32_t kBitmapInfoHeader = 40;
constexpr std::uint32_t kWaveFormat = 16;
constexpr std::uint32_t kSmallestSuperIndex = 40;

enum class StreamKind { Video, Audio };

// Where a stream list is described: the first video list and the first eight audio lists have a
// slot, the others are walked for their faults alone.
struct Stream {
    StreamKind kind;
    VideoSlot* video = nullptr;
    AudioSlot* audio = nullptr;
    std::uint32_t number = 0;

    SuperIndex* index() const { return video ? &video->index : audio ? &audio->index : nullptr; }
};

// BITMAPINFOHEADER: 0 biSize, 4 biWidth, 8 biHeight, 12 biPlanes, 14 biBitCount, 16 biCompression.
Result readVideoFormat(const ListBytes& bytes, std::uint64_t at, std::uint32_t size,
                       VideoSlot* slot) {
    if (size < kBitmapInfoHeader) {
        return kFail;
    }
    if (!slot) {
        return kOk;
    }
    slot->format = {.size = bytes.le32(at),
                    .width = bytes.le32(at + 4),
                    .height = bytes.le32(at + 8),
                    .compression = bytes.fourcc(at + 16)};
    if (slot->format.size < kBitmapInfoHeader) {
        return kFail;
    }
    // The codec data behind the header reaches nobody; only its size can be too much.
    return canAllocate(slot->format.size - kBitmapInfoHeader) ? kOk : kOutOfMemory;
}

// WAVEFORMATEX: 0 wFormatTag, 2 nChannels, 4 nSamplesPerSec, 8 nAvgBytesPerSec, 12 nBlockAlign,
// 14 wBitsPerSample, 16 cbSize. The codec data behind it (at most 65,535 bytes) reaches nobody.
Result readAudioFormat(const ListBytes& bytes, std::uint64_t at, std::uint32_t size,
                       AudioSlot* slot) {
    if (size < kWaveFormat) {
        return kFail;
    }
    if (slot) {
        slot->format = {.formatTag = bytes.le16(at),
                        .channels = bytes.le16(at + 2),
                        .samplesPerSec = bytes.le32(at + 4),
                        .avgBytesPerSec = bytes.le32(at + 8)};
    }
    return kOk;
}

// "indx" (OpenDML 1.02): 0 wLongsPerEntry, 2 bIndexSubType, 3 bIndexType, 4 nEntriesInUse,
// 8 dwChunkId, 12 and 20 reserved, 24 entries of 64-bit offset, 32-bit size, 32-bit duration.
void readSuperIndex(const ListBytes& bytes, std::uint64_t at, const Stream& stream) {
    constexpr std::uint64_t kHeader = 24;
    constexpr std::uint64_t kEntry = 16;
    SuperIndex& index = *stream.index();
    index = {.longsPerEntry = bytes.le16(at),
             .indexSubType = bytes.u8(at + 2),
             .indexType = bytes.u8(at + 3),
             .chunkId = bytes.fourcc(at + 8),
             .entryPosition = at + kHeader};
    if (index.longsPerEntry != 4) {
        if (stream.kind == StreamKind::Video) {
            diagnose("AVIINDEX_CHUNK_VIDEO[%d].wLongsPerEntry is %d\n", 0, index.longsPerEntry);
        } else {
            diagnose("AVIINDEX_CHUNK_AUDIO[%d].wLongsPerEntry is %d\n",
                     static_cast<int>(stream.number), index.longsPerEntry);
        }
    }
    const std::uint64_t count = bytes.le32(at + 4);
    if (!canAllocate(count * 8)) {
        return;  // its tables would not be had: no entries
    }
    const std::uint64_t held = bytes.available() > index.entryPosition
                                   ? (bytes.available() - index.entryPosition) / kEntry
                                   : 0;
    index.entryCount = static_cast<std::uint32_t>(std::min(count, held));
}

// The children behind "strf". Anything unknown is passed over byte by byte.
Result readStreamChildren(AviReader& reader, const ListBytes& bytes, std::uint64_t at,
                          std::int64_t left, const Stream& stream) {
    while (left >= kStreamListMargin && at < bytes.available() && !bytes.failed()) {
        const std::uint32_t id = bytes.fourcc(at);
        const std::uint32_t size = bytes.le32(at + 4);
        std::uint64_t step = kChunkHeader + size;
        if (id == fourCc("indx")) {
            if (size < kSmallestSuperIndex) {
                return kFail;
            }
            if (stream.index()) {
                readSuperIndex(bytes, at + kChunkHeader, stream);
                reader.header.superIndexSeen = true;
            }
        } else if (id != fourCc("strn") && id != fourCc("strd") && id != fourCc("JUNK") &&
                   (id != fourCc("vprp") || stream.kind != StreamKind::Video)) {
            step = 1;
        }
        at += step;
        left -= static_cast<std::int64_t>(step);
    }
    return kOk;
}

// Walks the list's children; `size` is what the list declares.
Result walkHdrl(AviReader& reader, const ListBytes& bytes, std::uint64_t size) {
    reader.header = {};
    std::uint64_t at = 4;  // behind the type word
    if (size < kSmallestPayload) {
        return kOk;
    }
    while (at + kSmallestWalk <= size && at < bytes.available() && !bytes.failed()) {
        const std::uint32_t id = bytes.fourcc(at);
        const std::uint32_t chunkBytes = bytes.le32(at + 4);
        if (id == fourCc("avih")) {
            reader.header.microSecPerFrame = bytes.le32(at + kChunkHeader);
        } else if (id == fourCc("LIST")) {
            if (bytes.fourcc(at + kChunkHeader) == fourCc("strl")) {
                const Result result =
                    ParseStrl(reader, bytes, at + kChunkHeader + 4, std::int64_t{chunkBytes} - 4);
                if (result != kOk) {
                    return result;
                }
            }
        } else if (id == 0) {
            at += 4;
            continue;
        } else if (id != fourCc("JUNK")) {
            diagnose("ERROR: neither avih nor LIST(strl)=%08X\n", id);
            break;
        }
        at += kChunkHeader + chunkBytes;
    }
    return kOk;
}

}  // namespace

void ListBytes::read(std::uint64_t at, std::span<std::uint8_t> bytes) const {
    const auto held =
        static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), available_ - at));
    const std::uint64_t before = reader_.file.counts().bytes;
    std::span<const std::uint8_t> got;
    failed_ = !reader_.file.view(start_ + at, held, got);
    std::ranges::copy(got, bytes.begin());
    const std::uint64_t cost = reader_.file.counts().bytes - before;
    failed_ = failed_ || (cost != 0 && !reader_.aside.take(cost));
}

// "strh": 0 fccType, 4 fccHandler, ...
Result ParseStrl(AviReader& reader, const ListBytes& bytes, std::uint64_t at,
                 std::int64_t listBytes) {
    const std::uint64_t begin = at;
    if (bytes.fourcc(at) != fourCc("strh")) {
        diagnose("ERROR: not strh\n");
    }
    AviHeader& header = reader.header;
    Stream stream{.kind = StreamKind::Video};
    const std::uint32_t type = bytes.fourcc(at + kChunkHeader);
    if (type == fourCc("mids") || type == fourCc("txts")) {
        return kOk;
    }
    if (type == fourCc("vids")) {
        stream.video = header.videoCount == 0 ? &header.video : nullptr;
    } else if (type == fourCc("auds")) {
        stream.kind = StreamKind::Audio;
        stream.number = header.audioCount;
        stream.audio =
            header.audioCount < kAviAudioStreams ? &header.audio[header.audioCount] : nullptr;
    } else {
        diagnose("ERROR: fcc_type is not valid=%08x\n", type);
        return kOk;
    }
    at += kChunkHeader + bytes.le32(at + 4);

    if (bytes.fourcc(at) != fourCc("strf")) {
        diagnose("ERROR: not strf=%08X\n", bytes.fourcc(at));
    }
    const std::uint32_t formatBytes = bytes.le32(at + 4);
    const std::uint64_t format = at + kChunkHeader;
    Result result = stream.kind == StreamKind::Video
                        ? readVideoFormat(bytes, format, formatBytes, stream.video)
                        : readAudioFormat(bytes, format, formatBytes, stream.audio);
    at = format + formatBytes;
    if (result == kOk) {
        result = readStreamChildren(reader, bytes, at,
                                    listBytes - static_cast<std::int64_t>(at - begin), stream);
    }
    if (result == kOk && stream.video) {
        header.videoCount = 1;
    }
    if (result == kOk && stream.audio) {
        ++header.audioCount;
    }
    return result;
}

Result ParseHdrl(AviReader& reader, std::uint64_t start, std::uint32_t size) {
    if (!canAllocate(size)) {
        return kOutOfMemory;
    }
    const std::uint64_t left = reader.end > start ? reader.end - start : 0;
    const std::uint64_t available = std::min<std::uint64_t>(size, left);
    const ListBytes bytes(reader, start, available);
    Result result = walkHdrl(reader, bytes, size);
    if (result == kOk && reader.header.superIndexSeen) {
        result = ReadOdmlIndexes(reader, bytes);
    }
    return result == kOk && bytes.failed() ? kFail : result;
}

}  // namespace probe
