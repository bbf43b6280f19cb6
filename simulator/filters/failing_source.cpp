#include "simulator/filters/failing_source.h"

#include "simulator/tape/tape.h"

namespace filters {

FailingSource::FailingSource(HRESULT result) : BaseFilter(CLSID_AsyncReader), result_(result) {
}

void* FailingSource::findInterface(REFIID iid) {
    return iid == IID_IFileSourceFilter ? static_cast<IFileSourceFilter*>(this) : nullptr;
}

HRESULT FailingSource::Load(LPCOLESTR path, const AM_MEDIA_TYPE*) {
    tape::Line("filter")
        .text("filter", L"file source")
        .text("what", L"open failed by command")
        .text("path", path ? path : L"")
        .number("result", result_);
    return result_;
}

HRESULT FailingSource::GetCurFile(LPOLESTR*, AM_MEDIA_TYPE*) {
    return E_UNEXPECTED;
}

}  // namespace filters
