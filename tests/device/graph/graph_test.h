// A player's window and a CFilterControl for one test, and the clips it plays.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "graph/filter_control.h"
#include "graph/graph_walk.h"
#include "platform/text.h"
#include "platform/wide.h"

namespace test {

inline std::wstring clip(const wchar_t* name) {
    std::wstring path = std::wstring(CLIP_FOLDER) + L"\\" + name;
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

class Graph : public ::testing::Test {
protected:
    // As in the player, COM stays up from the first file to the last.
    static void SetUpTestSuite() { ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, 0))); }
    static void TearDownTestSuite() { CoUninitialize(); }

    void SetUp() override {
        window_ = CreateWindowExW(0, L"STATIC", L"Video", WS_POPUP | WS_VISIBLE, 0, 0, 800, 480,
                                  nullptr, nullptr, nullptr, nullptr);
        ASSERT_NE(window_, nullptr);
    }

    void TearDown() override {
        takeApart();
        DestroyWindow(window_);
    }

    int build(const wchar_t* name) {
        return control_.CreateFilterForPlaying(platform::utf16(clip(name).c_str()), 0, 0, 800, 480,
                                               window_);
    }

    // Runs, and waits until the graph has begun. Wine lets it begin on a thread of its own, which
    // takes the list of filters apart and puts it together again while others may be looking.
    void run() {
        EXPECT_EQ(control_.RunGraph(), 1);
        platform::ComPtr<IMediaControl> graph;
        control_.builder()->QueryInterface(IID_IMediaControl, graph.outVoid());
        OAFilterState state = 0;
        HRESULT result = VFW_S_STATE_INTERMEDIATE;
        while (result == VFW_S_STATE_INTERMEDIATE) {
            result = graph->GetState(10, &state);
        }
        EXPECT_EQ(result, S_OK);
        EXPECT_EQ(state, State_Running);
    }

    // What the control prints while taking the graph apart.
    std::string takeApart() {
        ::testing::internal::CaptureStdout();
        control_.StopGraph();
        control_.DeleteFilters();
        control_.DestroyFilterGraph();
        return ::testing::internal::GetCapturedStdout();
    }

    std::vector<std::string> filterNames() {
        std::vector<std::string> names;
        graph::forEachFilter(control_.builder(), [&names](IBaseFilter& filter) {
            const graph::FilterInfo info(filter);
            names.push_back(platform::toUtf8(platform::utf16(info.name())));
            return graph::Walk::Continue;
        });
        return names;
    }

    bool has(const char* name) {
        const std::vector<std::string> names = filterNames();
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    // The subtitle file that the graph reads, empty without one.
    std::wstring captionFile() {
        platform::ComPtr<IBaseFilter> source;
        control_.builder()->FindFilterByName(L"ASYNC Reader", source.out());
        const auto file = source.query<IFileSourceFilter>(IID_IFileSourceFilter);
        LPOLESTR path = nullptr;
        if (!file || FAILED(file->GetCurFile(&path, nullptr))) {
            return {};
        }
        const std::wstring copy = path;
        CoTaskMemFree(path);
        return copy;
    }

    // Lets the window's messages flow for a while, as the player's loop does.
    static void pump(DWORD milliseconds) {
        const DWORD end = GetTickCount() + milliseconds;
        while (static_cast<LONG>(end - GetTickCount()) > 0) {
            MSG message{};
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
    }

    HWND window_ = nullptr;
    CFilterControl control_;
};

}  // namespace test
