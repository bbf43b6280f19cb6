// The fields of a MediaRecord by name, in declared order: for JSON, for people and for tests.
#pragma once

#include <cstdint>
#include <string_view>

#include "probe/record/media_record.h"

namespace probe {

// Calls `visitor(name, value)` for every field from containerType to imageBitsPerPixel; a value is
// std::uint32_t, std::int32_t or std::u16string_view.
template <typename Visitor>
void visitFields(const MediaRecord& record, Visitor&& visitor) {
#define PROBE_FIELD(name) visitor(#name, record.name)
#define PROBE_TEXT(name) visitor(#name, std::u16string_view(record.name))
    PROBE_FIELD(containerType);
    PROBE_FIELD(fileSize);
    PROBE_FIELD(fileSizeHigh);
    PROBE_FIELD(durationSeconds);
    PROBE_FIELD(audioFormatTag);
    PROBE_FIELD(audioBitRate);
    PROBE_FIELD(audioSampleRate);
    PROBE_FIELD(audioChannels);
    PROBE_FIELD(videoFourCC);
    PROBE_FIELD(videoWidth);
    PROBE_FIELD(videoHeight);
    PROBE_FIELD(frameTimeMicroseconds);
    PROBE_FIELD(videoBitRate);
    PROBE_FIELD(pixelAspectX);
    PROBE_FIELD(pixelAspectY);
    PROBE_FIELD(hasTitle);
    PROBE_FIELD(hasArtist);
    PROBE_FIELD(hasAlbum);
    PROBE_FIELD(hasTrack);
    PROBE_FIELD(hasGenre);
    PROBE_TEXT(title);
    PROBE_TEXT(artist);
    PROBE_TEXT(album);
    PROBE_TEXT(track);
    PROBE_TEXT(genre);
    PROBE_FIELD(genreIndex);
    PROBE_FIELD(hasComposer);
    PROBE_FIELD(hasYear);
    PROBE_TEXT(composer);
    PROBE_TEXT(year);
    PROBE_FIELD(imageWidth);
    PROBE_FIELD(imageHeight);
    PROBE_FIELD(imageBitsPerPixel);
#undef PROBE_FIELD
#undef PROBE_TEXT
}

}  // namespace probe
