#include "simulator/command/display.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdio>

namespace headunit {
namespace {

constexpr int kDisplayPatience = 10000;  // milliseconds

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

bool useDesktop(const Unit& unit, const std::string& display, int& width, std::string& why) {
    xcb_connection_t* const server = xcb_connect(display.c_str(), nullptr);
    const bool good = xcb_connection_has_error(server) == 0;
    if (good) {
        width = xcb_setup_roots_iterator(xcb_get_setup(server)).data->width_in_pixels;
        writeRunFile(unit, "display", display);
    }
    xcb_disconnect(server);
    why = "there is no display " + display +
          " (DISPLAY); without one: " + commandFor(unit, "boot --headless");
    return good;
}

}  // namespace headunit
