// The walk through the boxes of an MP4 file, down to the sample tables.
#include <algorithm>
#include <array>

#include "probe/mp4/reader.h"
#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

// A table box: 0 size, 4 type, 8 version and flags, then (in "stsz" behind the constant size) the
// number of entries and the entries. A table that its box cannot hold counts as one that cannot be
// allocated.
template <Mp4Table KindTables::*kTable, std::uint32_t kEntryBytes, std::size_t kCountAt = 4>
Result readTable(Mp4Reader& reader, const Mp4Box& box) {
    constexpr std::size_t kHead = kCountAt + 4;
    if (box.size < Mp4Box::kHeader + kHead) {
        return kOutOfMemory;
    }
    std::span<const std::uint8_t> head;
    if (!reader.file.viewAll(box.body(), kHead, head)) {
        return kFail;
    }
    Mp4Table& table = reader.of(reader.current->kind).*kTable;
    table = {.present = true,
             .count = be32(&head[kCountAt]),
             .entries = box.body() + kHead,
             .constant = kCountAt == 8 ? be32(&head[4]) : 0};
    const std::uint64_t held = (box.end() - table.entries) / kEntryBytes;
    return table.constant != 0 || table.count <= held ? kOk : kOutOfMemory;
}

Result readStsd(Mp4Reader& reader, const Mp4Box& stsd) {
    const TrackKind kind = reader.current->kind;
    return kind == TrackKind::Video || kind == TrackKind::Audio
               ? Mp4ParseSampleDescription(reader, stsd, kind)
               : kOk;
}

Result readStbl(Mp4Reader& reader, const Mp4Box& stbl) {
    static constexpr auto kRows = std::to_array<BoxRow>({
        {fourCc("stsd"), readStsd},
        {fourCc("stts"), readTable<&KindTables::timeToSample, 8>},
        {fourCc("stsc"), readTable<&KindTables::sampleToChunk, 12>},
        {fourCc("stsz"), readTable<&KindTables::sampleSize, 4, 8>},
        {fourCc("stco"), readTable<&KindTables::chunkOffset, 4>},
    });
    return reader.current->kind == TrackKind::Unset ? kOk
                                                    : forEachBox(reader, stbl.children(), kRows);
}

Result readMinf(Mp4Reader& reader, const Mp4Box& minf) {
    static constexpr auto kRows = std::to_array<BoxRow>({{fourCc("stbl"), readStbl}});
    return forEachBox(reader, minf.children(), kRows);
}

// A 32-bit field at `at` of the box's body; 0 when the box does not hold it.
Result readField(ReadWindow& file, const Mp4Box& box, std::uint64_t at, std::uint32_t& value) {
    value = 0;
    if (box.size < Mp4Box::kHeader + at + 4) {
        return kOk;
    }
    std::span<const std::uint8_t> bytes;
    if (!file.viewAll(box.body() + at, 4, bytes)) {
        return kFail;
    }
    value = be32(bytes.data());
    return kOk;
}

// "hdlr": 0 version and flags, 4 pre_defined, 8 handler_type.
Result readHdlr(Mp4Reader& reader, const Mp4Box& hdlr) {
    struct Row {
        std::uint32_t handler;
        TrackKind kind;
    };
    static constexpr auto kHandlers = std::to_array<Row>({{fourCc("vide"), TrackKind::Video},
                                                          {fourCc("soun"), TrackKind::Audio},
                                                          {fourCc("hint"), TrackKind::Hint}});
    std::uint32_t handler = 0;
    const Result result = readField(reader.file, hdlr, 8, handler);
    const auto row = std::ranges::find(kHandlers, handler, &Row::handler);
    reader.current->kind = row != kHandlers.end() ? row->kind : TrackKind::Other;
    return result;
}

