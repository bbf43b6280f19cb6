#include "simulator/command/display.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace headunit {
namespace {

constexpr int kDisplayPatience = 10000;  // milliseconds

bool isOwn(const Unit& unit) {
    return !readRunFile(unit, "xvfb.pid").empty();
}

process::Options onDisplay(const Unit& unit) {
    return {.environment = {"DISPLAY=" + readRunFile(unit, "display")}};
}

// Waits for the line with the display's number; empty when the server ended or took too long.
std::string readNumber(int pipeEnd) {
    std::string number;
    char c = 0;
    for (;;) {
        pollfd wait = {pipeEnd, POLLIN, 0};
        if (poll(&wait, 1, kDisplayPatience) <= 0 || read(pipeEnd, &c, 1) != 1) {
            return {};
        }
        if (c == '\n') {
            return number;
        }
        number += c;
    }
}

}  // namespace

bool startOwnDisplay(const Unit& unit, int width, std::string& why) {
    int ends[2];
    if (pipe(ends) != 0) {
        why = "no pipe could be made";
        return false;
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    char screen[32];
    std::snprintf(screen, sizeof(screen), "%dx%dx24", width, kScreenHeight);
    const pid_t server =
        process::startDetached({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                                screen, "-nolisten", "tcp", "-noreset"},
                               {.environment = {"HEADUNIT=" + unit.device.string()},
                                .logFile = (unit.run() / "xvfb.log").string()});
    close(ends[1]);
    const std::string number = server > 0 ? readNumber(ends[0]) : "";
    close(ends[0]);
    if (number.empty()) {
        process::end(server, 1000);
        why = server > 0 ? "Xvfb did not start; see " + (unit.run() / "xvfb.log").string()
                         : "Xvfb is missing; install it with: apt-get install xvfb";
        return false;
    }
    writeRunFile(unit, "xvfb.pid", std::to_string(server));
    writeRunFile(unit, "display", ":" + number);
    return true;
}

void useDesktop(const Unit& unit, const std::string& display) {
    writeRunFile(unit, "display", display);
}

bool findPlace(const Unit& unit, Place& place) {
    if (isOwn(unit)) {
        place = {"root", 0, 0};
        return true;
    }
    std::string found;
    process::runReading({"xdotool", "search", "--name", unit.desktopName()}, onDisplay(unit),
                        found);
    place.window = found.substr(0, found.find('\n'));
    if (place.window.empty()) {
        return false;
    }
    std::string geometry;
    process::runReading({"xdotool", "getwindowgeometry", "--shell", place.window}, onDisplay(unit),
                        geometry);
    const auto x = geometry.find("X=");
    const auto y = geometry.find("Y=");
    if (x == std::string::npos || y == std::string::npos) {
        return false;
    }
    place.left = std::atoi(geometry.c_str() + x + 2);
    place.top = std::atoi(geometry.c_str() + y + 2);
    return true;
}

bool takePicture(const Unit& unit, const fs::path& file, std::string& why) {
    if (isCheckOnly()) {
        return true;
    }
    Place place;
    if (!isRunning(unit) || !findPlace(unit, place)) {
        why = "no unit runs in " + unit.device.string() + "; start one with: headunit boot";
        return false;
    }
    const process::Arguments import = {"import", "-silent",     "-window", place.window,
                                       "-depth", "8",           "-define", "png:color-type=2",
                                       "-crop",  "800x480+0+0", "+repage", "png:" + file.string()};
    if (process::run(import, onDisplay(unit)) != 0) {
        why = "the picture could not be written to " + file.string();
        return false;
    }
    return true;
}

bool movePointer(const Unit& unit, int x, int y, Pointer action, std::string& why) {
    if (isCheckOnly()) {
        return true;
    }
    Place place;
    if (!isRunning(unit) || !findPlace(unit, place)) {
        why = "no unit runs in " + unit.device.string() + "; start one with: headunit boot";
        return false;
    }
    if (x >= kScreenWidth && readRunFile(unit, "panel").empty()) {
        why = "the panel is not open; open it with: headunit boot --panel";
        return false;
    }
    process::Arguments xdotool = {"xdotool", "mousemove", std::to_string(place.left + x),
                                  std::to_string(place.top + y)};
    if (action != Pointer::Move) {
        xdotool.push_back(action == Pointer::Press ? "mousedown" : "mouseup");
        xdotool.push_back("1");
    }
    if (process::run(xdotool, onDisplay(unit)) != 0) {
        why = "xdotool could not move the pointer; is the display still there?";
        return false;
    }
    return true;
}

bool releasePointer(const Unit& unit, std::string& why) {
    if (isCheckOnly()) {
        return true;
    }
    if (!isRunning(unit)) {
        why = "no unit runs in " + unit.device.string() + "; start one with: headunit boot";
        return false;
    }
    if (process::run({"xdotool", "mouseup", "1"}, onDisplay(unit)) != 0) {
        why = "xdotool could not release the button; is the display still there?";
        return false;
    }
    return true;
}

namespace {

bool keyboard(const Unit& unit, const process::Arguments& xdotool, std::string& why) {
    if (isCheckOnly()) {
        return true;
    }
    if (!isRunning(unit)) {
        why = "no unit runs in " + unit.device.string() + "; start one with: headunit boot";
        return false;
    }
    std::string output;
    if (process::runReading(xdotool, onDisplay(unit), output) != 0) {
        why = "xdotool could not press \"" + xdotool.back() +
              "\"; is it a key's name, is the display still there?";
        return false;
    }
    return true;
}

}  // namespace

bool pressKey(const Unit& unit, const std::string& key, std::string& why) {
    return keyboard(unit, {"xdotool", "key", "--", key}, why);
}

bool typeText(const Unit& unit, const std::string& text, std::string& why) {
    return keyboard(unit, {"xdotool", "type", "--delay", "5", "--", text}, why);
}

}  // namespace headunit
