// A unit with storage of its own and a player that has not been started: AppState is at its
// defaults, the clock at 100 s, no request within the last minute.
#pragma once

#include <memory>
#include <string>

#include "app/app_state.h"
#include "tests/unit/doubles/graph_double.h"
#include "tests/unit/doubles/record.h"
#include "tests/unit/doubles/unit_double.h"
#include "tests/unit/support/unit_folder.h"

namespace test {

// The folder of the recordings.
inline constexpr char16_t kRecord[] = u"\\SDMMCDisk\\Record";

class PlayerUnit : public UnitFolder {
protected:
    void SetUp() override;
    void TearDown() override;

    // Puts recordings "01.avi" to the given number into kRecord and lists them by name; the one at
    // `index` is selected. Nothing is written down of it.
    void recordings(int count, std::int32_t index = 0);
};

// An AVI file of 25 pictures and sound of format 0x0055, as far as its headers tell.
std::string smallRecording(std::uint32_t width = 640, std::uint32_t height = 480);

// Whether the text is exactly the lines, which begin with a newline for the eye.
#define EXPECT_LINES(actual, lines) EXPECT_EQ(std::string("\n") + (actual), lines)

}  // namespace test
