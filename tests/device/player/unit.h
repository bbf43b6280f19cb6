// The player on a unit of its own: storage on drive H, boxes answered by the test, no other
// process. Its window lives from the first test to the last, as it does in the unit; each test
// initialises playback again.
#pragma once

#include <dshow.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "app/app_state.h"
#include "graph/filter_control.h"
#include "platform/com_ptr.h"
#include "tests/device/graph/box_stub.h"

namespace test {

// Makes the player's window, as the start of the program does.
void openPlayerWindow();

class PlayerUnit : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Puts a recording of 40 s into this test's own folder.
    void put(const std::wstring& name);

    // Initialises playback with this remembered state.
    static void start(const settings::PersistedState& remembered = {});
    // The same with this test's folder, stopped.
    void startInFolder(std::int32_t fileIndex = 0);
    // Posts the process manager's command and handles all messages.
    static void command(WPARAM wParam, LPARAM lParam = 0);
    static void handleMessages();

    // The volume that the graph has, in hundredths of a decibel; 1 without a graph.
    static long graphVolume();

    std::wstring folder_;  // from the root, without a leading backslash
    Boxes boxes_;
};

// What is printed until `text` is asked for.
class Printed {
public:
    Printed() { ::testing::internal::CaptureStdout(); }
    [[nodiscard]] std::string text() const { return ::testing::internal::GetCapturedStdout(); }
};

}  // namespace test
