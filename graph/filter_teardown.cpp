// Taking the graph apart.
#include <algorithm>
#include <memory>
#include <new>

#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "graph/interfaces.h"
#include "graph/vendor_interfaces.h"
#include "platform/print.h"

using platform::ComPtr;

namespace {

// The filters are taken out of the enumeration before the first is removed: removing one while
// others are connected makes an enumeration go stale.
void removeAllFilters(IGraphBuilder& graph) {
    ComPtr<IEnumFilters> enumerator;
    if (FAILED(graph.EnumFilters(enumerator.out()))) {
        return;
    }
    std::size_t count = 0;
    while (enumerator->Skip(1) == S_OK) {
        ++count;
    }
    enumerator->Reset();
    const std::unique_ptr<ComPtr<IBaseFilter>[]> filters(
        new (std::nothrow) ComPtr<IBaseFilter>[std::max<std::size_t>(count, 1)]);
    if (!filters) {
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (enumerator->Next(1, filters[i].out(), nullptr) != S_OK) {
            break;
        }
    }
    for (std::size_t i = 0; i < count && filters[i]; ++i) {
        {
            const graph::FilterInfo info(*filters[i].get());
            platform::print("DeleteFilters() - %s\r\n", graph::PrintedName(info.name()).text());
        }
        graph.RemoveFilter(filters[i].get());
        filters[i].reset();
    }
}

}  // namespace

void CFilterControl::Release::operator()(graph::Interfaces* held) const {
    delete held;
}

void CFilterControl::DeleteFilters() {
    if (!hasGraph()) {
        return;
    }
    if (held_->events) {
        held_->events->SetNotifyWindow(0, kGraphEventMessage, 0);
    }
    held_->captionParser.reset();
    held_->captionSource.reset();
    held_->captionRenderer.reset();
    captionsOn_ = 0;
    if (held_->audioRenderer) {
        platform::print("DeleteFilters() - Audio Renderer\n");
        held_->builder->RemoveFilter(held_->audioRenderer.get());
        held_->audioRenderer.reset();
    }
    if (const ComPtr<IBaseFilter> renderer = held_->findFilter(vendor::kVideoRendererName)) {
        held_->builder->RemoveFilter(renderer.get());
    }
    removeAllFilters(*held_->builder.get());
}

void CFilterControl::DestroyFilterGraph() {
    if (!hasGraph()) {
        buildingState_ = kIdle;
        return;
    }
    held_->audioStreamFilter.reset();
    held_->demuxSecond.reset();
    held_->demux.reset();
    held_->events.reset();
    held_->control.reset();
    held_->seeking.reset();
    ComPtr<IGraphBuilder> counted = held_->builder;
    const ULONG remaining = counted.reset();
    if (remaining > 1) {
        platform::print("\t\t DestroyFilterGraph::RemindRef=%d\n", static_cast<int>(remaining));
    }
    held_.reset();
    running_ = 0;
    buildingState_ = kIdle;
}
