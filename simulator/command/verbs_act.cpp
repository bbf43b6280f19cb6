// What is done to the unit while it runs: messages, keys, speed, boxes, the pointer, the panel's
// keyboard.
#include <algorithm>
#include <cstdio>

#include "simulator/command/display.h"
#include "simulator/command/verbs.h"
#include "simulator/tape/fault_names.h"

namespace headunit {
namespace {

constexpr int kTouchMilliseconds = 40;  // between press and release
constexpr int kDragSteps = 8;

struct Named {
    const char* name;
    int number;
};
constexpr Named kKeys[] = {{"prev", 5}, {"next", 6}, {"play", 7}};
constexpr Named kGestures[] = {{"prev", 1}, {"next", 2}};
// Windows' own numbers of the buttons.
constexpr Named kAnswers[] = {{"ok", 1}, {"yes", 6}, {"no", 7}};

template <std::size_t count>
const Named* find(const Named (&table)[count], const Words& words) {
    for (const Named& row : table) {
        if (words.size() == 1 && words[0] == row.name) {
            return &row;
        }
    }
    return nullptr;
}

int answered(bool good, const std::string& answer) {
    return good ? 0 : fail(answer);
}

int post(const Unit& unit, const char* message, int wParam, int lParam) {
    std::string answer;
    return answered(
        ask(unit, {"message", "post", message, std::to_string(wParam), std::to_string(lParam)},
            answer),
        answer);
}

bool parsePoint(const std::string& x, const std::string& y, int& left, int& top) {
    long long a = 0;
    long long b = 0;
    // The panel stands right of the screen, where there is one.
    if (!parseNumber(x, a) || !parseNumber(y, b) || a < 0 || b < 0 ||
        a >= kScreenWidth + kPanelWidth || b >= kScreenHeight) {
        return false;
    }
    left = static_cast<int>(a);
    top = static_cast<int>(b);
    return true;
}

}  // namespace

int sendVerb(const Unit& unit, const Words& given) {
    Words words = given;
    const bool sync = takeFlag(words, "--sync");
    std::string title = "Video";
    takeValue(words, "--to", title);
    long long number = 0;
    if (words.size() != 3 || !parseNumber(words[1], number) || !parseNumber(words[2], number)) {
        return wrongUse("send");
    }
    std::string answer;
    const bool good =
        ask(unit, {"message", sync ? "send" : "post", words[0], words[1], words[2], title}, answer);
    if (good && sync && !isQuiet()) {
        std::puts(answer.c_str());
    }
    return answered(good, answer);
}

int keyVerb(const Unit& unit, const Words& words) {
    const Named* key = find(kKeys, words);
    return key == nullptr ? wrongUse("key") : post(unit, "ZEL_BSP_WMUSER_IR_KEY", key->number, 0);
}

int closeVerb(const Unit& unit, const Words& words) {
    if (!words.empty()) {
        return wrongUse("close");
    }
    std::string answer;
    return answered(ask(unit, {"close"}, answer), answer);
}

int gestureVerb(const Unit& unit, const Words& words) {
    const Named* gesture = find(kGestures, words);
    return gesture == nullptr ? wrongUse("gesture")
                              : post(unit, "ZEL_BSP_WMUSER_GESTURE", gesture->number, 0);
}

int driveVerb(const Unit& unit, const Words& words) {
    long long speed = 0;
    if (words == Words{"--chart"}) {
        return chartDriving();
    }
    if (words.size() != 1 || (words[0] != "off" && !parseNumber(words[0], speed))) {
        return wrongUse("drive");
    }
    std::string answer;
    return answered(ask(unit, {"speed", words[0]}, answer), answer);
}

int muteVerb(const Unit& unit, const Words& words) {
    if (words.size() != 1 || (words[0] != "on" && words[0] != "off")) {
        return wrongUse("mute");
    }
    return post(unit, "BSP_WMUSER_MUTE_NOTIFICATION", words[0] == "on" ? 1 : 0, 0);
}

int boxVerb(const Unit& unit, const Words& words) {
    const Named* button = find(kAnswers, words);
    if (button == nullptr) {
        return wrongUse("box");
    }
    std::string answer;
    return answered(ask(unit, {"box", std::to_string(button->number)}, answer), answer);
}

int faultVerb(const Unit& unit, const Words& words) {
    long long number = 0;
    if (words.size() != 2 || (words[1] != "off" && !parseNumber(words[1], number))) {
        return wrongUse("fault");
    }
    if (!tape::isFaultName(words[0])) {
        fail("there is no fault " + words[0]);
        return 2;
    }
    std::string answer;
    return answered(ask(unit, {"fault", words[0], words[1]}, answer), answer);
}

int holdVerb(const Unit& unit, const Words& words) {
    int x = 0;
    int y = 0;
    if (words.size() != 2 || !parsePoint(words[0], words[1], x, y)) {
        return wrongUse("hold");
    }
    std::string why;
    return answered(movePointer(unit, x, y, Pointer::Press, why), why);
}

int releaseVerb(const Unit& unit, const Words& words) {
    int x = 0;
    int y = 0;
    if (!words.empty() && (words.size() != 2 || !parsePoint(words[0], words[1], x, y))) {
        return wrongUse("release");
    }
    std::string why;
    if (words.empty()) {
        return answered(releasePointer(unit, why), why);
    }
    return answered(movePointer(unit, x, y, Pointer::Release, why), why);
}

int touchVerb(const Unit& unit, const Words& words) {
    int x = 0;
    int y = 0;
    if ((words.size() != 2 && words.size() != 4) || !parsePoint(words[0], words[1], x, y)) {
        return wrongUse("touch");
    }
    int toX = x;
    int toY = y;
    if (words.size() == 4 && !parsePoint(words[2], words[3], toX, toY)) {
        return wrongUse("touch");
    }
    std::string why;
    bool good = movePointer(unit, x, y, Pointer::Press, why);
    process::sleepMilliseconds(kTouchMilliseconds);
    for (int step = 1; words.size() == 4 && good && step < kDragSteps; ++step) {
        good = movePointer(unit, x + (toX - x) * step / kDragSteps,
                           y + (toY - y) * step / kDragSteps, Pointer::Move, why);
    }
    return answered(good && movePointer(unit, toX, toY, Pointer::Release, why), why);
}

int pressVerb(const Unit& unit, const Words& words) {
    if (words.empty()) {
        return wrongUse("press");
    }
    std::string why;
    bool good = true;
    for (const std::string& key : words) {
        good = good && pressKey(unit, key, why);
    }
    return answered(good, why);
}

int typeVerb(const Unit& unit, const Words& words) {
    // Keys that the keyboard's layout lacks would have to be put into it first, which Wine misses.
    const auto isTyped = [](char c) { return c >= ' ' && c <= '~'; };
    if (words.size() != 1 || words[0].empty() || !std::ranges::all_of(words[0], isTyped)) {
        return wrongUse("type");
    }
    std::string why;
    return answered(typeText(unit, words[0], why), why);
}

}  // namespace headunit
