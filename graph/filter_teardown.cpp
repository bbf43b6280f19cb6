// Taking the graph apart.
#include <algorithm>
#include <memory>
#include <new>

#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "platform/print.h"
#include "platform/text.h"
#include "platform/wide.h"

void CFilterControl::DeleteFilters() {
    if (!graph_) {
        return;
    }
    if (mediaEvents_) {
        mediaEvents_->SetNotifyWindow(0, kGraphEventMessage, 0);
    }
    captionParser_.reset();
    captionSource_.reset();
    captionRenderer_.reset();
    captionsOn_ = 0;
    if (audioRenderer_) {
        platform::print("DeleteFilters() - Audio Renderer\n");
        graph_->RemoveFilter(audioRenderer_.get());
        audioRenderer_.reset();
    }
    if (const ComPtr<IBaseFilter> renderer = findFilter(vendor::kVideoRendererName)) {
        graph_->RemoveFilter(renderer.get());
    }
    removeAllFilters();
}

// The filters are taken out of the enumeration before the first is removed: removing one while
// others are connected makes an enumeration go stale.
void CFilterControl::removeAllFilters() {
    ComPtr<IEnumFilters> enumerator;
    if (FAILED(graph_->EnumFilters(enumerator.out()))) {
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
            platform::print("DeleteFilters() - %s\r\n",
                            platform::toUtf8(platform::utf16(info.name())).c_str());
        }
        graph_->RemoveFilter(filters[i].get());
        filters[i].reset();
    }
}

void CFilterControl::DestroyFilterGraph() {
    if (!graph_) {
        buildingState_ = kIdle;
        return;
    }
    audioStreamFilter_.reset();
    demuxSecond_.reset();
    demux_.reset();
    mediaEvents_.reset();
    mediaControl_.reset();
    mediaSeeking_.reset();
    ComPtr<IGraphBuilder> counted = graph_;
    const ULONG remaining = counted.reset();
    if (remaining > 1) {
        platform::print("\t\t DestroyFilterGraph::RemindRef=%d\n", static_cast<int>(remaining));
    }
    graph_.reset();
    running_ = 0;
    buildingState_ = kIdle;
}
