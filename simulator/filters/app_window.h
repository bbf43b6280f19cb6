// A message-only window on the application's thread: through it the unit's tools put events into
// the graph that is playing and ask how loud it is, and filters get a timer on that thread. What it
// takes: simulator/shared/filters_window.h.
#pragma once

#include <dshow.h>

#include <vector>

namespace filters {

class TickListener {
public:
    // Called on the application's thread.
    virtual void tick() = 0;

protected:
    ~TickListener() = default;
};

class AppWindow {
public:
    static AppWindow& instance();

    // Makes the window when there is none; called on the application's thread.
    void ensure();
    // The graph that injected events go to, not counted; null when it goes away.
    void setGraph(IFilterGraph* graph) { graph_ = graph; }
    // A call every `milliseconds` until stopTicks. Does nothing without the window.
    void startTicks(TickListener* listener, UINT milliseconds);
    void stopTicks(TickListener* listener);

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    LRESULT inject(LONG code, LONG_PTR parameter);
    LRESULT volume() const;
    void dispatch(UINT_PTR timer);

    HWND window_ = nullptr;
    IFilterGraph* graph_ = nullptr;
    std::vector<TickListener*> listeners_;
};

// Puts an event into the queue of `graph` and onto the tape; S_FALSE without a graph.
HRESULT sendGraphEvent(IFilterGraph* graph, LONG code, LONG_PTR first, LONG_PTR second);

}  // namespace filters
