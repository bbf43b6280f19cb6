// The library's exports: class objects, unloading, and registration with COM and with the
// filter mapper. The names given to the filter mapper are the names that the filters have in a
// graph that the graph builder makes.
#include <new>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/caption_parser.h"
#include "simulator/filters/caption_renderer.h"
#include "simulator/filters/class_ids.h"
#include "simulator/filters/demux_filter.h"
#include "simulator/filters/module.h"
#include "simulator/filters/null_decoder.h"
#include "simulator/filters/video_renderer.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

// Stands in for the system's file reader while the fault RenderResult is set: opening any file
// fails with that result, which IGraphBuilder::RenderFile then returns. For this the library is
// registered as the reader's class; without the fault it hands out the system's own.
class FailingSource final : public BaseFilter, public IFileSourceFilter {
public:
    explicit FailingSource(HRESULT result) : BaseFilter(CLSID_AsyncReader), result_(result) {}

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR path, const AM_MEDIA_TYPE*) override {
        tape::FilterLine(L"file source", L"open failed by command")
            .text("path", path)
            .number("result", result_);
        return result_;
    }
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR*, AM_MEDIA_TYPE*) override {
        return E_UNEXPECTED;
    }

protected:
    void* findInterface(REFIID iid) override {
        return iid == IID_IFileSourceFilter ? static_cast<IFileSourceFilter*>(this) : nullptr;
    }
    PinList pins() override { return {}; }

private:
    const HRESULT result_;
};

template <class Filter, class... Arguments>
BaseFilter* make(Arguments... arguments) {
    return new (std::nothrow) Filter(arguments...);
}

BaseFilter* createFilter(const CLSID& classId) {
    if (classId == kDemuxClass) {
        auto* demux = new (std::nothrow) DemuxFilter;
        if (demux && !demux->usable()) {
            demux->Release();
            return nullptr;
        }
        return demux;
    }
    if (classId == kVideoRendererClass) {
        return make<VideoRenderer>(classId, !tape::fault(L"SecondNameOnly"));
    }
    if (classId == kVideoRendererSecondClass) {
        return make<VideoRenderer>(classId, true);
    }
    if (classId == kNullVideoDecoderClass) {
        return make<NullDecoder>();
    }
    if (classId == CLSID_AsyncReader) {
        return make<FailingSource>(static_cast<HRESULT>(tape::fault(L"RenderResult")));
    }
    if (classId == vendor::kCaptionParserClass) {
        return make<CaptionParser>();
    }
    if (classId == vendor::kCaptionRendererClass) {
        return make<CaptionRenderer>();
    }
    return nullptr;
}

class Factory final : public Counted<IClassFactory> {
public:
    explicit Factory(const CLSID& classId) : classId_(classId) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        *out = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        BaseFilter* filter = createFilter(classId_);
        if (!filter) {
            return E_OUTOFMEMORY;
        }
        const HRESULT result = filter->QueryInterface(iid, out);
        filter->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    const CLSID classId_;
};

// The class object of the system's own file reader.
HRESULT systemReader(REFIID iid, void** out) {
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    const HMODULE library = LoadLibraryW(L"quartz.dll");
    const auto get = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(library ? GetProcAddress(library, "DllGetClassObject") : nullptr));
    return get ? get(CLSID_AsyncReader, iid, out) : CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace

}  // namespace filters

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** out) {
    *out = nullptr;
    if (classId == CLSID_AsyncReader) {
        filters::DemuxFilter::expectFile();
    }
    if (classId == CLSID_AsyncReader &&
        SUCCEEDED(static_cast<HRESULT>(tape::fault(L"RenderResult")))) {
        return filters::systemReader(iid, out);
    }
    if (classId != CLSID_AsyncReader && !filters::isOwnClass(classId)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    auto* factory = new (std::nothrow) filters::Factory(classId);
    if (!factory) {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = factory->QueryInterface(iid, out);
    factory->Release();
    return result;
}

// It stays: threads of the media library may come back to it at any time.
STDAPI DllCanUnloadNow() {
    return S_FALSE;
}

STDAPI DllRegisterServer() {
    return filters::registerAll();
}
