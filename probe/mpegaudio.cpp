#include "probe/mpegaudio.h"

#include "probe/diagnostics.h"

namespace probe {

int MpegAudioRecognise(MediaInfo&, ReadWindow&) {
    return decline("not examined");
}

}  // namespace probe
