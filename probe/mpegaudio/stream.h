// What an MPEG audio elementary stream is like: its play time and bit rate from the header that
// encoders of variable bit rate put into the first frame, or from the frames themselves.
#pragma once

#include <cstdint>

#include "probe/codec/mpegaudio_header.h"
#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

// Reads the frame header at `offset`; false when less than all of it lies in front of `end`, when
// there is none, or when it is of the free format and so does not tell where the next one stands.
[[nodiscard]] bool readMpegAudioFrame(ReadWindow& file, std::uint64_t offset, std::uint64_t end,
                                      MpegAudioHeader& header);

// Fills the audio fields of `record` from the stream whose first found frame stands at `first`.
// The play time is that of
//  - the frame count of a "Xing", "Info" or "VBRI" header, or else
//  - the frames of the first 2 MiB when the first six differ in bit rate, carried on over the
//    rest of the file at their mean rate, or else
//  - the bytes up to the tags at the file's end, at the bit rate of the first frame.
// Returns kFail when a read fails; what was filled before stays.
[[nodiscard]] Result parseMpegAudio(ReadWindow& file, std::uint64_t fileSize, std::uint64_t first,
                                    MediaRecord& record);

}  // namespace probe
