// The indexes of an AVI file. What is wanted of them: how many frames there are, how many bytes
// they hold, and where the first one lies.
#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include "probe/read/block.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/record/diagnostics.h"
#include "probe/riff/avi.h"

namespace probe {
namespace {

constexpr std::uint64_t kIndexBlock = 65536;
constexpr std::uint32_t kIdx1Entry = 16;
constexpr std::uint64_t kStandardEntry = 8;
constexpr std::uint32_t kSizeBits = 0x7FFFFFFF;  // bit 31 marks a picture that is no key frame

// "00dc", "00db", "01dc" and "01db" as they stand in the file, little-endian: the bits in which
// the four differ are masked out. Only the stream numbers 00 and 01 are taken as video.
constexpr std::uint32_t kVideoMask = 0xFEFFFEFF;
constexpr std::uint32_t kVideoId = 0x62643030;

// Adds up the entries (0 identifier, 4 flags, 8 offset, 12 size) of one block; `first` is where
// the first video entry's offset is kept when none was met before.
void addIdx1Entries(std::span<const std::uint8_t> block, AviIndex& index, std::uint32_t& first) {
    const std::uint8_t* entry = block.data();
    const std::uint8_t* const end = entry + block.size() / kIdx1Entry * kIdx1Entry;
    if (index.entryCount == 0) {
        while (entry != end && (le32(entry) & kVideoMask) != kVideoId) {
            entry += kIdx1Entry;
        }
        if (entry == end) {
            return;
        }
        first = le32(entry + 8);
    }
    std::uint32_t count = 0;
    std::uint32_t bytes = 0;
    for (; entry != end; entry += kIdx1Entry) {
        const std::uint32_t mask = (le32(entry) & kVideoMask) == kVideoId ? 0xFFFFFFFF : 0;
        count -= mask;
        bytes += le32(entry + 12) & mask;
    }
    index.entryCount += count;
    index.videoBytes += bytes;
}

// Standard index (OpenDML 1.02): 0 "ix##", 4 size, 8 wLongsPerEntry, 10 and 11 types,
// 12 nEntriesInUse, 16 dwChunkId, 20 qwBaseOffset, 28 reserved, 32 entries of offset and size.
constexpr std::uint64_t kStandardHeader = 32;

struct StandardIndex {
    std::uint64_t entries = 0;  // file position of the first entry
    std::uint32_t count = 0;
    std::uint32_t chunkId = 0;
    std::uint32_t baseOffset = 0;  // low 32 bits

    bool isVideo() const {
        const std::uint32_t kind = chunkId & 0xFFFF;
        return kind == (fourCc("00dc") & 0xFFFF) || kind == (fourCc("00db") & 0xFFFF);
    }
};

// Reads the standard indexes of one header list. They lie anywhere in the file, so the walk's
// window stays where it is; the last header is kept, since most streams have a single one and it
// is needed twice.
class StandardIndexes {
public:
    StandardIndexes(AviReader& reader, const ListBytes& bytes) : reader_(reader), bytes_(bytes) {}

    // How many entries the indexes of `super` declare.
    Result count(const SuperIndex& super, std::uint64_t& entries);
    // Adds up the video entries of all of them.
    Result addVideo(const SuperIndex& super);

private:
    // The header of the index that entry `entry` of `super` points to.
    Result readHeader(const SuperIndex& super, std::uint32_t entry, StandardIndex& index);
    Result addEntries(const StandardIndex& standard);
    void add(const StandardIndex& standard, std::span<const std::uint8_t> entries, bool first);

