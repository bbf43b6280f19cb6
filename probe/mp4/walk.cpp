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
// number of entries and the entries.
struct TableKind {
    std::uint32_t type;
    Mp4Table KindTables::*table;
    std::uint32_t entryBytes;
    std::uint64_t countAt;  // from the start of the body
};
constexpr auto kTables = std::to_array<TableKind>({
    {fourCc("stts"), &KindTables::timeToSample, 8, 4},
    {fourCc("stsc"), &KindTables::sampleToChunk, 12, 4},
    {fourCc("stsz"), &KindTables::sampleSize, 4, 8},
    {fourCc("stco"), &KindTables::chunkOffset, 4, 4},
});

// A table that its box cannot hold counts as one that cannot be allocated.
Result readTable(ReadWindow& file, const Mp4Box& box, const TableKind& kind, Mp4Table& table) {
    const std::uint64_t head = kind.countAt + 4;
    if (box.size < Mp4Box::kHeader + head) {
        return kOutOfMemory;
    }
    std::array<std::uint8_t, 12> bytes;
    if (!file.readExact(box.body(), {bytes.data(), static_cast<std::size_t>(head)})) {
        return kFail;
    }
    table = {.present = true,
             .count = be32(&bytes[kind.countAt]),
             .entries = box.body() + head,
             .constant = kind.countAt == 8 ? be32(&bytes[4]) : 0};
    const std::uint64_t held = (box.end() - table.entries) / kind.entryBytes;
    return table.constant != 0 || table.count <= held ? kOk : kOutOfMemory;
}

Result parseStbl(Mp4Reader& reader, const Mp4Box& stbl, TrackKind kind) {
    if (kind == TrackKind::Unset) {
        return kOk;
    }
    std::uint64_t position = stbl.body();
    Mp4Box box;
    BoxStep step;
    while ((step = nextBox(reader.file, position, stbl.end(), box)) == BoxStep::Box) {
        Result result = kOk;
        if (box.type == fourCc("stsd")) {
            if (kind == TrackKind::Video || kind == TrackKind::Audio) {
                result = Mp4ParseSampleDescription(reader, box, kind);
            }
        } else {
            const auto* row = std::find_if(kTables.begin(), kTables.end(),
                                           [&](const auto& one) { return one.type == box.type; });
            if (row != kTables.end()) {
                result = readTable(reader.file, box, *row, reader.of(kind).*(row->table));
            }
        }
        if (result != kOk) {
            return result;
        }
    }
    return step == BoxStep::Failed ? kFail : kOk;
}

Result parseMinf(Mp4Reader& reader, const Mp4Box& minf, TrackKind kind) {
    std::uint64_t position = minf.body();
    Mp4Box box;
    BoxStep step;
    while ((step = nextBox(reader.file, position, minf.end(), box)) == BoxStep::Box) {
        if (box.type != fourCc("stbl")) {
            continue;
        }
        if (const Result result = parseStbl(reader, box, kind); result != kOk) {
            return result;
        }
    }
    return step == BoxStep::Failed ? kFail : kOk;
}

TrackKind kindOf(std::uint32_t handler) {
    switch (handler) {
        case fourCc("vide"):
            return TrackKind::Video;
        case fourCc("soun"):
            return TrackKind::Audio;
        case fourCc("hint"):
            return TrackKind::Hint;
        default:
            return TrackKind::Other;
    }
}

// A 32-bit field at `at` of the box's body; 0 when the box does not hold it.
Result readField(ReadWindow& file, const Mp4Box& box, std::uint64_t at, std::uint32_t& value) {
    value = 0;
    if (box.size < Mp4Box::kHeader + at + 4) {
        return kOk;
    }
    std::array<std::uint8_t, 4> bytes;
    if (!file.readExact(box.body() + at, bytes)) {
        return kFail;
    }
    value = be32(bytes.data());
    return kOk;
}

// "mdhd": 0 version (0: 32-bit times, 1: 64-bit), 4 creation, 8 or 12 modification, 12 or 20
// timescale.
Result readTimescale(ReadWindow& file, const Mp4Box& mdhd, std::uint32_t& timescale) {
    std::uint32_t versionAndFlags = 0;
    const Result result = readField(file, mdhd, 0, versionAndFlags);
    const std::uint64_t at = (versionAndFlags >> 24) == 1 ? 20 : 12;
    return result == kOk ? readField(file, mdhd, at, timescale) : result;
}

