#include "simulator/filters/codecs/codec_sniffer.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "probe/media_info.h"
#include "probe/record/diagnostics.h"
#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/container_walk.h"

namespace filters {

namespace {

constexpr std::uint32_t kMatroska = 0x1A45DFA3;  // the EBML header (RFC 8794, 11.2.1), big-endian
// What MP4 and QuickTime files begin with: the type of their first box.
constexpr std::uint32_t kFirstBoxes[] = {
    packFourcc('f', 't', 'y', 'p'), packFourcc('m', 'o', 'o', 'v'), packFourcc('m', 'd', 'a', 't'),
    packFourcc('w', 'i', 'd', 'e'), packFourcc('f', 'r', 'e', 'e'), packFourcc('s', 'k', 'i', 'p')};

bool isMp4(const std::array<std::uint8_t, 16>& head) {
    const std::uint32_t box = le32(head.data() + 4);
    return std::find(std::begin(kFirstBoxes), std::end(kFirstBoxes), box) != std::end(kFirstBoxes);
}

}  // namespace

bool lacksIndex(platform::ReadOnlyFile& file) {
    std::array<std::uint8_t, 16> head{};
    return readWhole(file, 0, head) && isMp4(head) && mp4LacksIndex(file);
}

std::uint32_t sniffVideoCodec(platform::ReadOnlyFile& file) {
    std::array<std::uint8_t, 16> head{};
    if (!readWhole(file, 0, head)) {
        return 0;
    }
    if (be32(head.data()) == kMatroska) {
        return matroskaCodec(file);
    }
    if (isMp4(head)) {
        return mp4Codec(file);
    }
    probe::MediaInfo info;
    probe::setDiagnosticSink(nullptr);  // this library's own copy: the player's probe has spoken
    info.Probe(file);
    const bool named =
        info.containerType == probe::kContainerAvi || info.containerType == probe::kContainerAsf;
    if (!named || info.videoFourCC == probe::kUnknownVideo) {
        return 0;
    }
    const std::uint32_t letters = info.videoFourCC;  // first letter highest
    return letters << 24 | (letters & 0xFF00) << 8 | (letters >> 8 & 0xFF00) | letters >> 24;
}

}  // namespace filters
