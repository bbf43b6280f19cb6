#include "mediaprobe/explain.h"

#include <cinttypes>
#include <cstdio>
#include <numeric>

#include "mediaprobe/names.h"
#include "probe/recognisers.h"
#include "probe/record/diagnostics.h"

namespace mediaprobe {
namespace {

// Of the recogniser that is asked; each thread probes a file of its own.
thread_local const char* reason = nullptr;

void keepReason(const char* why) {
    reason = why;
}

std::string spent(const probe::ReadCounts& before, const probe::ReadCounts& after) {
    char text[80];
    const std::uint64_t reads = after.reads - before.reads;
    std::snprintf(text, sizeof text, "%" PRIu64 " read%s, %" PRIu64 " bytes", reads,
                  reads == 1 ? "" : "s", after.bytes - before.bytes);
    return text;
}

std::string outcome(bool claimed) {
    if (claimed) {
        return "claimed";
    }
    return reason ? std::string("declined: ") + reason : std::string("declined");
}

// Whether a file without an audio format tag may have sound all the same: its figures are there, or
// the container is none of the two whose headers list every stream.
bool mayHoldSound(const probe::MediaRecord& record) {
    return record.audioSampleRate != 0 || record.audioChannels != 0 || record.audioBitRate != 0 ||
           (record.containerType != probe::kContainerAvi &&
            record.containerType != probe::kContainerMp4);
}

std::string refusal(probe::Result open, const probe::MediaRecord& record) {
    if (open != probe::kOk) {
        return "refuses it: it cannot be opened";
    }
    if (record.containerType >= probe::kContainerJpeg) {
        return "refuses it: a still image has no audio, and a graph without an audio renderer is "
               "not run";
    }
    if (record.containerType == probe::kContainerNone || record.status != probe::kOk) {
        return "decides by its graph alone, since the probe found nothing";
    }
    if (record.audioFormatTag == probe::kAudioNone && mayHoldSound(record)) {
        return "refuses it unless its graph finds audio that the probe has no tag for";
    }
    if (record.audioFormatTag == probe::kAudioNone) {
        return "refuses it: without audio there is no audio renderer in the graph, and such a "
               "graph is not run";
    }
    if (record.videoFourCC == 0) {
        return "plays it if its graph finds an audio decoder";
    }
    return "plays it if the chip decodes " + videoText(record.videoFourCC) +
           "; otherwise the null video decoder is in the graph and the file is refused";
}

}  // namespace

void listenForReasons() {
    probe::setReasonSink(keepReason);
}

probe::Result WatchedInfo::Probe(platform::ReadOnlyFile& file) {
    probe::ReadWindow window(file);
    claimedBy_ = nullptr;
    if (wanted_ == Account::Written) {
        writeAccount(window);
    } else if (const probe::Recogniser* claiming = probe::askRecognisers(*this, window)) {
        claimedBy_ = claiming->name;
    }
    seen_ = lookAgain(window, *this, claimedBy_ ? Claimed::Yes : Claimed::No);
    return claimedBy_ ? 1 : 0;
}

void WatchedInfo::writeAccount(probe::ReadWindow& window) {
    int number = 0;
    for (const probe::Recogniser& recogniser : probe::recognisers()) {
        char head[32];
        std::snprintf(head, sizeof head, "  %2d. ", ++number);
        account_ += std::string(head) + recogniser.name;
        if (claimedBy_) {
            account_ += ": not asked\n";
            continue;
        }
        const probe::ReadCounts before = window.counts();
        reason = nullptr;
        if (recogniser.recognise(*this, window) != 0) {
            claimedBy_ = recogniser.name;
        }
        account_ += std::string(": looks at ") + recogniser.looksAt + ";\n      " +
                    outcome(claimedBy_ != nullptr) + " (" + spent(before, window.counts()) + ")\n";
    }
    account_ += "  Read:     " + spent({}, window.counts()) + " in all\n";
}

std::string playersView(probe::Result open, const probe::MediaRecord& record) {
    const std::uint32_t divisor = std::gcd(record.videoWidth, record.videoHeight);
    const bool hasSize = record.videoWidth != 0 && record.videoHeight != 0;
    const bool losesTag = !hasSize && record.audioFormatTag != probe::kAudioNone;
    char text[240];
    std::snprintf(text, sizeof text,
                  "  Player:   takes videoWidth %" PRIu32 ", videoHeight %" PRIu32
                  ", audioFormatTag 0x%04" PRIX32 "%s (picture %" PRIu32 ":%" PRIu32 ")\n",
                  record.videoWidth, record.videoHeight, record.audioFormatTag,
                  losesTag ? ", stored as 0, for want of a picture" : "",
                  hasSize ? record.videoWidth / divisor : 0,
                  hasSize ? record.videoHeight / divisor : 0);
    return std::string(text) + "  Verdict:  the player " + refusal(open, record) + "\n";
}

}  // namespace mediaprobe
