#include "mediaprobe/report.h"

#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "platform/text.h"
#include "probe/record/field_list.h"

namespace mediaprobe {
namespace {

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...) {
    char text[160];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

void appendJsonText(std::string& out, std::string_view utf8) {
    out += '"';
    for (const char c : utf8) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            out += formatted("\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        } else {
            out += c;
        }
    }
    out += '"';
}

void appendJson(std::string& out, std::uint32_t value) {
    out += std::to_string(value);
}
void appendJson(std::string& out, std::int32_t value) {
    out += std::to_string(value);
}
void appendJson(std::string& out, std::u16string_view value) {
    appendJsonText(out, platform::toUtf8(value));
}

// 211042 as "211,042".
std::string grouped(std::uint32_t value) {
    std::string digits = std::to_string(value);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
    return digits;
}

std::string playTime(std::uint32_t seconds) {
    if (seconds >= 3600) {
        return formatted("%" PRIu32 ":%02" PRIu32 ":%02" PRIu32, seconds / 3600, seconds / 60 % 60,
                         seconds % 60);
    }
    return formatted("%" PRIu32 ":%02" PRIu32, seconds / 60, seconds % 60);
}

void appendVideo(std::string& out, const probe::MediaRecord& record) {
    out += "  Video    " + videoName(record.videoFourCC);
    if (record.videoWidth != 0 || record.videoHeight != 0) {
        out += formatted(", %" PRIu32 " x %" PRIu32, record.videoWidth, record.videoHeight);
    }
    if (record.frameTimeMicroseconds != 0) {
        out += formatted(", %.3f frames/s", 1000000.0 / record.frameTimeMicroseconds);
    }
    if (record.videoBitRate != 0) {
        out += ", " + grouped(record.videoBitRate) + " bit/s";
    }
    if (record.pixelAspectY != 0) {
        out += formatted(", pixel aspect %" PRIu32 ":%" PRIu32, record.pixelAspectX,
                         record.pixelAspectY);
    } else if (record.pixelAspectX != 0) {
        // AVI gives one term of the two, the vertical one.
        out += formatted(", pixel aspect ?:%" PRIu32, record.pixelAspectX);
    }
    out += '\n';
}

void appendAudio(std::string& out, const probe::MediaRecord& record) {
    out += "  Audio    " + audioName(record.audioFormatTag);
    out += ", " + grouped(record.audioSampleRate) + " Hz";
    out += formatted(", %" PRIu32 " channel%s", record.audioChannels,
                     record.audioChannels == 1 ? "" : "s");
    if (record.audioBitRate != 0) {
        out += ", " + grouped(record.audioBitRate) + " bit/s";
    }
    out += '\n';
}

void appendTags(std::string& out, const probe::MediaRecord& record) {
    const struct {
        const char* label;
        std::uint32_t present;
        const char16_t* text;
    } tags[] = {
        {"Title", record.hasTitle, record.title}, {"Artist", record.hasArtist, record.artist},
        {"Album", record.hasAlbum, record.album}, {"Track", record.hasTrack, record.track},
        {"Genre", record.hasGenre, record.genre}, {"Composer", record.hasComposer, record.composer},
        {"Year", record.hasYear, record.year},
    };
    for (const auto& tag : tags) {
        if (tag.present != 0 && tag.text[0] != u'\0') {
            out += formatted("  %-8s ", tag.label) + platform::toUtf8(tag.text) + '\n';
        }
    }
    if (record.genreIndex >= 0) {
        out += formatted("  Genre    number %" PRId32 "\n", record.genreIndex);
    }
}

}  // namespace

std::string jsonLine(const std::string& path, probe::Result open,
                     const probe::MediaRecord& record) {
    std::string out = "{\"path\": ";
    // Once to UTF-16 and back, so that a name in another encoding is still valid JSON.
    appendJsonText(out, platform::toUtf8(platform::toUtf16(path)));
    out += formatted(", \"open\": \"0x%08" PRIX32 "\", \"status\": \"0x%08" PRIX32 "\"",
                     static_cast<std::uint32_t>(open), static_cast<std::uint32_t>(record.status));
    probe::visitFields(record, [&out](const char* name, auto value) {
        out += ", \"";
        out += name;
        out += "\": ";
        appendJson(out, value);
    });
    return out + "}\n";
}

