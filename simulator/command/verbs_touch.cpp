// The real pointer, and the PC's keyboard for the panel.
#include <algorithm>

#include "simulator/command/display.h"
#include "simulator/command/screen.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kTouchMilliseconds = 40;  // between press and release
constexpr int kDragSteps = 8;
constexpr char kPanelPatience[] = "2000";  // milliseconds

// What is pressed next must find the panel as this has left it.
Outcome settled(const Unit& unit, const Outcome& told) {
    std::string unused;
    if (told.good) {
        ask(unit, {"taken", kPanelPatience}, unused);
    }
    return told;
}

struct Point {
    std::shared_ptr<std::string> x;
    std::shared_ptr<std::string> y;

    [[nodiscard]] bool given() const { return !x->empty() && !y->empty(); }
    [[nodiscard]] int left() const { return static_cast<int>(number(*x)); }
    [[nodiscard]] int top() const { return static_cast<int>(number(*y)); }
};

Point point(Parser& parser, const std::string& suffix, const std::string& what, Needed needed) {
    // The panel stands right of the screen, where there is one.
    const Point made = {
        parser.word("X" + suffix, what + ", 0 to 799, beyond that on the panel", needed,
                    between(0, kScreenWidth + kPanelWidth - 1)),
        parser.word("Y" + suffix, "and from the top", needed, between(0, kScreenHeight - 1))};
    parser.together("X" + suffix, "Y" + suffix);
    return made;
}

Outcome move(Screen& screen, const Unit& unit, int x, int y, Button button) {
    if (x >= kScreenWidth && readRunFile(unit, "panel").empty()) {
        return failed("the panel is not open; open it with: " + commandFor(unit, "boot --panel"));
    }
    std::string why;
    return outcome(screen.point(x, y, why) && screen.press(button, why), why);
}

}  // namespace

Run touchVerb(Parser& parser) {
    const Point from = point(parser, "", "pixels from the left", Needed::Yes);
    const Point to = point(parser, "2", "where it is dragged to", Needed::No);
    return [from, to](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        if (!screen.open(call.unit, why)) {
            return failed(why);
        }
        Outcome told = move(screen, call.unit, from.left(), from.top(), Button::Down);
        process::sleepMilliseconds(kTouchMilliseconds);
        const Point& end = to.given() ? to : from;
        for (int step = 1; to.given() && told.good && step < kDragSteps; ++step) {
            told = move(screen, call.unit,
                        from.left() + (end.left() - from.left()) * step / kDragSteps,
                        from.top() + (end.top() - from.top()) * step / kDragSteps, Button::Same);
        }
        told = told.good ? move(screen, call.unit, end.left(), end.top(), Button::Up) : told;
        return end.left() >= kScreenWidth ? settled(call.unit, told) : told;
    };
}

Run holdVerb(Parser& parser) {
    const Point at = point(parser, "", "pixels from the left", Needed::Yes);
    return [at](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        return screen.open(call.unit, why)
                   ? move(screen, call.unit, at.left(), at.top(), Button::Down)
                   : failed(why);
    };
}

Run releaseVerb(Parser& parser) {
    const Point at = point(parser, "", "pixels from the left", Needed::No);
    return [at](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        if (!screen.open(call.unit, why)) {
            return failed(why);
        }
        return at.given() ? move(screen, call.unit, at.left(), at.top(), Button::Up)
                          : outcome(screen.press(Button::Up, why), why);
    };
}

Run pressVerb(Parser& parser) {
    const auto keys =
        parser.words("KEY", "F1 to F12, Tab, Return, Delete, arrows and so on, or alt+b",
                     [](const std::string& key) {
                         return isKeyName(key) ? std::string() : "must be one of " + keyNames();
                     });
    return [keys](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        const bool good = screen.open(call.unit, why) &&
                          std::ranges::all_of(
                              *keys, [&](const std::string& key) { return screen.key(key, why); });
        return settled(call.unit, outcome(good, why));
    };
}

Run typeVerb(Parser& parser) {
    const auto text = parser.word("TEXT", "printable ASCII", Needed::Yes, [](const auto& word) {
        const auto isTyped = [](char c) { return c >= ' ' && c <= '~'; };
        return !word.empty() && std::ranges::all_of(word, isTyped) ? std::string()
                                                                   : "must be printable ASCII";
    });
    return [text](const Call& call) -> Outcome {
        Screen screen;
        std::string why;
        const bool good = screen.open(call.unit, why) && std::ranges::all_of(*text, [&](char c) {
                              return screen.key(std::string(1, c), why);
                          });
        return settled(call.unit, outcome(good, why));
    };
}

}  // namespace headunit
