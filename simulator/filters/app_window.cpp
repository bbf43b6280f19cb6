#include "simulator/filters/app_window.h"

#include <wrl/client.h>

#include <algorithm>

#include "simulator/filters/module.h"
#include "simulator/shared/filters_window.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

UINT injectMessage() {
    static const UINT message = RegisterWindowMessageW(headunit::kGraphEventMessage);
    return message;
}
UINT volumeMessage() {
    static const UINT message = RegisterWindowMessageW(headunit::kGraphVolumeMessage);
    return message;
}

}  // namespace

HRESULT sendGraphEvent(IFilterGraph* graph, LONG code, LONG_PTR first, LONG_PTR second) {
    Microsoft::WRL::ComPtr<IMediaEventSink> sink;
    if (!graph || FAILED(graph->QueryInterface(IID_PPV_ARGS(&sink)))) {
        return S_FALSE;
    }
    tape::Line("event")
        .text("from", L"filters")
        .number("code", code)
        .number("param1", first)
        .number("param2", second);
    return sink->Notify(code, first, second);
}

AppWindow& AppWindow::instance() {
    static AppWindow* window = new AppWindow;
    return *window;
}

void AppWindow::ensure() {
    if (window_) {
        return;
    }
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = moduleHandle();
    windowClass.lpszClassName = headunit::kFiltersWindow;
    RegisterClassW(&windowClass);
    injectMessage();
    volumeMessage();
    window_ = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                              nullptr, windowClass.hInstance, nullptr);
}

LRESULT CALLBACK AppWindow::procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    AppWindow& self = instance();
    if (message == injectMessage()) {
        return self.inject(static_cast<LONG>(w), l);
    }
    if (message == volumeMessage()) {
        return self.volume();
    }
    if (message == WM_TIMER) {
        self.dispatch(w);
        return 0;
    }
    if (message == WM_NCDESTROY) {
        self.window_ = nullptr;
    }
    return DefWindowProcW(window, message, w, l);
}

LRESULT AppWindow::inject(LONG code, LONG_PTR parameter) {
    return sendGraphEvent(graph_, code, parameter, 0) == S_OK ? 1 : 0;
}

LRESULT AppWindow::volume() const {
    Microsoft::WRL::ComPtr<IBasicAudio> audio;
    LONG hundredths = 0;
    const bool known = graph_ && SUCCEEDED(graph_->QueryInterface(IID_IBasicAudio, &audio)) &&
                       SUCCEEDED(audio->get_Volume(&hundredths));
    return known ? headunit::kQuietest + hundredths : 0;
}

void AppWindow::dispatch(UINT_PTR timer) {
    auto* listener = reinterpret_cast<TickListener*>(timer);
    if (std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end()) {
        listener->tick();
    }
}

void AppWindow::startTicks(TickListener* listener, UINT milliseconds) {
    if (window_ && SetTimer(window_, reinterpret_cast<UINT_PTR>(listener), milliseconds, nullptr)) {
        std::erase(listeners_, listener);
        listeners_.push_back(listener);
    }
}

void AppWindow::stopTicks(TickListener* listener) {
    if (std::erase(listeners_, listener) && window_) {
        KillTimer(window_, reinterpret_cast<UINT_PTR>(listener));
    }
}

}  // namespace filters