Result parseTrak(Mp4Reader& reader, const Mp4Box& trak) {
    std::uint64_t position = trak.body();
    Mp4Box box;
    BoxStep step;
    while ((step = nextBox(reader.file, position, trak.end(), box)) == BoxStep::Box) {
        if (box.type == fourCc("tkhd")) {
            const bool room = reader.trackCount < kMp4Tracks;
            reader.current = room ? &reader.tracks[reader.trackCount++] : nullptr;
        } else if (box.type == fourCc("mdia") && reader.current) {
            const Result result = Mp4ParseMdia(reader, box, *reader.current);
            if (result == kOutOfMemory) {
                diagnose("[ERROR] MP4 Parse MEDIA memory alloc fail\n");
            }
            if (result != kOk) {
                return result;
            }
        }
    }
    return step == BoxStep::Failed ? kFail : kOk;
}

Result parseMoov(Mp4Reader& reader, const Mp4Box& moov) {
    std::uint64_t position = moov.body();
    Mp4Box box;
    BoxStep step;
    while ((step = nextBox(reader.file, position, moov.end(), box)) == BoxStep::Box) {
        if (box.type == fourCc("trak") && box.size > Mp4Box::kHeader) {
            if (const Result result = parseTrak(reader, box); result != kOk) {
                return result;
            }
        }
    }
    return step == BoxStep::Failed ? kFail : kOk;
}

// The movie box must be one that could be read into memory whole.
Result enterMoov(Mp4Reader& reader, const Mp4Box& moov) {
    if (!blockFits(moov.size, reader.fileSize)) {
        diagnose("[ERROR] MP4 Parse memory alloc fail\n");
        return kOutOfMemory;
    }
    if (moov.size > reader.fileSize - moov.start) {
        return kFail;
    }
    return moov.size > Mp4Box::kHeader ? parseMoov(reader, moov) : kOk;
}

}  // namespace

BoxStep nextBox(ReadWindow& file, std::uint64_t& position, std::uint64_t parentEnd, Mp4Box& box) {
    if (position >= parentEnd || parentEnd - position < Mp4Box::kHeader) {
        return BoxStep::End;
    }
    std::span<const std::uint8_t> header;
    if (!file.view(position, Mp4Box::kHeader, header) || header.size() < Mp4Box::kHeader) {
        return BoxStep::Failed;
    }
    const std::uint64_t size = be32(&header[0]);
    if (size == 0) {
        return BoxStep::End;
    }
    box = {.start = position,
           .size = std::min(size, parentEnd - position),
           .type = size < Mp4Box::kHeader ? 0 : be32(&header[4])};  // too small to be anything
    position += box.size;
    return BoxStep::Box;
}

Result Mp4ParseMdia(Mp4Reader& reader, const Mp4Box& mdia, TrackSlot& slot) {
    std::uint64_t position = mdia.body();
    Mp4Box box;
    BoxStep step;
    while ((step = nextBox(reader.file, position, mdia.end(), box)) == BoxStep::Box) {
        Result result = kOk;
        if (box.type == fourCc("hdlr")) {
            std::uint32_t handler = 0;  // 0 version and flags, 4 pre_defined, 8 handler_type
            result = readField(reader.file, box, 8, handler);
            slot.kind = kindOf(handler);
        } else if (box.type == fourCc("mdhd")) {
            result = readTimescale(reader.file, box, slot.timescale);
        } else if (box.type == fourCc("minf")) {
            result = parseMinf(reader, box, slot.kind);
        }
        if (result != kOk) {
            return result;
        }
    }
    return step == BoxStep::Failed ? kFail : kOk;
}

Result Mp4WalkTopLevel(Mp4Reader& reader) {
    bool moovRead = false;
    std::uint64_t position = 0;
    while (!moovRead || position < reader.fileSize) {
        std::array<std::uint8_t, Mp4Box::kHeader> header;
        if (!reader.file.readExact(position, header)) {
            return kFail;
        }
        const Mp4Box box{.start = position, .size = be32(&header[0]), .type = be32(&header[4])};
        if (box.size == 0) {
            return kFail;
        }
        if (box.type == fourCc("moov")) {
            if (const Result result = enterMoov(reader, box); result != kOk) {
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
