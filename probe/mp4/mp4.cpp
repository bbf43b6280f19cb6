#include "probe/mp4/mp4.h"

#include <algorithm>
#include <array>

#include "probe/codec/aac_config.h"
#include "probe/codec/h264.h"
#include "probe/codec/mpeg4_visual.h"
#include "probe/read/byte_reader.h"
#include "probe/read/four_cc.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/saturate.h"

namespace probe {
namespace {

constexpr std::size_t kHeadBytes = 256;
constexpr int kNoBrand = -1;

int brandCode(std::uint32_t brand) {
    static constexpr auto kBrands = std::to_array<std::uint32_t>(
        {fourCc("mp41"), fourCc("mp42"), fourCc("isom"), fourCc("M4A "), fourCc("MSNV")});
    const auto found = std::ranges::find(kBrands, brand);
    if (found != kBrands.end()) {
        return static_cast<int>(found - kBrands.begin());
    }
    return brand >= fourCc("3gp1") && brand <= fourCc("3gp6") ? 5 : kNoBrand;
}

// "ftyp": 0 size, 4 type, 8 major brand, 12 minor version, 16 compatible brands.
int brandOf(std::span<const std::uint8_t> head) {
    int code = brandCode(be32(&head[8]));
    // Required: counting from the size less 10, up to two words behind a short box are looked at.
    auto left = std::int64_t{static_cast<std::int32_t>(be32(&head[0]) - 10)};
    for (std::size_t at = 16; code == kNoBrand && left >= 1 && at + 4 <= head.size(); at += 4) {
        code = brandCode(be32(&head[at]));
        left -= 4;
    }
    return code;
}

// What is filled in when nothing failed on the way.
struct Values {
    std::uint32_t audioFormatTag = kAudioNone;
    std::uint32_t audioBitRate = 0;
    std::uint32_t audioSampleRate = 0;
    std::uint32_t audioChannels = 0;
    std::uint32_t videoFourCC = 0;
    std::uint32_t videoWidth = 0;
    std::uint32_t videoHeight = 0;
    std::uint32_t frameTimeMicroseconds = 0;
    std::uint32_t videoBitRate = 0;
    PixelAspect aspect;
};

struct Durations {
    std::uint64_t video = 0;  // milliseconds
    std::uint64_t audio = 0;
};

Result fillAudio(Mp4Reader& reader, Values& values) {
    const SampleDescription& audio = reader.of(TrackKind::Audio).description;
    constexpr std::uint64_t kLongestConfig = 256;
    constexpr std::uint8_t kMpeg2Audio = 0x69;
    constexpr std::uint8_t kMpeg1Audio = 0x6B;
    const bool mpeg = audio.objectType == kMpeg2Audio || audio.objectType == kMpeg1Audio;
    values.audioFormatTag = mpeg ? kAudioMpegLayer3 : kAudioAac;
    values.audioBitRate = audio.averageBitRate;
    values.audioSampleRate = audio.sampleRate;
    values.audioChannels = audio.channels;
    const auto size = static_cast<std::size_t>(std::min(audio.decoderInfo.size, kLongestConfig));
    if (size >= 3) {
        std::span<const std::uint8_t> config;
        if (!reader.file.view(audio.decoderInfo.start, size, config)) {
            return kFail;
        }
        values.audioSampleRate = ParseAudioSpecificConfig(config, audio.sampleRate);
    }
    return kOk;
}

Result findVideoAspect(Mp4Reader& reader, const SampleDescription& video, PixelAspect& aspect) {
    if (video.format != fourCc("avc1")) {
        const FileRange& info = video.decoderInfo;
        return FindAspectInVol(reader.file, info.start, info.start + info.size, aspect) ? kOk
                                                                                        : kFail;
    }
    std::span<const std::uint8_t> set;
    const auto size = static_cast<std::size_t>(video.parameterSet.size);
    if (size > 1) {
        if (!reader.file.view(video.parameterSet.start, size, set) || set.empty()) {
            return kFail;
        }
        aspect = FindAspectInSps(set.subspan(1));  // behind the NAL unit header
    }
    return kOk;
}

Result fillVideo(Mp4Reader& reader, std::uint64_t milliseconds, Values& values) {
    const KindTables& tables = reader.of(TrackKind::Video);
    const SampleDescription& video = tables.description;
    values.videoFourCC = video.format == fourCc("avc1") ? fourCc("AVC1") : fourCc("MP4V");
    values.videoWidth = video.width;
    values.videoHeight = video.height;
    if (tables.sampleSize.count != 0) {
        values.frameTimeMicroseconds = saturateToU32(milliseconds * 1000 / tables.sampleSize.count);
    }
    if (milliseconds != 0) {
        values.videoBitRate = saturateToU32(tables.payloadBytes * 8 / milliseconds * 1000);
    }
    return findVideoAspect(reader, video, values.aspect);
}

void copyValues(const Values& values, MediaRecord& record) {
    record.audioFormatTag = values.audioFormatTag;
    record.audioBitRate = values.audioBitRate;
    record.audioSampleRate = values.audioSampleRate;
    record.audioChannels = values.audioChannels;
    record.videoFourCC = values.videoFourCC;
    record.videoWidth = values.videoWidth;
    record.videoHeight = values.videoHeight;
    record.frameTimeMicroseconds = values.frameTimeMicroseconds;
    record.videoBitRate = values.videoBitRate;
    record.pixelAspectX = values.aspect.horizontal;
    record.pixelAspectY = values.aspect.vertical;
}

// A failure on the way leaves the record alone.
Result fill(Mp4Reader& reader, MediaRecord& record) {
    Values values;
    Durations durations;
    Result result = kOk;
    if (reader.lastTrack(TrackKind::Audio)) {
        result = Mp4TrackDurationMs(reader, TrackKind::Audio, durations.audio);
        result = result == kOk ? fillAudio(reader, values) : result;
    }
    if (result == kOk && reader.lastTrack(TrackKind::Video)) {
        result = Mp4TrackDurationMs(reader, TrackKind::Video, durations.video);
        result = result == kOk ? fillVideo(reader, durations.video, values) : result;
    }
    if (result != kOk) {
        return result;
    }
    copyValues(values, record);
    record.status = kOk;
    record.containerType = kContainerMp4;
    record.durationSeconds = saturateToU32(std::max(durations.video, durations.audio) / 1000);
    return kOk;
}

}  // namespace

const TrackSlot* Mp4Reader::lastTrack(TrackKind kind) const {
    const TrackSlot* last = nullptr;
    for (std::size_t i = 0; i < trackCount; ++i) {
        last = tracks[i].kind == kind ? &tracks[i] : last;
    }
    return last;
}

Result Mp4Parse(Mp4Reader& reader, MediaRecord& record, int /*brandCode: decides nothing*/) {
    if (const Result result = Mp4WalkTopLevel(reader); result != kOk) {
        return result;
    }
    if (reader.lastTrack(TrackKind::Audio) &&
        Mp4SetSampleOffsets(reader, TrackKind::Audio) != kOk) {
        diagnose("[ERROR] MP4Demux SetSampleOffset-AUDIO\n");
        return kFail;
    }
    if (reader.lastTrack(TrackKind::Video) &&
        Mp4SetSampleOffsets(reader, TrackKind::Video) != kOk) {
        diagnose("[ERROR] MP4Demux SetSampleOffset-VIDEO\n");
        return kFail;
    }
    return fill(reader, record);
}

int Mp4Recognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kHeadBytes, kHeadBytes, head)) {
        return decline(why);
    }
    if (be32(&head.bytes[4]) != fourCc("ftyp")) {
        return decline("it does not begin with an ftyp box");
    }
    const int code = brandOf(head.bytes);
    if (code == kNoBrand) {
        return decline("its ftyp box names none of the accepted brands");
    }
    record.setFileSize(head.fileSize);
    Mp4Reader reader(file, head.fileSize);
    static_cast<void>(Mp4Parse(reader, record, code));
    return 1;
}

}  // namespace probe
