// From CreateProcess to the first painted pixel on the screen, for the player and for an empty
// window program in turn. Usage: bench_start.exe RUNS PLAYER EMPTY; run it on the unit's desktop,
// in the folder in which the player runs, with no player running.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

double now() {
    LARGE_INTEGER count{}, frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

COLORREF probePixel() {
    constexpr int kX = 400, kY = 470;  // on the control bar
    const HDC screen = GetDC(nullptr);
    const COLORREF colour = GetPixel(screen, kX, kY);
    ReleaseDC(nullptr, screen);
    return colour;
}

void waitForColour(COLORREF colour, bool equal) {
    while ((probePixel() == colour) != equal) {
        Sleep(0);
    }
}

// Milliseconds until the pixel changes from what the empty desktop shows.
double startOnce(const std::wstring& program, COLORREF desktop) {
    std::wstring commandLine = program;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const double begin = now();
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process)) {
        std::printf("cannot start %ls\n", program.c_str());
        std::exit(1);
    }
    waitForColour(desktop, false);
    const double took = now() - begin;
    WaitForInputIdle(process.hProcess, 5000);
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, INFINITE);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    waitForColour(desktop, true);
    Sleep(200);
    return took;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 4) {
        std::printf("usage: bench_start.exe RUNS PLAYER EMPTY\n");
        return 2;
    }
    const int runs = _wtoi(arguments[1]);
    const COLORREF desktop = probePixel();
    std::vector<double> player, empty, ratio;
    startOnce(arguments[2], desktop);  // warm-up
    startOnce(arguments[3], desktop);
    for (int i = 0; i < runs; ++i) {
        player.push_back(startOnce(arguments[2], desktop));
        empty.push_back(startOnce(arguments[3], desktop));
        ratio.push_back(player.back() / empty.back());
    }
    std::printf(
        "first painted pixel: player %.1f ms, empty window %.1f ms, ratio %.2f (medians of %d)\n",
        median(player), median(empty), median(ratio), runs);
    return 0;
}
