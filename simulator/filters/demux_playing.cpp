// The demultiplexer in a graph that runs, pauses, stops and is moved.
#include "simulator/filters/app_window.h"
#include "simulator/filters/demux_filter.h"
#include "simulator/tape/faults.h"

namespace filters {

HRESULT DemuxFilter::Stop() {
    length_.stop();
    watching_ = false;
    over_ = false;
    setOffset(0, 0);
    for (const auto& stream : streams_) {
        stream->stop();
    }
    BaseFilter::Stop();
    checked(splitter_.stop());
    return S_OK;
}

HRESULT DemuxFilter::checked(HRESULT result) {
    if (result == VFW_E_TIMEOUT) {
        for (const auto& stream : streams_) {
            stream->stayAlone();
        }
    }
    return result;
}

HRESULT DemuxFilter::Pause() {
    if (!splitter_.get()) {
        return E_UNEXPECTED;
    }
    BaseFilter::Pause();
    bool led = false;
    for (const auto& stream : streams_) {
        const bool connected = stream->receiver() != nullptr;
        stream->setLeading(connected && !led);
        led = led || connected;
        stream->start();
    }
    const HRESULT result = checked(splitter_.pause());
    if (undecoded_.peer()) {
        undecoded_.peer()->EndOfStream();  // all that ever comes of it
    }
    return result;
}

double DemuxFilter::durationSeconds() {
    ComPtr<IMediaSeeking> seeking;
    LONGLONG duration = 0;
    if (streams_.empty() || FAILED(streams_.front()->QueryInterface(IID_PPV_ARGS(&seeking))) ||
        FAILED(seeking->GetDuration(&duration))) {
        return 0;
    }
    return static_cast<double>(duration) / 1e7;
}

HRESULT DemuxFilter::Run(REFERENCE_TIME start) {
    if (!splitter_.get()) {
        return E_UNEXPECTED;
    }
    BaseFilter::Run(start);
    if (!watching_) {
        watching_ = true;
        length_.start(graph_, reader_.path(), durationSeconds());
        openedBytes_ = length_.bytes();
    }
    tellOver();
    return checked(splitter_.run(start));
}

void DemuxFilter::resume(FILTER_STATE state) {
    if (SUCCEEDED(checked(splitter_.pause())) && state == State_Running) {
        checked(splitter_.run(start_));
    }
}

HRESULT DemuxFilter::seekPlaying(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                 DWORD stopFlags) {
    const FILTER_STATE state = state_;
    for (const auto& stream : streams_) {
        if (stream->receiver()) {
            stream->receiver()->BeginFlush();  // sets waiting streams free
        }
    }
    HRESULT result = checked(splitter_.stop());
    setOffset(0, 0);
    for (const auto& stream : streams_) {
        IMediaSeeking* seeking = stream->innerSeeking();
        LONGLONG from = current ? *current : 0;
        LONGLONG to = stop ? *stop : 0;
        const HRESULT moved = seeking
                                  ? seeking->SetPositions(current ? &from : nullptr, currentFlags,
                                                          stop ? &to : nullptr, stopFlags)
                                  : S_OK;
        result = FAILED(moved) ? moved : result;
        if (stream->receiver()) {
            stream->receiver()->EndFlush();
        }
    }
    resume(state);
    if (!splitter_.get()) {
        endStreams(state);
        return VFW_E_TIMEOUT;
    }
    return result;
}

HRESULT DemuxFilter::GetState(DWORD milliseconds, FILTER_STATE* state) {
    return splitter_.get() ? splitter_.get()->GetState(milliseconds, state)
                           : BaseFilter::GetState(milliseconds, state);
}

HRESULT DemuxFilter::SetSyncSource(IReferenceClock* clock) {
    BaseFilter::SetSyncSource(clock);
    return splitter_.get() ? splitter_.get()->SetSyncSource(clock) : S_OK;
}

HRESULT DemuxFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    if (graph && tape::fault(L"LeakReference")) {
        graph->AddRef();
    }
    AppWindow::instance().ensure();
    AppWindow::instance().setGraph(graph);
    if (splitter_.get()) {
        splitter_.get()->JoinFilterGraph(graph, name);
    }
    return BaseFilter::JoinFilterGraph(graph, name);
}

}  // namespace filters
