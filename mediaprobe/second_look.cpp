#include "mediaprobe/second_look.h"

#include <cinttypes>
#include <cstring>

#include "mediaprobe/format_text.h"
#include "mediaprobe/looks.h"

namespace mediaprobe {
namespace {

// By the head of the file, since a damaged file may have no container in its record.
constexpr struct {
    std::size_t at;
    std::uint32_t length;
    const char* magic;
    void (*look)(Look&);
} kLooks[] = {
    {0, 4, "RIFF", lookAtRiff}, {4, 4, "ftyp", lookAtMp4},    {0, 4, "\x30\x26\xB2\x75", lookAtAsf},
    {0, 4, "OggS", lookAtOgg},  {0, 4, "MAC ", lookAtApe},    {0, 3, "FLV", lookAtFlv},
    {0, 2, "BM", lookAtBmp},    {0, 4, "\x89PNG", lookAtPng}, {0, 2, "\xFF\xD8", lookAtJpeg},
    {0, 3, "GIF", lookAtGif},
};
constexpr std::size_t kHead = 8;

void lookByHead(Look& look) {
    std::uint8_t head[kHead];
    if (!look.read(0, head)) {
        return;
    }
    // These two may stand behind a tag.
    if (look.record.containerType == probe::kContainerMpegAudio) {
        lookAtMpegAudio(look);
        return;
    }
    if (look.record.containerType == probe::kContainerFlac) {
        lookAtFlac(look);
        return;
    }
    for (const auto& one : kLooks) {
        if (std::memcmp(head + one.at, one.magic, one.length) == 0) {
            one.look(look);
            return;
        }
    }
}

// A header's rate that would fill the file twice over is a promise: a limit, or the mark of a
// varying rate, as the largest number that fits an MPEG sequence header is.
void notePromise(Look& look) {
    const probe::MediaRecord& record = look.record;
    if (record.durationSeconds == 0) {
        return;
    }
    const std::uint64_t held = look.seen.fileBytes * 8 / record.durationSeconds;
    const std::uint64_t sum = static_cast<std::uint64_t>(record.videoBitRate) + record.audioBitRate;
    if (sum > 2 * held + 1) {
        const std::uint64_t promised = record.videoBitRate > 2 * held ? record.videoBitRate : sum;
        look.seen.note =
            "the header promises " + grouped(promised) + " bit/s, the file holds " + grouped(held);
    }
}

bool isZeros(probe::ReadWindow& file, std::uint64_t bytes) {
    std::span<const std::uint8_t> head;
    if (bytes == 0 || !file.view(0, probe::ReadWindow::kSmallest, head)) {
        return false;
    }
    for (const std::uint8_t byte : head) {
        if (byte != 0) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool Look::noteCut(std::uint64_t declared, const char* least) {
    if (declared <= seen.fileBytes) {
        return false;
    }
    seen.damage = "cut off: " + partOf(seen.fileBytes, declared, least) + " are there";
    return true;
}

SecondLook lookAgain(probe::ReadWindow& file, const probe::MediaRecord& record, Claimed claimed) {
    SecondLook seen;
    if (!file.size(seen.fileBytes)) {
        return seen;
    }
    Look look{file, record, seen};
    if (claimed == Claimed::No && record.status == probe::kNotParsed) {
        seen.damage = seen.fileBytes == 0             ? "it is empty"
                      : isZeros(file, seen.fileBytes) ? "it begins with nothing but zeros"
                                                      : "";
        seen.note = seen.damage.empty() ? kindOfUnclaimed(look) : "";
        return seen;
    }
    lookByHead(look);
    // What the player's rules leave out is not damaged.
    if (seen.damage.empty() && seen.note.empty() && record.status != probe::kOk) {
        seen.damage = record.status == probe::kOutOfMemory
                          ? "a size in its headers is larger than the file"
                          : "the player's parser gives up on its headers";
    }
    notePromise(look);
    return seen;
}

}  // namespace mediaprobe
