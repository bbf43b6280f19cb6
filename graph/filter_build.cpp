// Building: the graph, the subtitles, and what is read from the vendor's filters.
#include <array>
#include <bit>
#include <cwchar>

#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "platform/board.h"
#include "platform/folder.h"
#include "platform/print.h"
#include "platform/text.h"
#include "platform/wide.h"

using graph::Walk;

namespace {

// In the order in which they are tried; the index is the parser's subtitle type.
constexpr std::array<const wchar_t*, 4> kSubtitleExtensions = {L"smi", L"srt", L"sub", L"ssa"};

using PathBuffer = std::array<wchar_t, platform::kPathCapacity>;

// `path` with the text behind its last "." replaced. False when it has none or grows too long.
bool withExtension(const wchar_t* path, const wchar_t* extension, PathBuffer& out) {
    const wchar_t* const dot = std::wcsrchr(path, L'.');
    if (dot == nullptr) {
        return false;
    }
    const auto stem = static_cast<std::size_t>(dot - path) + 1;
    if (stem + std::wcslen(extension) >= out.size()) {
        return false;
    }
    std::wmemcpy(out.data(), path, stem);
    std::wcscpy(out.data() + stem, extension);
    return true;
}

}  // namespace

int CFilterControl::createObject(REFCLSID classId, REFIID iid, void** object,
                                 const wchar_t* failure, HRESULT& result) {
    if (FAILED(result)) {
        return 0;
    }
    result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, iid, object);
    if (SUCCEEDED(result)) {
        return 1;
    }
    const auto words = std::bit_cast<std::array<unsigned long, 4>>(classId);
    constexpr std::size_t kLongestText = 128;
    std::array<wchar_t, kLongestText> text{};
    _snwprintf(text.data(), text.size() - 1, L"[FAIL]CoCreateInstance(%lx%lx%lx%lx), %ls", words[0],
               words[1], words[2], words[3], failure);
    platform::showMessageBox(window_, text.data(), L"TCCAMManger", MB_OK, 1);
    platform::print("[FAIL]CoCreateInstance(%lx%lx%lx%lx) hr=%lx\r\n", words[0], words[1], words[2],
                    words[3], static_cast<unsigned long>(result));
    return 0;
}

int CFilterControl::addFilter(IBaseFilter* filter, const wchar_t* name, HRESULT& result) {
    if (FAILED(result)) {
        return 0;
    }
    result = graph_->AddFilter(filter, name);
    if (SUCCEEDED(result)) {
        return 1;
    }
    platform::print("[FAIL]AddFilter %s\n", platform::toUtf8(platform::utf16(name)).c_str());
    return 0;
}

// The result is that of creating the graph: what a graph lacks does not keep it from being built.
HRESULT CFilterControl::createGraph() {
    HRESULT result = S_OK;
    if (!createObject(CLSID_FilterGraph, IID_IGraphBuilder, graph_.outVoid(),
                      L"CLSID_FilterGraph fail", result)) {
        return result;
    }
    mediaControl_ = graph_.query<IMediaControl>(IID_IMediaControl);
    if (mediaControl_) {
        mediaSeeking_ = mediaControl_.query<IMediaSeeking>(IID_IMediaSeeking);
    } else {
        platform::print("ERROR: m_pMC=NULL\r\n");
    }
    return result;
}

platform::ComPtr<IBaseFilter> CFilterControl::findFilter(const wchar_t* name) {
    ComPtr<IBaseFilter> filter;
    if (graph_ && FAILED(graph_->FindFilterByName(name, filter.out()))) {
        filter.reset();
    }
    return filter;
}

int CFilterControl::CreateFilterForPlaying(const wchar_t* path, int x, int y, int width, int height,
                                           HWND window) {
    buildingState_ = kBuilding;
    if (graph_) {
        buildingState_ = kIdle;
        return kGraphFailed;
    }
    window_ = window;
    const HRESULT created = createGraph();
    lastRenderResult_ = graph_ ? graph_->RenderFile(path, nullptr) : created;
    if (FAILED(lastRenderResult_)) {
        buildingState_ = kIdle;
        return kGraphFailed;
    }
    connectExternalSubtitles(path);
    readDemuxValues();
    const HRESULT audioStreams = readAudioStreams();

    int result = SetModeFlag(x, y, width, height);
    SetRendererChromakeyValue(chromaKey_[0], chromaKey_[1], chromaKey_[2]);
    if (chromaKeyFlag_ != 0) {
        SetRender(0);
    }
    if (audioStreams == VFW_E_NOT_CONNECTED) {
        result = kGraphPartlyConnected;
    }

    mediaEvents_ = graph_.query<IMediaEventEx>(IID_IMediaEventEx);
    if (mediaEvents_) {
        mediaEvents_->SetNotifyWindow(reinterpret_cast<OAHWND>(window), kGraphEventMessage, 0);
    }
    buildingState_ = kIdle;
    return result;
}

