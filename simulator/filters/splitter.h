// Wine's splitter, which the demultiplexer aggregates. What waits for a thread of its media library
// is asked of it on a thread of its own and for a limited time; when it does not answer, it is
// lost: it and everything that it uses stay alive for ever, and nothing is asked of it again.
//
// Application's thread only.
#pragma once

#include <functional>
#include <vector>

#include "simulator/filters/base_filter.h"
#include "simulator/filters/reader_pin.h"

namespace filters {

class Splitter {
public:
    // `outer` aggregates it, `reader` is what it reads from.
    Splitter(IBaseFilter* outer, ReaderPin* reader) : outer_(outer), reader_(reader) {}
    Splitter(const Splitter&) = delete;
    ~Splitter() { release(); }

    // Without GStreamer there is none.
    void make();
    void release();
    // Null when there is none, or none any more. Not counted: its references are the outer
    // filter's.
    IBaseFilter* get() const { return inner_; }
    // An interface of its own, counted; null when it has none such.
    void* query(REFIID iid);
    std::vector<ComPtr<IPin>> outputs() const { return pins(PINDIR_OUTPUT); }

    // S_OK, or why the file cannot be opened.
    HRESULT open(const AM_MEDIA_TYPE& type);
    void close();
    HRESULT stop();
    HRESULT pause();
    HRESULT run(REFERENCE_TIME start);

private:
    // The result of `call`, which may use nothing that does not live for ever; VFW_E_TIMEOUT when
    // the splitter was lost over it, E_UNEXPECTED without one.
    HRESULT watched(const wchar_t* what, std::function<HRESULT()> call);
    std::vector<ComPtr<IPin>> pins(PIN_DIRECTION direction) const;

    IBaseFilter* const outer_;
    ReaderPin* const reader_;
    ComPtr<IUnknown> unknown_;
    IBaseFilter* inner_ = nullptr;
};

}  // namespace filters
