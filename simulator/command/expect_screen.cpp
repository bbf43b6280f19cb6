// Expectations about what the unit shows, its windows, screens and pixels, and what is heard of it.
#include <cstdio>
#include <cstdlib>

#include "simulator/command/expect.h"
#include "simulator/command/hearing.h"
#include "simulator/command/picture.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kMotionMilliseconds = 400;
constexpr double kMotionShare = 0.005;  // of the pixels of the area

bool readRect(const std::vector<std::string>& words, std::size_t first, Rect& area) {
    int* const edges[] = {&area.left, &area.top, &area.right, &area.bottom};
    for (std::size_t i = 0; i < 4; ++i) {
        long long number = 0;
        if (first + i >= words.size() || !parseNumber(words[first + i], number) || number < 0 ||
            number > 800) {
            return false;
        }
        *edges[i] = static_cast<int>(number);
    }
    return area.left < area.right && area.top < area.bottom && area.bottom <= 480;
}

bool readColour(const std::string& word, std::uint32_t& colour) {
    char* end = nullptr;
    colour = static_cast<std::uint32_t>(std::strtoul(word.c_str() + 1, &end, 16));
    return word.size() == 7 && word[0] == '#' && *end == '\0';
}

// The window of that title among the unit's, or nothing.
std::optional<json::Value> findWindow(const Stage& stage, const std::string& title) {
    const auto state = json::parse(stateJson(stage.unit));
    const json::Value* windows = state ? state->find("windows") : nullptr;
    for (const json::Value& window : windows ? windows->items : std::vector<json::Value>()) {
        if (window.textOf("title") == title || window.textOf("class") == title) {
            return window;
        }
    }
    return std::nullopt;
}

bool isVisible(const json::Value& window) {
    const json::Value* visible = window.find("visible");
    return visible != nullptr && visible->truth;
}

std::string rectText(const json::Value& window) {
    std::string text;
    if (const json::Value* area = window.find("rect")) {
        for (const json::Value& edge : area->items) {
            text += (text.empty() ? "" : " ") + edge.text;
        }
    }
    return text;
}

bool windowCheck(const std::vector<std::string>& words) {
    Rect unused;
    const bool known = words[2] == "visible" || words[2] == "hidden" || words[2] == "gone";
    return known && (words.size() == 3 || (words[2] != "gone" && readRect(words, 3, unused)));
}

// window TITLE visible|hidden|gone [LEFT TOP RIGHT BOTTOM]
bool window(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const auto found = findWindow(stage, words[1]);
    const std::string seen = !found ? "gone" : (isVisible(*found) ? "visible" : "hidden");
    std::string wantedPlace;
    for (std::size_t i = 3; i < words.size(); ++i) {
        wantedPlace += (wantedPlace.empty() ? "" : " ") + words[i];
    }
    const std::string place = found ? rectText(*found) : "";
    why = "it is " + seen + (place.empty() ? "" : " at " + place);
    return seen == words[2] && (wantedPlace.empty() || wantedPlace == place);
}

bool modeCheck(const std::vector<std::string>& words) {
    return words[1].size() == 1 && words[1][0] >= '0' && words[1][0] <= '4';
}

// mode 0|1|2|3|4, judged from the player's window and what it shows
bool mode(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto found = findWindow(stage, "Video");
    if (!found) {
        why = "the player has no window";
        return false;
    }
    int seen = 4;
    if (isVisible(*found)) {
        Picture picture;
        seen = rectText(*found) == "400 0 800 480" ? 1 : 0;
        if (seen == 0 && grab(stage.unit, picture)) {
            seen = judgeFullWidthMode(stage.unit, picture);
        }
    }
    why = "it looks like mode " + std::to_string(seen);
    return std::to_string(seen) == expectation.words[1];
}

bool pixelCheck(const std::vector<std::string>& words) {
    std::uint32_t colour = 0;
    return isNumber(words[1]) && isNumber(words[2]) && readColour(words[3], colour) &&
           (words.size() == 4 || isNumber(words[4]));
}

int channelDistance(std::uint32_t a, std::uint32_t b) {
    int most = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int distance =
            std::abs(static_cast<int>((a >> shift) & 255) - static_cast<int>((b >> shift) & 255));
        most = distance > most ? distance : most;
    }
    return most;
}

