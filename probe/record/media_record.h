// What the probe finds out about one file: the record that recognisers and parsers write.
#pragma once

#include <cstdint>

#include "probe/record/result.h"

namespace probe {

inline constexpr std::uint32_t kUnknownVideo = 0xFFFFFFFF;  // a video stream without a name

// Values of MediaRecord::containerType.
enum ContainerType : std::uint32_t {
    kContainerNone = 0,
    kContainerAvi = 1,
    kContainerMp4 = 2,
    kContainerAsf = 3,
    kContainerOgg = 4,
    kContainerMpegAudio = 5,
    kContainerWave = 6,
    kContainerMpeg1System = 7,
    kContainerMpeg2Program = 8,
    kContainerFlac = 9,
    kContainerMonkeysAudio = 10,
    kContainerFlv = 11,
    kContainerJpeg = 0x1001,
    kContainerGif = 0x1002,
    kContainerBmp = 0x1003,
    kContainerPng = 0x1004,
};

// Values of MediaRecord::audioFormatTag that the probe's own parsers write.
enum AudioFormatTag : std::uint32_t {
    kAudioNone = 0,
    kAudioPcm = 1,
    kAudioAdpcm = 2,
    kAudioMpeg = 0x0050,  // layers I and II
    kAudioMpegLayer3 = 0x0055,
    kAudioAac = 0x00FF,
    kAudioAc3 = 0x2000,
    kAudioMonkeysAudio = 0x4150,
    kAudioVorbis = 0x566F,
    kAudioFlac = 0xF1AC,
};

inline constexpr int kTextLength = 128;  // UTF-16 units of a text, the terminator included

struct MediaRecord {
    Result status = kNotParsed;
    std::uint32_t containerType = kContainerNone;
    std::uint32_t fileSize = 0;         // low 32 bits of the size in bytes
    std::uint32_t fileSizeHigh = 0;     // always 0, however large the file
    std::uint32_t durationSeconds = 0;  // truncated
    std::uint32_t audioFormatTag = kAudioNone;
    std::uint32_t audioBitRate = 0;     // bits per second
    std::uint32_t audioSampleRate = 0;  // Hz
    std::uint32_t audioChannels = 0;
    std::uint32_t videoFourCC = 0;  // first letter highest; 0 no video; kUnknownVideo
    std::uint32_t videoWidth = 0;   // pixels
    std::uint32_t videoHeight = 0;
    std::uint32_t frameTimeMicroseconds = 0;
    std::uint32_t videoBitRate = 0;  // bits per second
    std::uint32_t pixelAspectX = 0;
    std::uint32_t pixelAspectY = 0;
    std::uint32_t hasTitle = 0;
    std::uint32_t hasArtist = 0;
    std::uint32_t hasAlbum = 0;
    std::uint32_t hasTrack = 0;
    std::uint32_t hasGenre = 0;
    char16_t title[kTextLength] = {};
    char16_t artist[kTextLength] = {};
    char16_t album[kTextLength] = {};
    char16_t track[kTextLength] = {};
    char16_t genre[kTextLength] = {};
    std::int32_t genreIndex = -1;  // genre number of an ID3 version 1 tag; -1 none
    std::uint32_t hasComposer = 0;
    std::uint32_t hasYear = 0;
    char16_t composer[kTextLength] = {};
    char16_t year[kTextLength] = {};
    std::uint32_t imageWidth = 0;  // still images only
    std::uint32_t imageHeight = 0;
    std::uint32_t imageBitsPerPixel = 0;

    void setFileSize(std::uint64_t bytes) {
        fileSize = static_cast<std::uint32_t>(bytes);
        fileSizeHigh = 0;  // required, however large the file
    }
};

}  // namespace probe
