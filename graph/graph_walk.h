// Walks over the filters of a graph, and the guards for what the walks hand out.
#pragma once

#include <dshow.h>

#include <array>

#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/wide.h"

namespace graph {

// What IBaseFilter::QueryFilterInfo gives; its reference to the graph is released at the end.
class FilterInfo {
public:
    explicit FilterInfo(IBaseFilter& filter) { filter.QueryFilterInfo(&info_); }
    ~FilterInfo() {
        if (info_.pGraph != nullptr) {
            info_.pGraph->Release();
        }
    }
    FilterInfo(const FilterInfo&) = delete;
    FilterInfo& operator=(const FilterInfo&) = delete;

    [[nodiscard]] const wchar_t* name() const { return info_.achName; }

private:
    FILTER_INFO info_{};
};

// The name of a filter as it is printed.
class PrintedName {
public:
    explicit PrintedName(const wchar_t* name) {
        platform::encodeUtf8(platform::utf16(name), text_);
    }
    [[nodiscard]] const char* text() const { return text_.data(); }

private:
    static constexpr std::size_t kLongestCharacter = 3;  // bytes of UTF-8 for a code unit
    std::array<char, MAX_FILTER_NAME * kLongestCharacter + 1> text_{};
};

enum class Walk { Continue, Stop };

// Calls visitor(IBaseFilter&) -> Walk for each filter in the graph's order until one stops the
// walk or there are no more.
template <typename Visitor>
void forEachFilter(IGraphBuilder* graph, Visitor visitor) {
    platform::ComPtr<IEnumFilters> filters;
    if (graph == nullptr || FAILED(graph->EnumFilters(filters.out()))) {
        return;
    }
    platform::ComPtr<IBaseFilter> filter;
    while (filters->Next(1, filter.out(), nullptr) == S_OK) {
        if (visitor(*filter.get()) == Walk::Stop) {
            return;
        }
    }
}

// The same for each filter that offers `iid`: visitor(Interface&) -> Walk.
template <typename Interface, typename Visitor>
void forEachInterface(IGraphBuilder* graph, REFIID iid, Visitor visitor) {
    forEachFilter(graph, [&](IBaseFilter& filter) {
        platform::ComPtr<Interface> wanted;
        return SUCCEEDED(filter.QueryInterface(iid, wanted.outVoid())) ? visitor(*wanted.get())
                                                                       : Walk::Continue;
    });
}

}  // namespace graph
