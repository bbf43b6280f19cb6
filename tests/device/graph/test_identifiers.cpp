// The identifiers that the player asks the system and the vendor's filters for, as they are written
// in the registry and in the vendor's papers.
#include <dshow.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "graph/interfaces.h"

namespace {

struct Case {
    const char* name;
    const GUID& identifier;
    const wchar_t* text;
};

const Case kCases[] = {
    {"CLSID_FilterGraph", CLSID_FilterGraph, L"{E436EBB3-524F-11CE-9F53-0020AF0BA770}"},
    {"CLSID_AsyncReader", CLSID_AsyncReader, L"{E436EBB5-524F-11CE-9F53-0020AF0BA770}"},
    {"CLSID_AudioRender", CLSID_AudioRender, L"{E30629D1-27E5-11CE-875D-00608CB78066}"},
    {"IID_IGraphBuilder", IID_IGraphBuilder, L"{56A868A9-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IMediaControl", IID_IMediaControl, L"{56A868B1-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IMediaPosition", IID_IMediaPosition, L"{56A868B2-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IBasicAudio", IID_IBasicAudio, L"{56A868B3-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IMediaSeeking", IID_IMediaSeeking, L"{36B73880-C2C8-11CF-8B46-00805F6CEF60}"},
    {"IID_IMediaEventEx", IID_IMediaEventEx, L"{56A868C0-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IBaseFilter", IID_IBaseFilter, L"{56A86895-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IReferenceClock", IID_IReferenceClock, L"{56A86897-0AD4-11CE-B03A-0020AF0BA770}"},
    {"IID_IMediaFilter", IID_IMediaFilter, L"{56A86899-0AD4-11CE-B03A-0020AF0BA770}"},
    {"TIME_FORMAT_MEDIA_TIME", TIME_FORMAT_MEDIA_TIME, L"{7B785574-8C82-11CF-BC0C-00AA00AC74F6}"},
};

TEST(Identifiers, AreTheNumbersThatTheSystemKnows) {
    for (const Case& row : kCases) {
        std::array<wchar_t, 39> text{};
        ASSERT_NE(0, StringFromGUID2(row.identifier, text.data(), static_cast<int>(text.size())));
        EXPECT_EQ(std::wstring(row.text), text.data()) << row.name;
    }
}

}  // namespace
