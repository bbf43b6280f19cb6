// Building: the graph, the subtitles, and what is read from the vendor's filters.
#include <array>
#include <bit>
#include <cwchar>
#include <new>
#include <utility>

#include "graph/build_steps.h"
#include "graph/graph_walk.h"
#include "graph/vendor_interfaces.h"
#include "platform/board.h"
#include "platform/folder.h"
#include "platform/print.h"
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

int CFilterControl::Steps::createObject(REFCLSID classId, REFIID iid, void** object,
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
    if (of.boxOpens_ != nullptr) {
        of.boxOpens_();
    }
    platform::showMessageBox(of.window_, platform::utf16(text.data()), u"TCCAMManger", 0, 1);
    platform::print("[FAIL]CoCreateInstance(%lx%lx%lx%lx) hr=%lx\r\n", words[0], words[1], words[2],
                    words[3], static_cast<unsigned long>(result));
    return 0;
}

int CFilterControl::Steps::addFilter(IBaseFilter* filter, const wchar_t* name, HRESULT& result) {
    if (FAILED(result)) {
        return 0;
    }
    result = of.held_->builder->AddFilter(filter, name);
    if (SUCCEEDED(result)) {
        return 1;
    }
    platform::print("[FAIL]AddFilter %s\n", graph::PrintedName(name).text());
    return 0;
}

// The result is that of creating the graph: what a graph lacks does not keep it from being built.
HRESULT CFilterControl::Steps::createGraph() {
    HRESULT result = S_OK;
    platform::ComPtr<IGraphBuilder> builder;
    if (!createObject(CLSID_FilterGraph, IID_IGraphBuilder, builder, L"CLSID_FilterGraph fail",
                      result)) {
        return result;
    }
    graph::Interfaces& held = *of.held_;
    held.builder = std::move(builder);
    held.control = held.builder.query<IMediaControl>(IID_IMediaControl);
    if (held.control) {
        held.seeking = held.control.query<IMediaSeeking>(IID_IMediaSeeking);
    } else {
        platform::print("ERROR: m_pMC=NULL\r\n");
    }
    return result;
}

int CFilterControl::CreateFilterForPlaying(const char16_t* path, int x, int y, int width,
                                           int height, platform::Window window) {
    buildingState_ = kBuilding;
    if (hasGraph()) {
        buildingState_ = kIdle;
        return kGraphFailed;
    }
    window_ = window;
    held_.reset(new (std::nothrow) graph::Interfaces);
    ++graphsMade_;
    Steps steps(*this);
    const HRESULT created = held_ ? steps.createGraph() : E_OUTOFMEMORY;
    if (held_ && steps.overtaken()) {
        return kGraphOvertaken;
    }
    const HRESULT rendered =
        hasGraph() ? held_->builder->RenderFile(platform::wide(path), nullptr) : created;
    if (FAILED(rendered)) {
        lastRenderResult_ = rendered;
        buildingState_ = kIdle;
        return kGraphFailed;
    }
    steps.connectExternalSubtitles(path);
    if (steps.overtaken()) {
        return kGraphOvertaken;
    }
    steps.readDemuxValues();
    const HRESULT audioStreams = steps.readAudioStreams();

    int result = SetModeFlag(x, y, width, height);
    SetRendererChromakeyValue(chromaKey_[0], chromaKey_[1], chromaKey_[2]);
    if (chromaKeyFlag_ != 0) {
        SetRender(0);
    }
    if (audioStreams == VFW_E_NOT_CONNECTED) {
        result = kGraphPartlyConnected;
    }

    held_->events = held_->builder.query<IMediaEventEx>(IID_IMediaEventEx);
    if (held_->events) {
        held_->events->SetNotifyWindow(reinterpret_cast<OAHWND>(window), kGraphEventMessage, 0);
    }
    buildingState_ = kIdle;
    return result;
}

void CFilterControl::Steps::connectExternalSubtitles(const char16_t* path) {
    PathBuffer subtitlePath{};
    for (DWORD type = 0; type < kSubtitleExtensions.size(); ++type) {
        if (withExtension(platform::wide(path), kSubtitleExtensions[type], subtitlePath) &&
            platform::pathKind(platform::utf16(subtitlePath.data())) != 0) {
            if (FAILED(buildCaptionChain(subtitlePath.data(), type)) && !overtaken()) {
                removeCaptionChain();
            }
            return;
        }
    }
}