std::string page(const std::string& path, const probe::MediaRecord& record, const char* claimedBy) {
    std::string out = path + '\n';
    if (claimedBy && record.containerType == probe::kContainerNone) {
        out += formatted("  File     damaged (claimed by %s)", claimedBy);
    } else {
        out += formatted("  File     %s", containerName(record.containerType));
    }
    if (record.fileSize != 0) {
        out += ", " + grouped(record.fileSize) + " bytes";
    }
    if (record.durationSeconds != 0) {
        out += ", " + playTime(record.durationSeconds);
    }
    out += '\n';
    if (record.videoFourCC != 0 || record.videoWidth != 0) {
        appendVideo(out, record);
    }
    if (record.audioFormatTag != 0) {
        appendAudio(out, record);
    }
    if (record.imageWidth != 0 || record.imageHeight != 0) {
        out += formatted("  Picture  %" PRIu32 " x %" PRIu32 ", %" PRIu32 " bits\n",
                         record.imageWidth, record.imageHeight, record.imageBitsPerPixel);
    }
    appendTags(out, record);
    if (record.status != probe::kOk) {
        out += formatted("  Status   0x%08" PRIX32 " (%s)\n",
                         static_cast<std::uint32_t>(record.status),
                         record.status == probe::kNotParsed     ? "not parsed"
                         : record.status == probe::kOutOfMemory ? "a size in it is too large"
                                                                : "damaged");
    }
    return out;
}

std::string openError(probe::Result open) {
    const std::uint32_t number = static_cast<std::uint32_t>(open) & 0xFFFF;
    switch (number) {
        case 2:
            return "there is no such file";
        case 3:
            return "a folder of its path does not exist";
        case 5:
            return "it is a folder, or reading it is not allowed";
        case 31:
            return "it is no file but a pipe or a device, or the system fails to read it";
        case 32:
            return "another program keeps it to itself";
        default:
            return formatted("error 0x%08" PRIX32, static_cast<std::uint32_t>(open));
    }
}

const char* containerName(std::uint32_t containerType) {
    switch (containerType) {
        case probe::kContainerNone:
            return "not recognised";
        case probe::kContainerAvi:
            return "AVI";
        case probe::kContainerMp4:
            return "MP4/3GP";
        case probe::kContainerAsf:
            return "ASF (Windows Media)";
        case probe::kContainerOgg:
            return "Ogg";
        case probe::kContainerMpegAudio:
            return "MPEG audio";
        case probe::kContainerWave:
            return "WAVE";
        case probe::kContainerMpeg1System:
            return "MPEG-1 system stream";
        case probe::kContainerMpeg2Program:
            return "MPEG-2 program stream";
        case probe::kContainerFlac:
            return "FLAC";
        case probe::kContainerMonkeysAudio:
            return "Monkey's Audio";
        case probe::kContainerFlv:
            return "FLV";
        case probe::kContainerJpeg:
            return "JPEG";
        case probe::kContainerGif:
            return "GIF";
        case probe::kContainerBmp:
            return "BMP";
        case probe::kContainerPng:
            return "PNG";
        default:
            return "unknown container";
    }
}

std::string audioName(std::uint32_t formatTag) {
    const struct {
        std::uint32_t tag;
        const char* name;
    } names[] = {{probe::kAudioPcm, "PCM"},
                 {probe::kAudioAdpcm, "ADPCM"},
                 {probe::kAudioMpeg, "MPEG audio"},
                 {probe::kAudioMpegLayer3, "MPEG layer 3"},
                 {probe::kAudioAac, "AAC"},
                 {probe::kAudioAc3, "AC-3"},
                 {probe::kAudioMonkeysAudio, "Monkey's Audio"},
                 {probe::kAudioVorbis, "Vorbis"},
                 {probe::kAudioFlac, "FLAC"}};
    const char* name = "format";
    for (const auto& one : names) {
        name = one.tag == formatTag ? one.name : name;
    }
    return formatted("%s (0x%04" PRIX32 ")", name, formatTag);
}

std::string videoName(std::uint32_t fourCc) {
    if (fourCc == probe::kUnknownVideo) {
        return "a codec without a name";
    }
    std::string letters;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char c = static_cast<char>(fourCc >> shift);
        if (c < 0x20 || c == 0x7F) {
            return formatted("0x%08" PRIX32, fourCc);
        }
        letters += c;
    }
    return letters;
}

}  // namespace mediaprobe
