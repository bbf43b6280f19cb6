// The demultiplexer and a recording that grows while it plays. The splitter knows of what was there
// when it opened the file; its streams keep their end to themselves, and when all have come to it
// the file is opened once more and played on from there. The receivers are not told. The end stays
// untold when the recording is over, too: the graph's position would go back to where the file had
// ended when it was opened first, and the player, which waits for the announced length, would wait
// for ever. Only when the file cannot be opened again is the end told, and with it the event that
// has the player go on to the next file.
#include <algorithm>

#include "simulator/filters/demux_filter.h"
#include "simulator/filters/watched_call.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

// How far before the place to go on at the splitter begins, 100 ns: a picture can be decoded from
// the last key picture on only, and the splitter cannot tell which those are in a file without
// index.
constexpr LONGLONG kLeadIn = 2 * 10'000'000LL;

constexpr DWORD kSplitterLost = 2;  // value of the fault ReopenFails

constexpr LONG kNextFileEvent = 33769;

// What the receivers may take to play out what they have.
constexpr Patience kEndPatience = {.quiet = 1000, .failed = 500, .longest = 1500, .whole = 1500};

}  // namespace

bool DemuxFilter::mayGoOn() const {
    return length_.live();
}

void DemuxFilter::setOffset(LONGLONG offset, LONGLONG first) {
    offset_ = offset;
    for (const auto& stream : streams_) {
        stream->setOffset(offset, first);
    }
}

void DemuxFilter::watchGrowth() {
    bool ended = false;
    for (const auto& stream : streams_) {
        if (stream->receiver() && !stream->endKept()) {
            return;
        }
        ended = ended || stream->receiver();
    }
    if (ended && length_.bytes() > openedBytes_) {
        playOn();
    }
}

HRESULT DemuxFilter::openAgain() {
    if (!input_.peer()) {
        return E_UNEXPECTED;
    }
    splitter_.close();
    openedBytes_ = length_.bytes();
    const DWORD failure = tape::fault(L"ReopenFails");
    if (failure == kSplitterLost) {
        splitter_.release();
    }
    HRESULT result = failure ? VFW_E_INVALID_FILE_FORMAT : splitter_.open(input_.type().get());
    const auto outputs = splitter_.outputs();
    if (SUCCEEDED(result) && outputs.size() != streams_.size()) {
        result = VFW_E_INVALID_FILE_FORMAT;
    }
    for (std::size_t i = 0; i < streams_.size() && SUCCEEDED(result); ++i) {
        result = streams_[i]->rejoin(outputs[i].Get());
    }
    return result;
}

void DemuxFilter::endHere(FILTER_STATE state) {
    length_.stop();
    // Some streams may have been taken up again before one of them failed.
    for (const auto& stream : streams_) {
        if (splitter_.get() && stream->joined()) {
            stream->leave();
        }
    }
    splitter_.close();
    endStreams(state);
}

void DemuxFilter::endStreams(FILTER_STATE state) {
    std::vector<ComPtr<IPin>> receivers;
    for (const auto& stream : streams_) {
        stream->stayAlone();
        if (stream->receiver()) {
            receivers.emplace_back(stream->receiver());
        }
    }
    // On a thread of the streams: the system's sound renderer stays in this call until it has
    // played out, and now and then misses that and stays until it is stopped.
    callWatched(
        [receivers] {
            for (const ComPtr<IPin>& receiver : receivers) {
                receiver.Get()->EndOfStream();
            }
        },
        reader_.activity(), kEndPatience);
    over_ = !reader_.activity().failed;  // a failed read the player knows of
    if (state == State_Running) {
        tellOver();
    }
}

void DemuxFilter::tellOver() {
    if (over_) {
        over_ = false;
        sendGraphEvent(graph_, kNextFileEvent, 0, 0);
    }
}

void DemuxFilter::playOn() {
    const FILTER_STATE state = state_;
    LONGLONG start = 0;  // what the splitter's time 0 stands for
    LONGLONG end = 0;
    IMediaSeeking* const before = streams_.empty() ? nullptr : streams_.front()->innerSeeking();
    if (!splitter_.get() || !before || FAILED(before->GetCurrentPosition(&start)) ||
        FAILED(before->GetDuration(&end))) {
        return;
    }
    HRESULT result = checked(splitter_.stop());
    for (const auto& stream : streams_) {
        stream->stop();
        if (SUCCEEDED(result)) {
            stream->leave();
        }
    }
    result = SUCCEEDED(result) ? openAgain() : result;
    tape::FilterLine(vendor::kDemuxName, L"played on")
        .number("fromMilliseconds", end / 10000)
        .number("result", result);
    if (FAILED(result)) {
        endHere(state);
        return;
    }
    const LONGLONG from = std::max<LONGLONG>(end - kLeadIn, 0);
    setOffset(offset_ + from - start, std::max<LONGLONG>(offset_ + end - start, 0));
    for (const auto& stream : streams_) {
        LONGLONG place = from;
        if (stream->innerSeeking()) {
            stream->innerSeeking()->SetPositions(&place, AM_SEEKING_AbsolutePositioning, nullptr,
                                                 AM_SEEKING_NoPositioning);
        }
        stream->start();
    }
    length_.measured(durationSeconds(), openedBytes_);
    resume(state);
}

}  // namespace filters
