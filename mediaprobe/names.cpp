#include "mediaprobe/names.h"

#include <cinttypes>
#include <iterator>

#include "mediaprobe/format_text.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;

struct Named {
    std::uint32_t number;
    const char* name;
};

constexpr Named kContainers[] = {
    {probe::kContainerAvi, "AVI"},
    {probe::kContainerMp4, "MP4/3GP"},
    {probe::kContainerAsf, "ASF (Windows Media)"},
    {probe::kContainerOgg, "Ogg"},
    {probe::kContainerMpegAudio, "MPEG audio"},
    {probe::kContainerWave, "WAVE"},
    {probe::kContainerMpeg1System, "MPEG-1 system stream"},
    {probe::kContainerMpeg2Program, "MPEG-2 program stream"},
    {probe::kContainerFlac, "FLAC"},
    {probe::kContainerMonkeysAudio, "Monkey's Audio"},
    {probe::kContainerFlv, "FLV"},
    {probe::kContainerJpeg, "JPEG"},
    {probe::kContainerGif, "GIF"},
    {probe::kContainerBmp, "BMP"},
    {probe::kContainerPng, "PNG"},
};

// Format tags of RFC 2361 and of Microsoft's mmreg.h, as far as recordings and films use them, and
// those of the probe's own parsers.
constexpr Named kAudioFormats[] = {
    {probe::kAudioPcm, "PCM"},
    {probe::kAudioAdpcm, "Microsoft ADPCM"},
    {0x0003, "floating-point PCM"},
    {0x0006, "A-law"},
    {0x0007, "mu-law"},
    {0x0011, "IMA ADPCM"},
    {probe::kAudioMpeg, "MPEG audio"},
    {probe::kAudioMpegLayer3, "MPEG layer 3"},
    {probe::kAudioAac, "AAC"},
    {0x0160, "Windows Media Audio 1"},
    {0x0161, "Windows Media Audio 2"},
    {0x0162, "Windows Media Audio Pro"},
    {0x0163, "Windows Media Audio Lossless"},
    {0x000A, "Windows Media Audio Voice"},
    {0x1600, "AAC"},
    {probe::kAudioAc3, "AC-3"},
    {0x2001, "DTS"},
    {probe::kAudioMonkeysAudio, "Monkey's Audio"},
    {probe::kAudioVorbis, "Vorbis"},
    {probe::kAudioFlac, "FLAC"},
    {0xFFFE, "extensible format"},
};

constexpr Named kVideoCodes[] = {
    {fourCc("AVC1"), "H.264"},
    {fourCc("H264"), "H.264"},
    {fourCc("X264"), "H.264"},
    {fourCc("HEVC"), "HEVC"},
    {fourCc("HVC1"), "HEVC"},
    {fourCc("HEV1"), "HEVC"},
    {fourCc("H265"), "HEVC"},
    {fourCc("X265"), "HEVC"},
    {fourCc("H263"), "H.263"},
    {fourCc("U263"), "H.263"},
    {fourCc("S263"), "H.263"},
    {fourCc("MP4V"), "MPEG-4 Visual"},
    {fourCc("FMP4"), "MPEG-4 Visual"},
    {fourCc("XVID"), "MPEG-4 Visual"},
    {fourCc("DIVX"), "MPEG-4 Visual"},
    {fourCc("DX50"), "MPEG-4 Visual"},
    {fourCc("DIV3"), "Microsoft MPEG-4 version 3"},
    {fourCc("MP43"), "Microsoft MPEG-4 version 3"},
    {fourCc("MJPG"), "Motion JPEG"},
    {fourCc("MPG1"), "MPEG-1"},
    {fourCc("MPG2"), "MPEG-2"},
    {fourCc("WMV1"), "Windows Media Video 7"},
    {fourCc("WMV2"), "Windows Media Video 8"},
    {fourCc("WMV3"), "Windows Media Video 9"},
    {fourCc("WVC1"), "VC-1"},
    {fourCc("VP80"), "VP8"},
    {fourCc("VP09"), "VP9"},
    {fourCc("AV01"), "AV1"},
};

template <std::size_t kCount>
const char* nameIn(const Named (&names)[kCount], std::uint32_t number) {
    for (const Named& one : names) {
        if (one.number == number) {
            return one.name;
        }
    }
    return nullptr;
}

std::uint32_t upperCase(std::uint32_t fourCc) {
    std::uint32_t upper = 0;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const std::uint32_t letter = (fourCc >> shift) & 0xFF;
        const bool lower = letter >= 'a' && letter <= 'z';
        upper |= (lower ? letter - 'a' + 'A' : letter) << shift;
    }
    return upper;
}

}  // namespace

const char* containerName(std::uint32_t containerType) {
    return nameIn(kContainers, containerType);
}

const char* audioName(std::uint32_t formatTag) {
    return nameIn(kAudioFormats, formatTag);
}

const char* videoName(std::uint32_t fourCc) {
    return nameIn(kVideoCodes, upperCase(fourCc));
}

std::string codeText(std::uint32_t fourCc) {
    std::string letters;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const std::uint32_t letter = (fourCc >> shift) & 0xFF;
        if (letter < 0x20 || letter > 0x7E) {
            return formatted("0x%08" PRIX32, fourCc);
        }
        letters += static_cast<char>(letter);
    }
    return letters;
}

std::string videoText(std::uint32_t fourCc) {
    if (fourCc == probe::kUnknownVideo) {
        return "a codec without a name";
    }
    const char* const name = videoName(fourCc);
    return name ? name : codeText(fourCc);
}

std::string audioText(std::uint32_t formatTag) {
    const char* const name = audioName(formatTag);
    return formatted("%s (0x%04" PRIX32 ")", name ? name : "format", formatTag);
}

std::string openErrorText(probe::Result open) {
    // Windows error numbers.
    static constexpr Named kErrors[] = {
        {2, "there is no such file"},
        {3, "a folder of its path does not exist"},
        {5, "reading it is not allowed"},
        {31, "it is no file but a pipe or a device, or the system fails to read it"},
        {32, "another program keeps it to itself"},
    };
    const std::uint32_t code = static_cast<std::uint32_t>(open);
    const char* const text = nameIn(kErrors, code & 0xFFFF);
    return text ? text : formatted("error 0x%08" PRIX32, code);
}

}  // namespace mediaprobe
