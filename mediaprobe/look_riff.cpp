// AVI and WAVE: the length that the RIFF header gives, and whether an AVI has an index.
#include "mediaprobe/looks.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

constexpr std::uint32_t kUnknownLength = 0xFFFFFFFF;  // what writers to a pipe put there
constexpr int kMostChunks = 256;                      // of the top level

bool hasIndex(Look& look) {
    std::uint64_t at = 12;
    std::uint8_t chunk[8];
    for (int i = 0; i < kMostChunks && look.read(at, chunk); ++i) {
        if (probe::be32(chunk) == probe::fourCc("idx1")) {
            return true;
        }
        const std::uint64_t size = probe::le32(chunk + 4);
        at += sizeof chunk + size + (size & 1);
    }
    return false;
}

// An AVI whose pictures the record cannot count; the player shows no length for it.
bool isUncounted(const probe::MediaRecord& record) {
    return record.containerType == probe::kContainerAvi && record.videoFourCC != 0 &&
           record.frameTimeMicroseconds == 0;
}

}  // namespace

void lookAtRiff(Look& look) {
    std::uint8_t head[12];
    if (!look.read(0, head)) {
        return;
    }
    const std::uint32_t length = probe::le32(head + 4);
    std::string& damage = look.seen.damage;
    // A length that counts a padding byte which is not there is no cut.
    if (length != kUnknownLength && length > 1) {
        look.noteCut(static_cast<std::uint64_t>(length) + 8 - 1);
    } else if (length <= 1) {
        damage = "cut off: its length was never written";
    }
    if (isUncounted(look.record)) {
        const bool indexed = hasIndex(look);
        if (!indexed) {
            const std::string cut = damage;
            damage = "cut off: the index is missing";
            damage += cut.starts_with("cut off: ") ? ", " + cut.substr(9) : "";
        } else if (damage.empty()) {
            damage = "its index names no picture";
        }
    }
}

}  // namespace mediaprobe
