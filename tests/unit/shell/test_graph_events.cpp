// Events of the graph, code by code.
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;
using test::theGraph;
using test::unit;

class GraphEvents : public test::ShellUnit {
protected:
    static std::string event(long code, std::intptr_t a = 0, std::intptr_t b = 0) {
        theGraph().events.push_back({code, a, b});
        return lines(0x8001u);
    }
    static std::string freed(long code, int a = 0, int b = 0) {
        return "\ngraph free event " + std::to_string(code) + " " + std::to_string(a) + "," +
               std::to_string(b) + "\n";
    }
};

TEST_F(GraphEvents, ThoseWithoutAnAction) {
    for (const long code : {0L, 1L, 73L, 33770L, 33772L, 2L, 12L, 14L, 33023L, 33025L, 33768L,
                            33774L, 33775L, 33778L, 36862L, 36864L}) {
        EXPECT_LINES(event(code, 3, 4), freed(code, 3, 4));
    }
}

TEST_F(GraphEvents, AllThatWaitAreTakenInOrder) {
    for (const long code : {1L, 73L, 33770L}) {
        theGraph().events.push_back({code, code, 0});
    }
    EXPECT_LINES(lines(0x8001u),
                 freed(1, 1) + freed(73, 73).substr(1) + freed(33770, 33770).substr(1));
    EXPECT_EQ(lines(0x8001u), "");
}

TEST_F(GraphEvents, TheVideoLayerIsAppliedAgain) {
    for (const std::int32_t state : {10, 12}) {
        appState.videoLayerState = state;
        for (const long code : {11L, 13L}) {
            EXPECT_LINES(event(code), freed(code) + "graph layer " + std::to_string(state) + "\n");
        }
    }
}

TEST_F(GraphEvents, ALiveLengthFileIsMarked) {
    EXPECT_LINES(event(33024), freed(33024) + "graph key 0xF800F8\nredraw\n");
    EXPECT_EQ(appState.liveLength, 1);
    EXPECT_LINES(event(33773, 125), freed(33773, 125));
    EXPECT_EQ(appState.persisted.endTime, 125.0);
}

TEST_F(GraphEvents, AnotherLengthOpensTheFileAgain) {
    play();
    const std::string did = event(33773, 125);
    EXPECT_EQ(did.find(freed(33773, 125).substr(1) + "graph key 0x000000\n"), 0u) << did;
    EXPECT_NE(did.find("graph destroy\nredraw\nredraw\nsleep 10\npost ani_waiting"),
              std::string::npos)
        << did;
    EXPECT_NE(did.find("graph run\n"), std::string::npos);
    EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
    EXPECT_EQ(appState.persisted.endTime, 60);
}

TEST_F(GraphEvents, EndsLeadToTheNextFile) {
    for (const long code : {33769L, 33771L, 33776L, 33777L}) {
        SetUp();
        play(3, 1);
        const std::string did = event(code);
        EXPECT_TRUE(did.ends_with("post Video ZEL_BSP_WMUSER_IR_KEY 7,0\n")) << did;
        EXPECT_EQ(appState.persisted.fileIndex, 2) << code;
    }
}

TEST_F(GraphEvents, CaptionsGetBothParameters) {
    EXPECT_LINES(event(36863, 7, 9), freed(36863, 7, 9) + "graph caption 7,9\n");
}

}  // namespace
