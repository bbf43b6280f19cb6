#include "simulator/filters/demux_filter.h"

#include "simulator/filters/app_window.h"
#include "simulator/filters/chip_codecs.h"
#include "simulator/filters/class_ids.h"
#include "simulator/filters/faults.h"
#include "simulator/filters/watched_call.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

// A splitter that has not read for so long while it opens a file will never answer.
constexpr DWORD kQuietMilliseconds = 2000;

}  // namespace

DemuxFilter::DemuxFilter() : BaseFilter(kDemuxClass) {
    makeSplitter();
}

void DemuxFilter::makeSplitter() {
    if (FAILED(CoCreateInstance(kSplitterClass, static_cast<IBaseFilter*>(this),
                                CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(innerUnknown_.GetAddressOf())))) {
        return;
    }
    if (SUCCEEDED(innerUnknown_.Get()->QueryInterface(IID_IBaseFilter,
                                                      reinterpret_cast<void**>(&inner_)))) {
        Release();  // the reference went to this filter
    }
}

DemuxFilter::~DemuxFilter() {
    length_.stop();
    inner_ = nullptr;
    innerUnknown_.Reset();
}

void* DemuxFilter::findInterface(REFIID iid) {
    if (iid == vendor::kDemuxValues) {
        return static_cast<vendor::DemuxValues*>(this);
    }
    if (iid == vendor::kDemuxOptions) {
        return static_cast<vendor::DemuxOptions*>(this);
    }
    if (iid == vendor::kAudioStreams) {
        return static_cast<vendor::AudioStreams*>(this);
    }
    if (iid == vendor::kAudioStreamSelection) {
        return static_cast<vendor::AudioStreamSelection*>(this);
    }
    if (iid == vendor::kFilterStatus) {
        return static_cast<vendor::FilterStatus*>(this);
    }
    if (iid == vendor::kOwnerWindow) {
        return static_cast<vendor::OwnerWindow*>(this);
    }
    void* found = nullptr;
    if (innerUnknown_ && SUCCEEDED(innerUnknown_.Get()->QueryInterface(iid, &found))) {
        Release();  // the caller counts
    }
    return found;
}

ComPtr<IPin> DemuxFilter::innerInput() {
    ComPtr<IEnumPins> all;
    if (!inner_ || FAILED(inner_->EnumPins(&all))) {
        return nullptr;
    }
    ComPtr<IPin> pin;
    while (all->Next(1, pin.ReleaseAndGetAddressOf(), nullptr) == S_OK) {
        PIN_DIRECTION direction;
        if (SUCCEEDED(pin.Get()->QueryDirection(&direction)) && direction == PINDIR_INPUT) {
            return pin;
        }
    }
    return nullptr;
}

std::vector<ComPtr<IPin>> DemuxFilter::innerOutputs() {
    std::vector<ComPtr<IPin>> outputs;
    ComPtr<IEnumPins> all;
    if (!inner_ || FAILED(inner_->EnumPins(&all))) {
        return outputs;
    }
    ComPtr<IPin> pin;
    while (all->Next(1, pin.ReleaseAndGetAddressOf(), nullptr) == S_OK) {
        PIN_DIRECTION direction;
        if (SUCCEEDED(pin.Get()->QueryDirection(&direction)) && direction == PINDIR_OUTPUT) {
            outputs.push_back(pin);
        }
    }
    return outputs;
}

void DemuxFilter::findStreams() {
    for (const ComPtr<IPin>& pin : innerOutputs()) {
        streams_.push_back(std::make_unique<StreamPin>(this, this, pin.Get()));
    }
}

std::vector<StreamPin*> DemuxFilter::streamsOf(const GUID& majorType) {
    std::vector<StreamPin*> found;
    for (const auto& stream : streams_) {
        if (stream->majorType() == majorType) {
            found.push_back(stream.get());
        }
    }
    return found;
}

