// What the tests need of an application: a window that paints the colour key, a graph built the
// way the player builds it, and a look at the screen. One thread; a test pumps messages by wait().
#pragma once

#include <dshow.h>
#include <windows.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

#include "graph/vendor_interfaces.h"

namespace test {

using Microsoft::WRL::ComPtr;

// A full path of a recording made for the tests.
std::wstring clip(const wchar_t* name);

// A window titled "Video", 800 x 480 at (0, 0), that paints the key everywhere but in a dark bar of
// 60 pixels at its lower edge.
class PlayerWindow {
public:
    PlayerWindow();
    ~PlayerWindow();
    PlayerWindow(const PlayerWindow&) = delete;

    HWND window() const { return window_; }
    // Handles messages for so long, or until `done` says so; whether it did.
    bool wait(DWORD milliseconds, const std::function<bool()>& done = nullptr);

    std::vector<POINT> touches;  // WM_LBUTTONDOWN, client coordinates
    int readFailures = 0;        // of the demultiplexer
    struct Event {
        long code;
        LONG_PTR first, second;
    };
    std::vector<Event> events;  // of `graph`, collected while waiting
    IMediaEventEx* graphEvents = nullptr;

    int countEvents(long code) const;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    void collectEvents();

    HWND window_;
};

// The colour of a pixel of the screen.
COLORREF screenPixel(int x, int y);
// Whether two colours are the same but for what video coding changes.
bool alike(COLORREF a, COLORREF b, int tolerance = 24);

// A graph for one file.
class Graph {
public:
    explicit Graph(PlayerWindow& player);
    ~Graph();
    Graph(const Graph&) = delete;

    HRESULT render(const std::wstring& path);
    // Hands out the owner window and places the picture, as the player does after building.
    void setUp(const RECT& output = {0, 0, 800, 480});
    bool run();
    void pause();
    void stop();
    void seek(double seconds);
    double position();
    double duration();
    std::vector<std::wstring> names();
    bool has(const wchar_t* name);
    ComPtr<IBaseFilter> find(const wchar_t* name);
    // The interface `iid` of the first filter that has it; null when none does.
    template <class Interface>
    ComPtr<Interface> vendorInterface(const IID& iid) {
        ComPtr<Interface> found;
        forEach([&](IBaseFilter* filter) {
            if (!found) {
                filter->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf()));
            }
        });
        return found;
    }
    void forEach(const std::function<void(IBaseFilter*)>& visitor);
    // Adds the caption chain over a subtitle file; the result of rendering the parser's output.
    HRESULT addCaptions(const std::wstring& path, DWORD type);
    // Removes all filters and releases the graph: the references left.
    ULONG tearDown();

    IGraphBuilder* builder() { return builder_.Get(); }

private:
    PlayerWindow& player_;
    ComPtr<IGraphBuilder> builder_;
    ComPtr<IMediaControl> control_;
    ComPtr<IMediaEventEx> events_;
};

// Sets a fault of the filters for the length of a scope.
class Fault {
public:
    Fault(const wchar_t* name, DWORD value);
    ~Fault();
    Fault(const Fault&) = delete;

private:
    const wchar_t* name_;
};

}  // namespace test