// The result is that of rendering the captions; what fails before shows there as well.
HRESULT CFilterControl::Steps::buildCaptionChain(const wchar_t* subtitlePath, DWORD type) {
    HRESULT result = S_OK;
    platform::ComPtr<IBaseFilter> source, parser, renderer;
    createObject(CLSID_AsyncReader, IID_IBaseFilter, source, L"CLSID_AsyncReader fail", result);
    createObject(vendor::kCaptionParserClass, IID_IBaseFilter, parser,
                 L"CLSID_TCCCAPTIONPARSER fail", result);
    createObject(vendor::kCaptionRendererClass, IID_IBaseFilter, renderer,
                 L"CLSID_TCCCAPTIONRENDERER fail", result);
    if (overtaken()) {
        return E_ABORT;
    }
    graph::Interfaces& held = *of.held_;
    held.captionSource = std::move(source);
    held.captionParser = std::move(parser);
    held.captionRenderer = std::move(renderer);
    addFilter(held.captionParser.get(), vendor::kCaptionParserName, result);
    addFilter(held.captionRenderer.get(), vendor::kCaptionRendererName, result);
    if (SUCCEEDED(result)) {
        // The graph makes the source for the file itself; it takes the place of ours.
        result = held.builder->AddSourceFilter(subtitlePath, vendor::kCaptionSourceName,
                                               held.captionSource.out());
    }
    if (SUCCEEDED(result) && held.captionParser) {
        describeSubtitles(type);
    }
    return renderCaptions();
}

void CFilterControl::Steps::describeSubtitles(DWORD type) {
    const auto control =
        of.held_->captionParser.query<vendor::CaptionParserControl>(vendor::kCaptionParserControl);
    if (!control) {
        return;
    }
    control->setSubtitleType(type);
    const auto position = of.held_->builder.query<IMediaControl>(IID_IMediaControl)
                              .query<IMediaPosition>(IID_IMediaPosition);
    if (position) {
        double seconds = 0;
        position->get_Duration(&seconds);
        control->setDuration(seconds);
    }
    of.captionsOn_ = 1;
}

HRESULT CFilterControl::Steps::renderCaptions() {
    platform::ComPtr<IPin> sourceOutput, parserInput, parserOutput;
    if (of.held_->captionSource) {
        of.held_->captionSource->FindPin(L"Output", sourceOutput.out());
    }
    if (of.held_->captionParser) {
        of.held_->captionParser->FindPin(L"Input", parserInput.out());
    }
    if (sourceOutput && parserInput) {
        of.held_->builder->ConnectDirect(sourceOutput.get(), parserInput.get(), nullptr);
    }
    if (of.held_->captionParser) {
        // A parser may have this pin only once it is connected.
        of.held_->captionParser->FindPin(L"Output", parserOutput.out());
    }
    return parserOutput ? of.held_->builder->Render(parserOutput.get()) : E_FAIL;
}

void CFilterControl::Steps::removeCaptionChain() {
    platform::print("[%s]ExtCaption Rendering Fail\n", "CFilterControl::CreateFilterForPlaying");
    for (platform::ComPtr<IBaseFilter>* filter :
         {&of.held_->captionSource, &of.held_->captionParser, &of.held_->captionRenderer}) {
        if (*filter) {
            of.held_->builder->RemoveFilter(filter->get());
            filter->reset();
        }
    }
    of.captionsOn_ = 0;
}

void CFilterControl::Steps::readDemuxValues() {
    of.demuxFlag_ = 0;
    of.demuxValueA_ = of.demuxValueB_ = 0;
    of.held_->demux = of.held_->findFilter(vendor::kDemuxName);
    if (const auto values = of.held_->demux.query<vendor::DemuxValues>(vendor::kDemuxValues)) {
        DWORD a = 0, b = 0;
        values->valueA(&a);
        values->valueB(&b);
        of.demuxValueA_ = a;
        of.demuxValueB_ = b;
        of.demuxFlag_ = of.demuxValueA_ != 0 ? 1 : 0;
    }

    of.SelectAudioStream(of.pendingAudioStream_);

    of.demuxValueC_ = 0;
    of.held_->demuxSecond = of.held_->findFilter(vendor::kDemuxName);
    if (const auto options =
            of.held_->demuxSecond.query<vendor::DemuxOptions>(vendor::kDemuxOptions)) {
        DWORD c = 0;
        options->valueC(&c);
        of.demuxValueC_ = c;
    }
}

// Result of the last call made, as that is what tells an unconnected stream.
HRESULT CFilterControl::Steps::readAudioStreams() {
    DWORD count = 0, current = 0;
    HRESULT last = S_FALSE;
    graph::forEachFilter(of.builder(), [&](IBaseFilter& filter) {
        platform::ComPtr<vendor::AudioStreams> streams;
        last = filter.QueryInterface(vendor::kAudioStreams, streams.outVoid());
        if (FAILED(last)) {
            return Walk::Continue;
        }
        filter.QueryInterface(IID_IBaseFilter, of.held_->audioStreamFilter.outVoid());
        streams->streamCount(&count);
        last = streams->currentStream(&current);
        return Walk::Stop;
    });
    of.m_TotalAudioStreamNum = count;
    of.currentAudioStream_ = current;
    return last;
}