    AviReader& reader_;
    const ListBytes& bytes_;
    std::unique_ptr<std::uint8_t[]> block_;
    std::uint64_t keptAt_ = 0;
    StandardIndex kept_;  // read from keptAt_, when that is not 0
};

Result StandardIndexes::readHeader(const SuperIndex& super, std::uint32_t entry,
                                   StandardIndex& index) {
    constexpr std::uint64_t kSuperEntry = 16;
    const std::uint64_t at = bytes_.le64(super.entryPosition + entry * kSuperEntry);
    if (keptAt_ == 0 || keptAt_ != at) {
        std::array<std::uint8_t, kStandardHeader> header;
        if (const Result result = reader_.readAside(at, header); result != kOk) {
            return result;
        }
        keptAt_ = at;
        kept_ = {.entries = at + kStandardHeader,
                 .count = le32(&header[12]),
                 .chunkId = be32(&header[16]),
                 .baseOffset = le32(&header[20])};
    }
    index = kept_;
    return kOk;
}

Result StandardIndexes::count(const SuperIndex& super, std::uint64_t& entries) {
    entries = 0;
    for (std::uint32_t entry = 0; entry < super.entryCount; ++entry) {
        StandardIndex standard;
        if (const Result result = readHeader(super, entry, standard); result != kOk) {
            return result;
        }
        entries += standard.count;
    }
    return kOk;
}

void StandardIndexes::add(const StandardIndex& standard, std::span<const std::uint8_t> entries,
                          bool first) {
    AviIndex& index = reader_.index;
    if (first && index.entryCount == 0) {
        const std::uint64_t stored = std::uint64_t{standard.baseOffset} + le32(&entries[0]);
        index.firstVideoChunk = static_cast<std::int64_t>(stored) - 8;
    }
    std::uint32_t bytes = 0;
    for (std::size_t at = 0; at < entries.size(); at += kStandardEntry) {
        bytes += le32(&entries[at + 4]) & kSizeBits;
    }
    index.videoBytes += bytes;
}

Result StandardIndexes::addEntries(const StandardIndex& standard) {
    const std::uint64_t wanted = std::uint64_t{standard.count} * kStandardEntry;
    const std::uint64_t left = reader_.end > standard.entries ? reader_.end - standard.entries : 0;
    // An entry that the file's end cuts is read, zeros stand for the rest of it; the first one is
    // there even when nothing of it is.
    const std::uint64_t held =
        std::min(wanted, std::max(left + kStandardEntry - 1, kStandardEntry) / kStandardEntry *
                             kStandardEntry);
    if (!block_) {
        block_.reset(new (std::nothrow) std::uint8_t[kIndexBlock]);
    }
    if (!block_) {
        return kOutOfMemory;
    }
    for (std::uint64_t done = 0; done < held;) {
        const std::span block(block_.get(),
                              static_cast<std::size_t>(std::min(held - done, kIndexBlock)));
        if (const Result result = reader_.readAside(standard.entries + done, block);
            result != kOk) {
            return result;
        }
        add(standard, block, done == 0);
        done += block.size();
    }
    reader_.index.entryCount += standard.count;
    return kOk;
}

Result StandardIndexes::addVideo(const SuperIndex& super) {
    for (std::uint32_t entry = 0; entry < super.entryCount; ++entry) {
        StandardIndex standard;
        Result result = readHeader(super, entry, standard);
        if (result == kOk && standard.isVideo() && standard.count != 0) {
            result = addEntries(standard);
        }
        if (result != kOk) {
            return result;
        }
    }
    return kOk;
}

}  // namespace

Result ReadOdmlIndexes(AviReader& reader, const ListBytes& bytes) {
    reader.index = {};
    reader.hasIndex = true;
    StandardIndexes indexes(reader, bytes);
    const SuperIndex& video = reader.header.video.index;
    Result result = indexes.count(video, reader.index.frameCount);
    if (result == kOk && !canAllocate(reader.index.frameCount * 4)) {
        diagnose("ERROR: indx) video index alloc fail\n");
        result = kOutOfMemory;
    }
    if (result == kOk) {
        result = indexes.addVideo(video);
    }
    // The audio entries reach nobody; their number can still be too much for their tables.
    for (std::uint32_t stream = 0; stream < reader.header.audioCount && result == kOk; ++stream) {
        std::uint64_t count = 0;
        result = indexes.count(reader.header.audio[stream].index, count);
        if (result == kOk && !canAllocate((count + 1) * 4)) {
            diagnose("ERROR: indx) audio index alloc fail\n");
            result = kOutOfMemory;
        }
    }
    return result;
}

Result ReadIdx1(AviReader& reader, std::uint64_t start, std::uint32_t size) {
    reader.index = {};
    reader.hasIndex = true;
    AviIndex& index = reader.index;
    std::uint32_t firstVideo = 0;
    const std::uint64_t left = reader.end > start ? reader.end - start : 0;
    const std::uint64_t whole = std::uint64_t{size} / kIdx1Entry * kIdx1Entry;
    const std::uint64_t held = std::min(whole, left / kIdx1Entry * kIdx1Entry);
    for (std::uint64_t done = 0; done < held;) {
        std::span<const std::uint8_t> block;
        const auto wanted = static_cast<std::size_t>(std::min(held - done, kIndexBlock));
        if (!reader.file.view(start + done, wanted, block)) {
            return kFail;
        }
        if (block.size() < kIdx1Entry) {
            break;
        }
        addIdx1Entries(block, index, firstVideo);
        done += block.size() / kIdx1Entry * kIdx1Entry;
    }
    if (held < whole) {
        // The entry that the file's end cuts; zeros stand for the rest of it.
        std::array<std::uint8_t, kIdx1Entry> cut;
        if (const Result result = reader.read(start + held, cut); result != kOk) {
            return result;
        }
        addIdx1Entries(cut, index, firstVideo);
    }
    index.frameCount = index.entryCount;

    // Offsets count from the "movi" type word, or from the start of the file: the first entry
    // tells, whatever stream it belongs to.
    std::array<std::uint8_t, 4> firstOffset;
    if (const Result result = reader.read(start + 8, firstOffset); result != kOk) {
        return result;
    }
    const std::uint64_t base = le32(firstOffset.data()) > reader.moviStart ? 0 : reader.moviStart;
    index.firstVideoChunk = static_cast<std::int64_t>(base + firstVideo);
    return kOk;
}

}  // namespace probe