// "mdhd": 0 version (0: 32-bit times, 1: 64-bit), 4 creation, 8 or 12 modification, 12 or 20
// timescale.
Result readMdhd(Mp4Reader& reader, const Mp4Box& mdhd) {
    std::uint32_t versionAndFlags = 0;
    const Result result = readField(reader.file, mdhd, 0, versionAndFlags);
    const std::uint64_t at = (versionAndFlags >> 24) == 1 ? 20 : 12;
    return result == kOk ? readField(reader.file, mdhd, at, reader.current->timescale) : result;
}

Result openTrack(Mp4Reader& reader, const Mp4Box& /*tkhd*/) {
    const bool room = reader.trackCount < kMp4Tracks;
    reader.current = room ? &reader.tracks[reader.trackCount++] : nullptr;
    return kOk;
}

Result readMdia(Mp4Reader& reader, const Mp4Box& mdia) {
    const Result result = reader.current ? Mp4ParseMdia(reader, mdia) : kOk;
    if (result == kOutOfMemory) {
        diagnose("[ERROR] MP4 Parse MEDIA memory alloc fail\n");
    }
    return result;
}

Result readTrak(Mp4Reader& reader, const Mp4Box& trak) {
    static constexpr auto kRows =
        std::to_array<BoxRow>({{fourCc("tkhd"), openTrack}, {fourCc("mdia"), readMdia}});
    return forEachBox(reader, trak.children(), kRows);
}

// The movie box is one that is read into memory whole: the unit must have room for it, and the file
// all of it.
Result readMoov(Mp4Reader& reader, const Mp4Box& moov) {
    static constexpr auto kRows = std::to_array<BoxRow>({{fourCc("trak"), readTrak}});
    if (!canAllocate(moov.size)) {
        diagnose("[ERROR] MP4 Parse memory alloc fail\n");
        return kOutOfMemory;
    }
    return fileHolds(reader.fileSize, moov.start, moov.size)
               ? forEachBox(reader, moov.children(), kRows)
               : kFail;
}

}  // namespace

Result forEachBox(Mp4Reader& reader, const FileRange& boxes, std::span<const BoxRow> rows) {
    const std::uint64_t end = boxes.end();
    std::uint64_t position = boxes.start;
    while (position < end && end - position >= Mp4Box::kHeader) {
        std::span<const std::uint8_t> header;
        if (!reader.file.viewAll(position, Mp4Box::kHeader, header)) {
            return kFail;
        }
        const std::uint64_t size = be32(&header[0]);
        if (size == 0) {
            break;
        }
        const Mp4Box box{
            .start = position, .size = std::min(size, end - position), .type = be32(&header[4])};
        position += box.size;
        const auto row = std::ranges::find(rows, box.type, &BoxRow::type);
        if (row == rows.end() || size < Mp4Box::kHeader) {  // too small to be anything
            continue;
        }
        if (const Result result = row->read(reader, box); result != kOk) {
            return result;
        }
    }
    return kOk;
}

Result Mp4ParseMdia(Mp4Reader& reader, const Mp4Box& mdia) {
    static constexpr auto kRows = std::to_array<BoxRow>(
        {{fourCc("hdlr"), readHdlr}, {fourCc("mdhd"), readMdhd}, {fourCc("minf"), readMinf}});
    return forEachBox(reader, mdia.children(), kRows);
}

Result Mp4WalkTopLevel(Mp4Reader& reader) {
    bool moovRead = false;
    std::uint64_t position = 0;
    while (!moovRead || position < reader.fileSize) {
        std::span<const std::uint8_t> header;
        if (!reader.file.viewAll(position, Mp4Box::kHeader, header)) {
            return kFail;
        }
        const Mp4Box box{.start = position, .size = be32(&header[0]), .type = be32(&header[4])};
        if (box.size == 0) {
            return kFail;
        }
        if (box.type == fourCc("moov")) {
            if (const Result result = readMoov(reader, box); result != kOk) {
                return result;
            }
            moovRead = true;
        }
        // Required: sizes are 32 bits wide here; a size of 1 is one byte, not a 64-bit size.
        position += box.size;
    }
    return kOk;
}

}  // namespace probe
