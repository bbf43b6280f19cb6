#include "probe/mpegaudio/mpegaudio.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "probe/mpegaudio/id3.h"
#include "probe/mpegaudio/stream.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"

namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 1024;

// Where the frame scan begins, and the most that it looks at. Required: the scan begins at offset
// 10 whatever stands there, not behind an ID3 tag; a tag's bytes fail the frame test.
constexpr std::uint64_t kScanStart = 10;
constexpr std::uint64_t kScanBytes = 0x200000;

constexpr int kFramesInARow = 6;

// Whether the file holds the ID3 tag that it begins with, and one head more behind it.
bool holdsTag(std::span<const std::uint8_t> head, std::uint64_t fileSize) {
    constexpr std::uint8_t kVersion4 = 4, kFooterFlag = 0x10;
    if (!beginsWith(head, "ID3") || head[4] != 0) {
        return true;
    }
    std::uint64_t tagBytes = id3TagSize(head);
    if (head[3] == kVersion4 && (head[5] & kFooterFlag) != 0) {
        tagBytes += kId3FooterBytes;
    }
    return tagBytes + kHeadBytes <= fileSize;
}

// The first offset in [offset, end) that holds a frame header with a length; `end` when there is
// none or a read fails.
std::uint64_t findFrame(ReadWindow& file, std::uint64_t offset, std::uint64_t end,
                        MpegAudioHeader& header) {
    while (end - offset >= kMpegAudioHeaderBytes) {
        std::span<const std::uint8_t> bytes;
        const auto most = static_cast<std::size_t>(end - offset);
        if (!file.view(offset, kMpegAudioHeaderBytes, most, bytes) ||
            bytes.size() < kMpegAudioHeaderBytes) {
            return end;
        }
        const std::size_t positions = bytes.size() - kMpegAudioHeaderBytes + 1;
        for (std::size_t at = 0; at < positions; ++at) {
            const void* sync = std::memchr(&bytes[at], 0xFF, positions - at);
            if (!sync) {
                break;
            }
            at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(sync) - bytes.data());
            if (mayBeMpegAudioFrame(&bytes[at]) &&
                parseMpegAudioHeader(bytes.subspan(at), header)) {
                return offset + at;
            }
        }
        offset += positions;
    }
    return end;
}

// Looks for six frames in a row. The first header with a length decides: when the run behind it
// breaks, the search is over. Required: files that are not MPEG audio are told by that.
bool findFrames(ReadWindow& file, std::uint64_t fileSize, std::uint64_t& first) {
    const std::uint64_t length = std::min(fileSize, kScanBytes);
    const std::uint64_t end = std::min(kScanStart + length, fileSize);
    MpegAudioHeader header;
    first = findFrame(file, kScanStart, end, header);
    std::uint64_t at = first;
    for (int frames = 1; frames < kFramesInARow; ++frames) {
        const MpegAudioHeader before = header;
        at += before.frameBytes;
        if (!readMpegAudioFrame(file, at, end, header) || header.version != before.version ||
            header.layer != before.layer) {
            return false;
        }
    }
    return true;
}

}  // namespace

int MpegAudioRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kHeadBytes, kHeadBytes, head)) {
        return decline(why);
    }
    if (!holdsTag(head.bytes, head.fileSize)) {
        return decline("ends inside its ID3 tag or less than 1024 bytes behind it");
    }
    std::uint64_t first = 0;
    if (!findFrames(file, head.fileSize, first)) {
        return decline("no six frame headers in a row within 2 MiB");
    }
    record.setFileSize(head.fileSize);
    record.status = parseMpegAudio(file, head.fileSize, first, record);
    return 1;
}

}  // namespace probe
