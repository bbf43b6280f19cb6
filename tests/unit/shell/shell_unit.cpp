#include "tests/unit/shell/shell_unit.h"

#include <algorithm>
#include <utility>

#include "shell/message_table.h"
#include "tests/unit/doubles/main_window_double.h"
#include "tests/unit/doubles/skin_double.h"

namespace test {

void ShellUnit::SetUp() {
    // Of the static initialiser, which ran before the first test.
    static const bool registered = appState.messageTable.count == 22;
    EXPECT_TRUE(registered);
    PlayerUnit::SetUp();
    shell::registerMessages();
    starting() = {};
    skin() = {};
    makeFolder("ResidentFlash2/Data");
}

platform::Answer ShellUnit::send(const char16_t* name, platform::WParam wParam,
                                 platform::LParam lParam) {
    return send(platform::registerMessage(name), wParam, lParam);
}

platform::Answer ShellUnit::send(std::uint32_t message, platform::WParam wParam,
                                 platform::LParam lParam) {
    return shell::dispatchMessage(playerWindow(), message, wParam, lParam);
}

std::string ShellUnit::lines(const char16_t* name, platform::WParam wParam,
                             platform::LParam lParam) {
    taken();
    send(name, wParam, lParam);
    return taken();
}

std::string ShellUnit::lines(std::uint32_t message, platform::WParam wParam,
                             platform::LParam lParam) {
    taken();
    send(message, wParam, lParam);
    return taken();
}

std::string ShellUnit::command(platform::WParam wParam, platform::LParam lParam) {
    return lines(u"MSG_ProcessManagertoMovie", wParam, lParam);
}

std::string ShellUnit::tick(platform::WParam timer) {
    return lines(platform::kTimerMessage, timer);
}

std::string ShellUnit::touch(std::uint32_t message, std::int32_t x, std::int32_t y) {
    return lines(message, 1,
                 static_cast<platform::LParam>(static_cast<std::uint32_t>(y & 0xFFFF) << 16 |
                                               static_cast<std::uint32_t>(x & 0xFFFF)));
}

void ShellUnit::pass(std::uint32_t milliseconds) {
    const std::uint32_t end = unit().milliseconds + milliseconds;
    for (bool rings = true; rings;) {
        const auto next = std::min_element(
            unit().timers.begin(), unit().timers.end(),
            [](const auto& a, const auto& b) { return a.second.due < b.second.due; });
        rings = next != unit().timers.end() && next->second.due <= end;
        const std::uint32_t now = rings ? next->second.due : end;
        if (appState.persisted.playState == settings::kPlaying) {
            theGraph().position += (now - unit().milliseconds) / 1000.0;
        }
        unit().milliseconds = now;
        if (rings) {
            next->second.due += next->second.period;
            send(platform::kTimerMessage, next->first);
        }
    }
    taken();
}

void ShellUnit::handlePosted() {
    while (!unit().posted.empty()) {
        const UnitDouble::Posted first = unit().posted.front();
        unit().posted.erase(unit().posted.begin());
        send(first.message, first.wParam, first.lParam);
    }
}

void ShellUnit::play(int count, std::int32_t index) {
    recordings(count, index);
    unit().quietPrint = true;
    send(u"ZEL_BSP_WMUSER_IR_KEY", 7);
    ASSERT_EQ(appState.persisted.playState, settings::kPlaying);
    appState.keyLock = 0;
    taken();
}

}  // namespace test
