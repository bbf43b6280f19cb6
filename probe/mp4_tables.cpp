// The sample tables of an MP4 file: sizes, places and times of its samples (ISO/IEC 14496-12 8.6.1
// and 8.7). Only their sums are wanted, so the tables are read through the window, once.
#include <algorithm>

#include "probe/block.h"
#include "probe/byte_reader.h"
#include "probe/mp4_reader.h"

namespace probe {
namespace {

// Calls `visit` with whole entries of the table, many at a time. False when a read failed.
template <typename Visitor>
bool forEachBlock(ReadWindow& file, const Mp4Table& table, std::size_t entryBytes,
                  Visitor&& visit) {
    const std::uint64_t end = table.entries + std::uint64_t{table.count} * entryBytes;
    for (std::uint64_t at = table.entries; at < end;) {
        std::span<const std::uint8_t> block;
        const std::uint64_t wanted =
            std::min<std::uint64_t>(end - at, ReadWindow::kLargest / entryBytes * entryBytes);
        if (!file.view(at, static_cast<std::size_t>(wanted), block) || block.size() < wanted) {
            return false;
        }
        visit(block);
        at += wanted;
    }
    return true;
}

// Adds up big-endian 32-bit numbers, two at a time and without turning their bytes around: the
// even and the odd bytes of eight are kept as four 16-bit sums each, for as long as those hold.
std::uint64_t sumBigEndian32(std::span<const std::uint8_t> bytes) {
    constexpr std::uint64_t kEvenBytes = 0x00FF00FF00FF00FF;
    constexpr std::size_t kLongestRun = 8 * 256;  // 256 times 255 is below 65,536
    std::uint64_t sum = 0;
    const std::uint8_t* at = bytes.data();
    const std::uint8_t* const end = at + bytes.size() / 8 * 8;
    while (at != end) {
        const std::uint8_t* const stop =
            at + std::min<std::size_t>(kLongestRun, static_cast<std::size_t>(end - at));
        std::uint64_t low = 0;   // as le64 sees them: bytes 0, 2, 4, 6
        std::uint64_t high = 0;  // bytes 1, 3, 5, 7
        for (; at != stop; at += 8) {
            const std::uint64_t two = le64(at);
            low += two & kEvenBytes;
            high += (two >> 8) & kEvenBytes;
        }
        const auto lane = [](std::uint64_t lanes, unsigned number) {
            return (lanes >> (16 * number)) & 0xFFFF;
        };
        sum += ((lane(low, 0) + lane(low, 2)) << 24) + ((lane(high, 0) + lane(high, 2)) << 16) +
               ((lane(low, 1) + lane(low, 3)) << 8) + (lane(high, 1) + lane(high, 3));
    }
    return bytes.size() % 8 != 0 ? sum + be32(at) : sum;
}

Result sumSampleSizes(Mp4Reader& reader, KindTables& tables) {
    const Mp4Table& sizes = tables.sampleSize;
    tables.payloadBytes = 0;
    if (sizes.constant != 0) {
        tables.payloadBytes = std::uint64_t{sizes.constant} * sizes.count;
        return kOk;
    }
    std::uint64_t sum = 0;
    const bool read =
        forEachBlock(reader.file, sizes, 4,
                     [&sum](std::span<const std::uint8_t> block) { sum += sumBigEndian32(block); });
    tables.payloadBytes = sum;
    return read ? kOk : kFail;
}

// How many samples the chunks hold. "stsc" entry: 0 first chunk (counted from 1), 4 samples per
// chunk, 8 description; it holds up to the next entry's first chunk.
Result countSamplesInChunks(Mp4Reader& reader, const KindTables& tables, std::uint64_t& samples) {
    const std::uint64_t chunks = tables.chunkOffset.count;
    std::uint64_t first = 0;  // of the run that is being counted; 0 before the first entry
    std::uint64_t perChunk = 0;
    bool ordered = true;
    samples = 0;
    const auto endRun = [&](std::uint64_t next) {
        const std::uint64_t end = std::min(next, chunks + 1);
        samples += end > first ? (end - first) * perChunk : 0;
    };
    const bool read = forEachBlock(reader.file, tables.sampleToChunk, 12,
                                   [&](std::span<const std::uint8_t> block) {
                                       for (std::size_t at = 0; at < block.size(); at += 12) {
                                           const std::uint32_t next = be32(&block[at]);
                                           ordered = ordered && next > first;
                                           endRun(next);
                                           first = next;
                                           perChunk = be32(&block[at + 4]);
                                       }
                                   });
    endRun(chunks + 1);
    return read && ordered ? kOk : kFail;
}

}  // namespace

Result Mp4SetSampleOffsets(Mp4Reader& reader, TrackKind kind) {
    KindTables& tables = reader.of(kind);
    if (!tables.sampleSize.present || !tables.sampleToChunk.present ||
        !tables.chunkOffset.present) {
        return kFail;
    }
    // The places, one more than there are samples, must be such that they could be kept.
    if (!blockFits((std::uint64_t{tables.sampleSize.count} + 1) * 4, reader.fileSize)) {
        return kFail;
    }
    std::uint64_t samples = 0;
    Result result = sumSampleSizes(reader, tables);
    if (result == kOk) {
        result = countSamplesInChunks(reader, tables, samples);
    }
    return result == kOk && samples >= tables.sampleSize.count ? kOk : kFail;
}

Result Mp4TrackDurationMs(Mp4Reader& reader, TrackKind kind, std::uint64_t& milliseconds) {
    milliseconds = 0;
    const std::uint64_t timescale = reader.lastTrack(kind)->timescale;
    if (timescale == 0) {
        return kOk;
    }
    // "stts" entry: 0 sample count, 4 sample delta.
    constexpr std::uint64_t kTicks = 10000000;  // 100 ns in a second
    std::uint64_t sum = 0;
    const bool read = forEachBlock(reader.file, reader.of(kind).timeToSample, 8,
                                   [&](std::span<const std::uint8_t> block) {
                                       for (std::size_t at = 0; at < block.size(); at += 8) {
                                           const std::uint64_t count = be32(&block[at]);
                                           const std::uint64_t delta = be32(&block[at + 4]);
                                           sum += count * delta * kTicks / timescale;
                                       }
                                   });
    milliseconds = sum / 10000;
    return read ? kOk : kFail;
}

}  // namespace probe