PinList DemuxFilter::pins() {
    PinList all = {ComPtr<IPin>(&input_)};
    if (!open_) {
        return all;
    }
    if (!fault(L"NoVideoRenderer")) {
        if (chipLacksCodec_) {
            all.push_back(ComPtr<IPin>(&undecoded_));
        } else {
            for (StreamPin* stream : streamsOf(MEDIATYPE_Video)) {
                all.push_back(ComPtr<IPin>(stream));
            }
        }
    }
    if (!fault(L"NoAudioRenderer")) {
        for (StreamPin* stream : streamsOf(MEDIATYPE_Audio)) {
            all.push_back(ComPtr<IPin>(stream));
        }
    }
    return all;
}

HRESULT DemuxFilter::Input::checkType(const AM_MEDIA_TYPE& type) {
    return type.majortype == MEDIATYPE_Stream ? S_OK : S_FALSE;
}

HRESULT DemuxFilter::Input::connected(IPin* peer, const AM_MEDIA_TYPE& type) {
    return demux_->openFile(peer, type);
}

HRESULT DemuxFilter::openFile(IPin* file, const AM_MEDIA_TYPE& type) {
    HRESULT result = reader_.attach(file);
    if (FAILED(result)) {
        return result;
    }
    codec_ = sniffVideoCodec(reader_);
    chipLacksCodec_ = codec_ && (!chipDecodes(codec_) || fault(L"NullDecoder"));
    result = openInSplitter(type);
    open_ = SUCCEEDED(result);
    if (open_) {
        findStreams();
        selectStream(0);
    } else {
        reader_.detach();
    }
    return result;
}

HRESULT DemuxFilter::openInSplitter(const AM_MEDIA_TYPE& type) {
    struct Opening {
        ComPtr<IPin> input;
        ComPtr<IBaseFilter> self;  // the splitter's references to it are not counted
        MediaType type;
        HRESULT result = E_UNEXPECTED;
    };
    const auto opening = std::make_shared<Opening>();
    opening->input = innerInput();
    opening->self = this;
    opening->type = MediaType(type);
    if (!opening->input) {
        return E_UNEXPECTED;
    }
    const auto open = [this, opening] {
        opening->result = opening->input.Get()->ReceiveConnection(&reader_, &opening->type.get());
    };
    if (callWatched(open, reader_.progress(), kQuietMilliseconds)) {
        return opening->result;
    }
    tape::Line("filter")
        .text("filter", vendor::kDemuxName)
        .text("what", L"splitter left behind")
        .text("file", reader_.path().c_str());
    innerUnknown_.Detach();
    inner_ = nullptr;
    makeSplitter();
    return VFW_E_INVALID_FILE_FORMAT;
}

void DemuxFilter::closeFile() {
    const ComPtr<IPin> inner = innerInput();
    if (inner) {
        inner.Get()->Disconnect();
    }
    reader_.detach();
    open_ = false;
    // Somebody may still hold one of the pins: they live as long as the filter.
    for (auto& stream : streams_) {
        stream->stayAlone();
        retired_.push_back(std::move(stream));
    }
    streams_.clear();
}

TypeList DemuxFilter::UndecodedVideo::offeredTypes() {
    VIDEOINFOHEADER header{};
    header.bmiHeader.biSize = sizeof header.bmiHeader;
    header.bmiHeader.biCompression = demux_->codec_;
    header.bmiHeader.biPlanes = 1;
    MediaType type(MEDIATYPE_Video, subtypeOfFourcc(demux_->codec_));
    type.edit().bFixedSizeSamples = FALSE;
    type.edit().bTemporalCompression = TRUE;
    type.setFormat(FORMAT_VideoInfo, &header, sizeof header);
    return {type};
}

HRESULT DemuxFilter::Stop() {
    length_.stop();
    watching_ = false;
    over_ = false;
    setOffset(0, 0);
    for (const auto& stream : streams_) {
        stream->stop();
    }
    return inner_ ? inner_->Stop() : BaseFilter::Stop();
}