void CFilterControl::connectExternalSubtitles(const wchar_t* path) {
    PathBuffer subtitlePath{};
    for (DWORD type = 0; type < kSubtitleExtensions.size(); ++type) {
        if (withExtension(path, kSubtitleExtensions[type], subtitlePath) &&
            platform::pathKind(platform::utf16(subtitlePath.data())) != 0) {
            if (FAILED(buildCaptionChain(subtitlePath.data(), type))) {
                removeCaptionChain();
            }
            return;
        }
    }
}

// The result is that of rendering the captions; what fails before shows there as well.
HRESULT CFilterControl::buildCaptionChain(const wchar_t* subtitlePath, DWORD type) {
    HRESULT result = S_OK;
    createObject(CLSID_AsyncReader, IID_IBaseFilter, captionSource_.outVoid(),
                 L"CLSID_AsyncReader fail", result);
    createObject(vendor::kCaptionParserClass, IID_IBaseFilter, captionParser_.outVoid(),
                 L"CLSID_TCCCAPTIONPARSER fail", result);
    createObject(vendor::kCaptionRendererClass, IID_IBaseFilter, captionRenderer_.outVoid(),
                 L"CLSID_TCCCAPTIONRENDERER fail", result);
    addFilter(captionParser_.get(), vendor::kCaptionParserName, result);
    addFilter(captionRenderer_.get(), vendor::kCaptionRendererName, result);
    if (SUCCEEDED(result)) {
        // The graph makes the source for the file itself; it takes the place of ours.
        result =
            graph_->AddSourceFilter(subtitlePath, vendor::kCaptionSourceName, captionSource_.out());
    }
    if (SUCCEEDED(result) && captionParser_) {
        describeSubtitles(type);
    }
    return renderCaptions();
}

void CFilterControl::describeSubtitles(DWORD type) {
    const auto control =
        captionParser_.query<vendor::CaptionParserControl>(vendor::kCaptionParserControl);
    if (!control) {
        return;
    }
    control->setSubtitleType(type);
    const auto position =
        graph_.query<IMediaControl>(IID_IMediaControl).query<IMediaPosition>(IID_IMediaPosition);
    if (position) {
        double seconds = 0;
        position->get_Duration(&seconds);
        control->setDuration(seconds);
    }
    captionsOn_ = 1;
}

HRESULT CFilterControl::renderCaptions() {
    ComPtr<IPin> sourceOutput, parserInput, parserOutput;
    if (captionSource_) {
        captionSource_->FindPin(L"Output", sourceOutput.out());
    }
    if (captionParser_) {
        captionParser_->FindPin(L"Input", parserInput.out());
        captionParser_->FindPin(L"Output", parserOutput.out());
    }
    if (sourceOutput && parserInput) {
        graph_->ConnectDirect(sourceOutput.get(), parserInput.get(), nullptr);
    }
    return parserOutput ? graph_->Render(parserOutput.get()) : E_FAIL;
}

void CFilterControl::removeCaptionChain() {
    platform::print("[%s]ExtCaption Rendering Fail\n", "CFilterControl::CreateFilterForPlaying");
    for (ComPtr<IBaseFilter>* filter : {&captionSource_, &captionParser_, &captionRenderer_}) {
        if (*filter) {
            graph_->RemoveFilter(filter->get());
            filter->reset();
        }
    }
    captionsOn_ = 0;
}

void CFilterControl::readDemuxValues() {
    demuxFlag_ = 0;
    demux_ = findFilter(vendor::kDemuxName);
    if (const auto values = demux_.query<vendor::DemuxValues>(vendor::kDemuxValues)) {
        values->valueA(&demuxValueA_);
        values->valueB(&demuxValueB_);
        demuxFlag_ = demuxValueA_ != 0 ? 1 : 0;
    }

    SelectAudioStream(pendingAudioStream_);

    demuxValueC_ = 0;
    demuxSecond_ = findFilter(vendor::kDemuxName);
    if (const auto options = demuxSecond_.query<vendor::DemuxOptions>(vendor::kDemuxOptions)) {
        options->valueC(&demuxValueC_);
    }
}

// Result of the last call made, as that is what tells an unconnected stream.
HRESULT CFilterControl::readAudioStreams() {
    m_TotalAudioStreamNum = 0;
    currentAudioStream_ = 0;
    HRESULT last = S_FALSE;
    graph::forEachFilter(graph_.get(), [&](IBaseFilter& filter) {
        ComPtr<vendor::AudioStreams> streams;
        last = filter.QueryInterface(vendor::kAudioStreams, streams.outVoid());
        if (FAILED(last)) {
            return Walk::Continue;
        }
        filter.QueryInterface(IID_IBaseFilter, audioStreamFilter_.outVoid());
        streams->streamCount(&m_TotalAudioStreamNum);
        last = streams->currentStream(&currentAudioStream_);
        return Walk::Stop;
    });
    return last;
}
