// The yardstick: opens recordings one after the other in a bare graph, as the player's graphs are
// opened but without the player, and prints what this program holds after 20 of them and at the
// end. Usage: bare_graph.exe TIMES FILE...
#include <dshow.h>

#include <cstdio>
#include <cwchar>

#include "tests/soak/figures.h"

namespace {

constexpr long kFirst = 20;  // files that may still allocate
constexpr DWORD kPlayMilliseconds = 600;

void play(const wchar_t* file) {
    IGraphBuilder* graph = nullptr;
    IMediaControl* control = nullptr;
    if (FAILED(CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                                reinterpret_cast<void**>(&graph)))) {
        return;
    }
    if (SUCCEEDED(graph->RenderFile(file, nullptr)) &&
        SUCCEEDED(graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control)))) {
        control->Run();
        Sleep(kPlayMilliseconds);
        control->Stop();
        control->Release();
    }
    graph->Release();
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    const long times = count > 2 ? std::wcstol(arguments[1], nullptr, 10) : 0;
    if (times <= kFirst) {
        std::fputs("usage: bare_graph.exe TIMES FILE..., more than 20 times\n", stderr);
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    for (long i = 1; i <= times; ++i) {
        play(arguments[2 + i % (count - 2)]);
        Figures figures;
        if ((i == kFirst || i == times) && measure(GetCurrentProcessId(), figures)) {
            print(figures);
        }
    }
    return 0;
}
