#include "probe/recognisers.h"

#include <array>

#include "probe/asf/asf.h"
#include "probe/flv/flv.h"
#include "probe/image/image.h"
#include "probe/mp4/mp4.h"
#include "probe/mpegaudio/ape.h"
#include "probe/mpegaudio/flac.h"
#include "probe/mpegaudio/mpegaudio.h"
#include "probe/mpegps/mpegps.h"
#include "probe/ogg/ogg.h"
#include "probe/riff/riff.h"

namespace probe {
namespace {

constexpr auto kRecognisers = std::to_array<Recogniser>({
    {"Still images", "the first 64 bytes: FF D8, GIF, BM or the PNG signature with IHDR",
     ImageRecognise},
    {"RIFF: AVI and WAVE", "the first 256 bytes: RIFF with the form AVI or WAVE", RiffRecognise},
    {"MP4 and 3GP", "the first 256 bytes: ftyp and its brands", Mp4Recognise},
    {"ASF", "the first 256 bytes: the GUID of the Header Object", AsfRecognise},
    {"Ogg", "the first 256 bytes: OggS", OggRecognise},
    {"MPEG program stream", "the first 256 bytes (VideoCD: 2 MiB): a pack start code",
     MpegPsRecognise},
    {"MPEG audio", "up to 2 MiB from offset 10: six frame headers in a row", MpegAudioRecognise},
    {"FLAC", "256 bytes at the start or behind an ID3 tag: fLaC", FlacRecognise},
    {"Monkey's Audio", "the first 256 bytes: MAC", ApeRecognise},
    {"FLV", "the first 9 bytes: FLV", FlvRecognise},
});

}  // namespace

std::span<const Recogniser> recognisers() {
    return kRecognisers;
}

const Recogniser* askRecognisers(MediaRecord& record, ReadWindow& file) {
    for (const Recogniser& recogniser : kRecognisers) {
        if (recogniser.recognise(record, file) != 0) {
            return &recogniser;
        }
    }
    return nullptr;
}

}  // namespace probe
