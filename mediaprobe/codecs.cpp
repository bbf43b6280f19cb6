#include "mediaprobe/codecs.h"

#include "mediaprobe/format_text.h"
#include "mediaprobe/names.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;

// Sound by its sample entry (the registration authority of ISO/IEC 14496-12, 3GPP TS 26.244).
constexpr struct {
    std::uint32_t entry;
    const char* name;
} kSoundEntries[] = {
    {fourCc("ac-3"), "AC-3"},         {fourCc("ec-3"), "E-AC-3"},
    {fourCc("alac"), "ALAC"},         {fourCc("samr"), "AMR"},
    {fourCc("sawb"), "AMR wideband"}, {fourCc("fLaC"), "FLAC"},
    {fourCc("Opus"), "Opus"},         {fourCc("sowt"), "PCM"},
    {fourCc("twos"), "PCM"},          {fourCc("lpcm"), "PCM"},
    {fourCc("raw "), "PCM"},          {fourCc("in24"), "PCM"},
    {fourCc("ulaw"), "mu-law"},       {fourCc("alaw"), "A-law"},
    {fourCc("ima4"), "IMA ADPCM"},    {fourCc(".mp3"), "MPEG layer 3"},
};

std::string soundText(std::uint32_t entry) {
    for (const auto& one : kSoundEntries) {
        if (one.entry == entry) {
            return one.name;
        }
    }
    return codeText(entry);
}

// Pictures in a "mp4v" entry by their object type; null for MPEG-4 Visual itself and what is
// unknown.
const char* objectText(std::uint8_t objectType) {
    if (objectType >= 0x60 && objectType <= 0x65) {
        return "MPEG-2";
    }
    return objectType == 0x6A ? "MPEG-1" : objectType == 0x6C ? "Motion JPEG" : nullptr;
}

}  // namespace

Codec videoCodec(const probe::MediaRecord& record, const SecondLook& seen) {
    if (record.videoFourCC == 0) {
        return {};
    }
    const bool mayBeOther = record.containerType == probe::kContainerMp4 &&
                            record.videoFourCC == fourCc("MP4V") && seen.videoEntry != 0;
    if (mayBeOther && seen.videoEntry != fourCc("mp4v")) {
        return {videoText(seen.videoEntry), codeText(record.videoFourCC)};
    }
    if (const char* const object = objectText(seen.videoObjectType); mayBeOther && object) {
        return {object, codeText(record.videoFourCC)};
    }
    return {videoText(record.videoFourCC), {}};
}

Codec audioCodec(const probe::MediaRecord& record, const SecondLook& seen) {
    if (record.audioFormatTag == 0) {
        return {};
    }
    const bool isOther = record.containerType == probe::kContainerMp4 &&
                         record.audioFormatTag == probe::kAudioAac && seen.audioEntry != 0 &&
                         seen.audioEntry != fourCc("mp4a");
    const char* const name = audioName(record.audioFormatTag);
    const std::string told = name ? name : audioText(record.audioFormatTag);
    return isOther ? Codec{soundText(seen.audioEntry), told} : Codec{told, {}};
}

}  // namespace mediaprobe
