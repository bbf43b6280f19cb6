// The yardstick of opening a file: `bare_player FILE SECONDS` renders and runs it with whatever
// filters are registered, at the size and place of the unit's screen, twice with a pause, and
// prints the tick count just before each time.
#include <dshow.h>

#include <cstdio>
#include <cstdlib>

namespace {

void pump(DWORD milliseconds) {
    const DWORD start = GetTickCount();
    MSG message;
    for (DWORD spent = 0; spent < milliseconds; spent = GetTickCount() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - spent, QS_ALLINPUT);
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
    }
}

bool play(const wchar_t* file, DWORD milliseconds) {
    IGraphBuilder* graph = nullptr;
    IMediaControl* control = nullptr;
    IVideoWindow* window = nullptr;
    std::printf("%llu\n", GetTickCount64());
    std::fflush(stdout);
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                reinterpret_cast<void**>(&graph)))) {
        return false;
    }
    const bool done =
        SUCCEEDED(graph->RenderFile(file, nullptr)) &&
        SUCCEEDED(graph->QueryInterface(IID_IVideoWindow, reinterpret_cast<void**>(&window))) &&
        SUCCEEDED(window->put_WindowStyle(WS_POPUP)) &&
        SUCCEEDED(window->SetWindowPosition(0, 0, 800, 480)) &&
        SUCCEEDED(graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control))) &&
        SUCCEEDED(control->Run());
    pump(milliseconds);
    if (control) {
        control->Stop();
        control->Release();
    }
    if (window) {
        window->Release();
    }
    graph->Release();
    return done;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        std::fputs("usage: bare_player FILE SECONDS\n", stderr);
        return 2;
    }
    CoInitialize(nullptr);
    const DWORD milliseconds = 1000 * static_cast<DWORD>(_wtoi(arguments[2]));
    const bool first = play(arguments[1], milliseconds);
    pump(milliseconds);
    return first && play(arguments[1], milliseconds) ? 0 : 1;
}