// pixel X Y #RRGGBB [TOLERANCE]
bool pixel(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    Picture picture;
    if (!grab(stage.unit, picture)) {
        why = "there is no picture of the screen";
        return false;
    }
    std::uint32_t wanted = 0;
    readColour(words[3], wanted);
    const std::uint32_t seen = picture.at(std::atoi(words[1].c_str()), std::atoi(words[2].c_str()));
    char text[32];
    std::snprintf(text, sizeof(text), "it is #%06X", seen);
    why = text;
    return channelDistance(seen, wanted) <= (words.size() > 4 ? std::atoi(words[4].c_str()) : 0);
}

bool rectCheck(const std::vector<std::string>& words) {
    Rect unused;
    return readRect(words, 1, unused);
}

// moving LEFT TOP RIGHT BOTTOM: two pictures differ there
bool moving(Stage& stage, const Expectation& expectation, std::string& why) {
    Rect area;
    readRect(expectation.words, 1, area);
    Picture before;
    Picture after;
    if (!grab(stage.unit, before)) {
        why = "there is no picture of the screen";
        return false;
    }
    process::sleepMilliseconds(kMotionMilliseconds);
    if (!grab(stage.unit, after)) {
        why = "there is no picture of the screen";
        return false;
    }
    int x = 0;
    int y = 0;
    const int count = countDifferences(before, after, area, x, y);
    why = std::to_string(count) + " pixels changed within " + std::to_string(kMotionMilliseconds) +
          " ms";
    return count > kMotionShare * (area.right - area.left) * (area.bottom - area.top);
}

// still LEFT TOP RIGHT BOTTOM: two pictures are the same there
bool still(Stage& stage, const Expectation& expectation, std::string& why) {
    Rect area;
    readRect(expectation.words, 1, area);
    Picture before;
    Picture after;
    const bool grabbed = grab(stage.unit, before);
    process::sleepMilliseconds(kMotionMilliseconds);
    if (!grabbed || !grab(stage.unit, after)) {
        why = "there is no picture of the screen";
        return false;
    }
    int x = 0;
    int y = 0;
    const int count = countDifferences(before, after, area, x, y);
    why = std::to_string(count) + " pixels changed, the first at " + std::to_string(x) + ", " +
          std::to_string(y);
    return count == 0;
}

bool pictureCheck(const std::vector<std::string>& words) {
    Rect unused;
    return words[1].find('/') == std::string::npos &&
           (words.size() == 2 || readRect(words, 2, unused));
}

// picture NAME [LEFT TOP RIGHT BOTTOM]: equals tests/golden/scenarios/NAME.png there
bool picture(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const fs::path golden = projectRoot() / "tests/golden/scenarios" / (words[1] + ".png");
    Rect area = {0, 0, 800, 480};
    if (words.size() > 2) {
        readRect(words, 2, area);
    }
    Picture seen;
    if (!grab(stage.unit, seen)) {
        why = "there is no picture of the screen";
        return false;
    }
    if (stage.updateGolden) {
        std::error_code error;
        fs::create_directories(golden.parent_path(), error);
        return writePicture(seen, area, golden);
    }
    Picture wanted;
    if (!readPicture(golden, wanted)) {
        why = "there is no " + golden.string() + "; make it with --update-golden";
        return false;
    }
    int count = 0;
    int firstX = 0;
    int firstY = 0;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            if (seen.at(x, y) != wanted.at(x - area.left, y - area.top) && count++ == 0) {
                firstX = x;
                firstY = y;
            }
        }
    }
    why = std::to_string(count) + " pixels differ, the first at " + std::to_string(firstX) + ", " +
          std::to_string(firstY);
    return count == 0;
}

constexpr Subject kSubjects[] = {
    {"window", 3, 7, &window, 3000, &windowCheck}, {"mode", 2, 2, &mode, 3000, &modeCheck},
    {"pixel", 4, 5, &pixel, 2000, &pixelCheck},    {"moving", 5, 5, &moving, 3000, &rectCheck},
    {"still", 5, 5, &still, 2000, &rectCheck},     {"picture", 2, 6, &picture, 2000, &pictureCheck},
    {"silence", 1, 1, &isSilent, 3000, nullptr},   {"loud", 1, 1, &isLoud, 3000, nullptr},
};

}  // namespace

const Subject* findScreenSubject(const std::string& name) {
    for (const Subject& subject : kSubjects) {
        if (name == subject.name) {
            return &subject;
        }
    }
    return nullptr;
}

}  // namespace headunit
