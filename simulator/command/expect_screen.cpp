// Expectations about what the unit shows, its windows, screens and pixels, and what is heard of it.
#include <cstdio>
#include <cstdlib>

#include "simulator/command/expect.h"
#include "simulator/command/hearing.h"
#include "simulator/command/picture.h"
#include "simulator/command/screen.h"

namespace headunit {
namespace {

constexpr int kMotionMilliseconds = 400;
constexpr double kMotionShare = 0.005;  // of the pixels of the area

bool readRect(const Words& words, std::size_t first, Rect& area) {
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

// The window of that title or class among the unit's, or null.
Json findWindow(const Stage& stage, const std::string& title) {
    std::string state;
    if (!ask(stage.unit, {"state"}, state)) {
        return nullptr;
    }
    const Json windows = parseJson(state).value("windows", Json::array());
    for (const Json& window : windows) {
        if (textOf(window, "title") == title || textOf(window, "class") == title) {
            return window;
        }
    }
    return nullptr;
}

std::string rectText(const Json& window) {
    std::string text;
    for (const Json& edge : window["rect"]) {
        text += (text.empty() ? "" : " ") + plain(edge);
    }
    return text;
}

bool grab(const Stage& stage, Picture& picture, std::string& why) {
    Screen screen;
    return screen.open(stage.unit, why) && screen.grab(picture, why);
}

bool windowCheck(const Words& words) {
    Rect unused;
    const bool known = words[2] == "visible" || words[2] == "hidden" || words[2] == "gone";
    return known && (words.size() == 3 || (words[2] != "gone" && readRect(words, 3, unused)));
}

// window TITLE visible|hidden|gone [LEFT TOP RIGHT BOTTOM]
bool window(Stage& stage, const Expectation& expectation, std::string& why) {
    const auto& words = expectation.words;
    const Json found = findWindow(stage, words[1]);
    const std::string seen =
        found.is_null() ? "gone" : (found.value("visible", false) ? "visible" : "hidden");
    std::string wantedPlace;
    for (std::size_t i = 3; i < words.size(); ++i) {
        wantedPlace += (wantedPlace.empty() ? "" : " ") + words[i];
    }
    const std::string place = found.is_null() ? "" : rectText(found);
    why = "it is " + seen + (place.empty() ? "" : " at " + place);
    return seen == words[2] && (wantedPlace.empty() || wantedPlace == place);
}

bool modeCheck(const Words& words) {
    return words[1].size() == 1 && words[1][0] >= '0' && words[1][0] <= '4';
}

// mode 0|1|2|3|4, judged from the player's window and what it shows
bool mode(Stage& stage, const Expectation& expectation, std::string& why) {
    const Json found = findWindow(stage, "Video");
    if (found.is_null()) {
        why = "the player has no window";
        return false;
    }
    int seen = 4;
    if (found.value("visible", false)) {
        Picture picture;
        seen = rectText(found) == "400 0 800 480" ? 1 : 0;
        if (seen == 0 && grab(stage, picture, why)) {
            seen = judgeFullWidthMode(stage.unit, picture);
        }
    }
    why = "it looks like mode " + std::to_string(seen);
    return std::to_string(seen) == expectation.words[1];
}

bool pixelCheck(const Words& words) {
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
    if (!grab(stage, picture, why)) {
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

bool rectCheck(const Words& words) {
    Rect unused;
    return readRect(words, 1, unused);
}

// How many pixels of the area change within kMotionMilliseconds; -1 with the reason when there is
// no picture.
int countChanges(Stage& stage, const Expectation& expectation, Rect& area, std::string& why) {
    readRect(expectation.words, 1, area);
    Picture before;
    Picture after;
    if (!grab(stage, before, why)) {
        return -1;
    }
    process::sleepMilliseconds(kMotionMilliseconds);
    if (!grab(stage, after, why)) {
        return -1;
    }
    int x = 0;
    int y = 0;
    const int count = countDifferences(before, after, area, x, y);
    why = std::to_string(count) + " pixels changed within " + std::to_string(kMotionMilliseconds) +
          " ms, the first at " + std::to_string(x) + ", " + std::to_string(y);
    return count;
}

// moving LEFT TOP RIGHT BOTTOM: two pictures differ there
bool moving(Stage& stage, const Expectation& expectation, std::string& why) {
    Rect area;
    const int count = countChanges(stage, expectation, area, why);
    return count > kMotionShare * (area.right - area.left) * (area.bottom - area.top);
}

// still LEFT TOP RIGHT BOTTOM: two pictures are the same there
bool still(Stage& stage, const Expectation& expectation, std::string& why) {
    Rect area;
    return countChanges(stage, expectation, area, why) == 0;
}

bool pictureCheck(const Words& words) {
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
    if (!grab(stage, seen, why)) {
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
    int x = 0;
    int y = 0;
    const Picture part = cut(seen, area);
    const int count = countDifferences(part, wanted, {0, 0, part.width, part.height}, x, y);
    why = std::to_string(count) + " pixels differ, the first at " + std::to_string(area.left + x) +
          ", " + std::to_string(area.top + y);
    return count == 0;
}

constexpr Subject kSubjects[] = {
    {"window", 3, 7, &window, 3000, &windowCheck, Kind::Is},
    {"mode", 2, 2, &mode, 3000, &modeCheck, Kind::Is},
    {"pixel", 4, 5, &pixel, 2000, &pixelCheck, Kind::Is},
    {"moving", 5, 5, &moving, 3000, &rectCheck, Kind::Happens},
    {"still", 5, 5, &still, 2000, &rectCheck, Kind::Is},
    {"picture", 2, 6, &picture, 2000, &pictureCheck, Kind::Is},
    {"silence", 1, 1, &isSilent, 3000, nullptr, Kind::Is},
    {"loud", 1, 1, &isLoud, 3000, nullptr, Kind::Is},
};

}  // namespace

std::span<const Subject> screenSubjects() {
    return kSubjects;
}

}  // namespace headunit