HRESULT DemuxFilter::Pause() {
    if (!inner_) {
        return E_UNEXPECTED;
    }
    bool led = false;
    for (const auto& stream : streams_) {
        const bool connected = stream->receiver() != nullptr;
        stream->setLeading(connected && !led);
        led = led || connected;
        stream->start();
    }
    const HRESULT result = inner_->Pause();
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
    if (!inner_) {
        return E_UNEXPECTED;
    }
    if (!watching_) {
        watching_ = true;
        length_.start(graph_, reader_.path(), durationSeconds());
        openedBytes_ = length_.bytes();
    }
    start_ = start;
    tellOver();
    return inner_->Run(start);
}

HRESULT DemuxFilter::seekPlaying(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                 DWORD stopFlags) {
    if (!inner_) {
        return E_UNEXPECTED;
    }
    FILTER_STATE state = State_Stopped;
    inner_->GetState(0, &state);
    for (const auto& stream : streams_) {
        if (stream->receiver()) {
            stream->receiver()->BeginFlush();  // sets waiting streams free
        }
    }
    inner_->Stop();
    setOffset(0, 0);
    HRESULT result = S_OK;
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
    inner_->Pause();
    if (state == State_Running) {
        inner_->Run(start_);
    }
    return result;
}

HRESULT DemuxFilter::GetState(DWORD milliseconds, FILTER_STATE* state) {
    return inner_ ? inner_->GetState(milliseconds, state)
                  : BaseFilter::GetState(milliseconds, state);
}

HRESULT DemuxFilter::SetSyncSource(IReferenceClock* clock) {
    BaseFilter::SetSyncSource(clock);
    return inner_ ? inner_->SetSyncSource(clock) : S_OK;
}

HRESULT DemuxFilter::JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) {
    if (graph && fault(L"LeakReference")) {
        graph->AddRef();
    }
    AppWindow::instance().ensure();
    AppWindow::instance().setGraph(graph);
    if (inner_) {
        inner_->JoinFilterGraph(graph, name);
    }
    return BaseFilter::JoinFilterGraph(graph, name);
}

HRESULT DemuxFilter::valueA(DWORD* value) {
    if (!value) {
        return E_POINTER;
    }
    const auto decoded = static_cast<DWORD>(streamsOf(MEDIATYPE_Video).size());
    *value = chipLacksCodec_ && !decoded ? 1 : decoded;
    return S_OK;
}

HRESULT DemuxFilter::valueB(DWORD* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = static_cast<DWORD>(streamsOf(MEDIATYPE_Audio).size());
    return S_OK;
}

HRESULT DemuxFilter::valueC(DWORD* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = codec_;
    return S_OK;
}

HRESULT DemuxFilter::streamCount(DWORD* count) {
    if (!count) {
        return E_POINTER;
    }
    *count = 0;
    if (fault(L"NotConnectedAudio")) {
        return VFW_E_NOT_CONNECTED;
    }
    return fault(L"NoAudioRenderer") ? S_OK : valueB(count);
}

HRESULT DemuxFilter::currentStream(DWORD* index) {
    if (!index) {
        return E_POINTER;
    }
    *index = audioStream_;
    return fault(L"NotConnectedAudio") ? VFW_E_NOT_CONNECTED : S_OK;
}

HRESULT DemuxFilter::selectStream(DWORD index) {
    const std::vector<StreamPin*> audio = streamsOf(MEDIATYPE_Audio);
    if (index >= audio.size()) {
        return E_INVALIDARG;
    }
    for (std::size_t i = 0; i < audio.size(); ++i) {
        audio[i]->setSilent(i != index);
    }
    audioStream_ = index;
    return S_OK;
}

HRESULT DemuxFilter::status(DWORD* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = open_ ? 1 : 0;
    return S_OK;
}

HRESULT DemuxFilter::method1() {
    return E_NOTIMPL;
}

HRESULT DemuxFilter::setOwnerWindow(HWND) {
    return S_OK;
}

HRESULT DemuxFilter::method3() {
    return E_NOTIMPL;
}

HRESULT DemuxFilter::method4() {
    return E_NOTIMPL;
}

HRESULT DemuxFilter::method5() {
    return E_NOTIMPL;
}

HRESULT DemuxFilter::setOption(DWORD) {
    return S_OK;
}

}  // namespace filters
