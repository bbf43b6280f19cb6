// What a CFilterControl holds of DirectShow while it has a graph: one owned reference each, made
// with the graph and released with it. Windows only; filter_control.h does not show it, so that
// what only uses the graph builds everywhere.
#pragma once

#include <dshow.h>

#include "platform/com_ptr.h"

namespace graph {

struct Interfaces {
    platform::ComPtr<IGraphBuilder> builder;
    platform::ComPtr<IMediaControl> control;
    platform::ComPtr<IMediaSeeking> seeking;
    platform::ComPtr<IMediaEventEx> events;
    platform::ComPtr<IBaseFilter> demux;
    platform::ComPtr<IBaseFilter> demuxSecond;  // the same filter, for its second vendor interface
    platform::ComPtr<IBaseFilter> audioRenderer;  // only one that CFilterControl added
    platform::ComPtr<IBaseFilter> captionSource;
    platform::ComPtr<IBaseFilter> captionParser;
    platform::ComPtr<IBaseFilter> captionRenderer;
    platform::ComPtr<IBaseFilter> audioStreamFilter;

    // Null without one or without a graph.
    [[nodiscard]] platform::ComPtr<IBaseFilter> findFilter(const wchar_t* name) const;
    // Under either of its names.
    [[nodiscard]] platform::ComPtr<IBaseFilter> findVideoRenderer() const;
};

}  // namespace graph
