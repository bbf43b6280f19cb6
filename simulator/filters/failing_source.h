// Stands in for the system's file reader while the fault RenderResult is set: opening any file
// fails with that result, which IGraphBuilder::RenderFile then returns. For this the library is
// registered as the reader's class; without the fault it hands out the system's own.
#pragma once

#include "simulator/filters/base_filter.h"

namespace filters {

class FailingSource final : public BaseFilter, public IFileSourceFilter {
public:
    explicit FailingSource(HRESULT result);

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR path, const AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR* path, AM_MEDIA_TYPE* type) override;

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override { return {}; }

private:
    ~FailingSource() override = default;

    const HRESULT result_;
};

}  // namespace filters
