// The sample tables of an MP4 file: sizes, places and times of its samples (ISO/IEC 14496-12 8.6.1
// and 8.7). Only their sums are wanted, so the tables are read through the window, once.
#include <algorithm>
#include <bit>
#include <cstring>

#include "probe/mp4/reader.h"
#include "probe/read/block.h"
#include "probe/read/byte_reader.h"

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

// Adds up big-endian 32-bit numbers, four at a time and without turning their bytes around: a lane
// takes two of a number's bytes, low and high, as le16 sees them. What is kept of a lane is its
// sum modulo 2^16 and the sum of its high bytes; the low ones' follows from both. That holds for
// 256 rounds, because 256 times 255 is below 2^16.
std::uint64_t sumBigEndian32(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kLanes = 8, kRound = 2 * kLanes, kLongestRun = 256 * kRound;
    constexpr std::size_t kStep = 2 * kRound;
    using Lanes = std::uint16_t __attribute__((vector_size(kRound)));
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t sum = 0;
    const std::uint8_t* at = bytes.data();
    const std::uint8_t* const end = at + bytes.size();
    const std::uint8_t* const lastStep = end - bytes.size() % kStep;
    while (at != lastStep) {
        const auto left = static_cast<std::size_t>(lastStep - at);
        const std::uint8_t* const stop = at + std::min(kLongestRun, left);
        Lanes whole = {}, high = {};
        const auto add = [&whole, &high](const std::uint8_t* from) {
            Lanes numbers;
            std::memcpy(&numbers, from, kRound);
            whole += numbers;
            high += numbers >> 8;
        };
        for (; at != stop; at += kStep) {
            add(at);
            add(at + kRound);
        }
        const Lanes low = whole - (high << 8);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            const std::uint64_t both = (std::uint64_t{low[lane]} << 8) + high[lane];
            sum += lane % 2 == 0 ? both << 16 : both;
        }
    }
    for (; at != end; at += 4) {
        sum += be32(at);
    }
    return sum;
}

Result sumSampleSizes(Mp4Reader& reader, KindTables& tables) {
    const Mp4Table& sizes = tables.sampleSize;
    tables.payloadBytes = std::uint64_t{sizes.constant} * sizes.count;
    if (sizes.constant != 0) {
        return kOk;
    }
    return forEachBlock(reader.file, sizes, 4,
                        [&tables](std::span<const std::uint8_t> block) {
                            tables.payloadBytes += sumBigEndian32(block);
                        })
               ? kOk
               : kFail;
}

// How many samples the chunks hold. "stsc" entry: 0 first chunk (counted from 1), 4 samples per
// chunk, 8 description; it holds up to the next entry's first chunk. kFail when the entries are
// not in rising order.
Result countSamplesInChunks(Mp4Reader& reader, const KindTables& tables, std::uint64_t& samples) {
    const std::uint64_t end = std::uint64_t{tables.chunkOffset.count} + 1;
    std::uint64_t first = 0;  // of the run that is being counted; 0 before the first entry
    std::uint64_t perChunk = 0;
    std::uint64_t falling = 0;  // its top bit is set once an entry does not rise
    samples = 0;
    const auto count = [&](std::span<const std::uint8_t> block) {
        for (std::size_t at = 0; at < block.size(); at += 12) {
            const std::uint64_t entry = be64(&block[at]);
            const std::uint64_t next = entry >> 32, chunks = next - first;
            falling |= chunks - 1;
            samples += chunks * perChunk;
            if (next > end) [[unlikely]] {  // what lies behind the last chunk holds nothing
                samples -= (next - std::max(first, end)) * perChunk;
            }
            first = next;
            perChunk = entry & 0xFFFFFFFF;
        }
    };
    const bool read = forEachBlock(reader.file, tables.sampleToChunk, 12, count);
    samples += first < end ? (end - first) * perChunk : 0;
    return read && (falling >> 63) == 0 ? kOk : kFail;
}

}  // namespace

Result Mp4SetSampleOffsets(Mp4Reader& reader, TrackKind kind) {
    KindTables& tables = reader.of(kind);
    if (!tables.sampleSize.present || !tables.sampleToChunk.present ||
        !tables.chunkOffset.present) {
        return kFail;
    }
    // The places, one more than there are samples, are a table that the unit computes: its size has
    // nothing to do with the file's. Sound of one byte a sample has many.
    if (!canAllocate((std::uint64_t{tables.sampleSize.count} + 1) * 4)) {
        return kFail;
    }
    std::uint64_t samples = 0;
    // The payload of a picture track gives its bit rate; a sound track tells its own.
    Result result = kind == TrackKind::Video ? sumSampleSizes(reader, tables) : kOk;
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
