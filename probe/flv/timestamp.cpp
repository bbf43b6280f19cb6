#include "probe/flv/timestamp.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include "probe/read/byte_reader.h"
#include "probe/read/read_budget.h"

namespace probe {
namespace {

// What stands before each position p that is examined (Adobe Flash Video File Format 10.1, E.3
// and E.4.1), the first data byte of the tag included:
//
//   p - 16  4  size of the previous tag, its header included
//   p - 12  1  tag type
//   p - 11  3  data size
//   p -  8  3  time stamp, milliseconds
//   p -  5  1  its upper eight bits
//   p -  4  3  stream identifier, always 0
//   p -  1  1  first data byte; of video: frame type and codec
constexpr std::size_t kLookBack = 16;
constexpr std::uint32_t kTagHeaderBytes = 11;
constexpr std::size_t kConfirmBytes = 15;

constexpr std::size_t kFirstBlock = 4096;
constexpr std::size_t kLargestBlock = 0x10000;

struct Scan {
    ReadWindow& file;
    std::uint64_t dataStart;
    FlvTags wanted;
    std::uint8_t* scratch;
    std::uint64_t blockStart = 0;
    std::size_t blockBytes = 0;
    ReadBudget budget;  // of the headers that are looked up elsewhere
};

enum class Candidate : std::uint8_t { No, Confirmed, ReadFailed };

bool looksLikeTag(const std::uint8_t* p, FlvTags wanted) {
    if ((p[-4] | p[-3] | p[-2]) != 0) {
        return false;
    }
    const std::uint8_t type = p[-12];
    if (wanted == FlvTags::KeyFrames) {
        return type == 9 && (p[-1] & 0xF0) == 0x10;
    }
    return type == 8 || type == 9 || type == 18;
}

// Whether the previous tag that the bytes before `p` speak of is really there.
Candidate confirm(Scan& scan, const std::uint8_t* p) {
    const std::uint32_t previousBytes = be32(p - kLookBack);
    const std::uint64_t previousEnd =
        scan.blockStart + static_cast<std::size_t>(p - scan.scratch) - kLookBack;
    if (previousBytes < kTagHeaderBytes || previousEnd < scan.dataStart ||
        previousBytes > previousEnd - scan.dataStart) {
        return Candidate::No;
    }
    const std::uint64_t tag = previousEnd - previousBytes;
    std::uint8_t header[kConfirmBytes];
    const std::uint8_t* bytes = header;
    if (tag >= scan.blockStart) {
        bytes = scan.scratch + (tag - scan.blockStart);
    } else {
        std::size_t read = 0;
        if (!scan.budget.take(kConfirmBytes) || !scan.file.readAside(tag, header, read) ||
            read < kConfirmBytes) {
            return Candidate::ReadFailed;
        }
    }
    return be24(bytes + 1) + kTagHeaderBytes == previousBytes ? Candidate::Confirmed
                                                              : Candidate::No;
}

}  // namespace

bool findLastFlvTimestamp(ReadWindow& file, std::uint64_t dataStart, std::uint64_t end,
                          FlvTags wanted, std::uint32_t& milliseconds) {
    std::array<std::uint8_t, kFirstBlock> first;  // mostly enough
    std::unique_ptr<std::uint8_t[]> larger;
    Scan scan{.file = file,
              .dataStart = dataStart,
              .wanted = wanted,
              .scratch = first.data(),
              .budget = ReadBudget(end)};
    std::size_t step = kFirstBlock;
    while (end > dataStart && end - dataStart >= kLookBack) {
        scan.blockBytes = static_cast<std::size_t>(std::min<std::uint64_t>(step, end - dataStart));
        scan.blockStart = end - scan.blockBytes;
        std::size_t read = 0;
        if (!file.readAside(scan.blockStart, {scan.scratch, scan.blockBytes}, read) ||
            read < scan.blockBytes) {
            return false;
        }
        for (std::size_t at = scan.blockBytes; at >= kLookBack; --at) {
            const std::uint8_t* p = scan.scratch + at;
            if (!looksLikeTag(p, scan.wanted)) {
                continue;
            }
            const Candidate candidate = confirm(scan, p);
            if (candidate == Candidate::Confirmed) {
                milliseconds = be24(p - 8) | (static_cast<std::uint32_t>(p[-5]) << 24);
                return true;
            }
            if (candidate == Candidate::ReadFailed) {
                return false;
            }
        }
        // Positions closer than the look-back to the block's start are seen with the next block.
        end = scan.blockStart + kLookBack - 1;
        if (!larger) {
            larger.reset(new (std::nothrow) std::uint8_t[kLargestBlock]);
            if (!larger) {
                return false;
            }
            scan.scratch = larger.get();
        }
        step = std::min(step * 2, kLargestBlock);
    }
    return false;
}

}  // namespace probe
