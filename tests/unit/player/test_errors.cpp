// The debug output for a file that could not be rendered.
#include <gtest/gtest.h>

#include "player/player.h"
#include "tests/unit/doubles/record.h"

namespace {

std::string reported(std::uint32_t result, int flag = 1) {
    test::taken();
    EXPECT_EQ(Player::reportRenderError(static_cast<std::int32_t>(result), flag), 0);
    return test::taken();
}

struct Case {
    std::uint32_t result;
    const char* line;
};

TEST(RenderErrors, ShowTheirNumberInPlaceOfTheResult) {
    constexpr Case kCases[] = {
        {0x80070005, "[E_ACCESSDENIED]General access denied error(0x4dc)"},
        {0x80070006, "[E_HANDLE]Invalid handle(0x4d0)"},
        {0x8007000E, "[E_OUTOFMEMORY]Ran out of memory(0x4c0)"},
        {0x80070057, "[E_INVALIDARG]One or more arguments are invalid(0x4c4)"},
        {0x80004005, "[E_FAIL]Unspecified error(0x4d8)"},
        {0x80004001, "[E_NOTIMPL]Not implemented(0x4bc)"},
        {0x80004002, "[E_NOINTERFACE]No such interface supported(0x4c8)"},
        {0x80004003, "[E_POINTER]Invalid pointer(0x4cc)"},
        {0x80004004, "[E_ABORT]Operation aborted(0x4d4)"},
    };
    for (const Case& c : kCases) {
        const std::string line =
            std::string("debug [TCMovieManager]Render File Error : ") + c.line + "\\n\n";
        EXPECT_EQ(reported(c.result), line);
        EXPECT_EQ(reported(c.result, 0), line);  // the flag has no effect
    }
}

TEST(RenderErrors, OthersAndSuccessSayNothing) {
    for (const std::uint32_t result : {0x00000000u, 0x00000001u, 0x00040242u, 0x80004000u,
                                       0x80004006u, 0x80040209u, 0x8007000Fu, 0xFFFFFFFFu}) {
        EXPECT_EQ(reported(result), "") << std::hex << result;
    }
}

}  // namespace
