#include "simulator/command/display.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <memory>

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

void startOwnDisplay(const Unit& unit, int width) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw Failure("no pipe could be made");
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    const std::string log = (unit.run() / "xvfb.log").string();
    const std::string screen = std::to_string(width) + "x" + std::to_string(kScreenHeight) + "x24";
    const pid_t server = process::startDetached(
        {"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", screen, "-nolisten", "tcp",
         "-noreset"},
        {.environment = {"HEADUNIT=" + unit.device.string()}, .logFile = log});
    close(ends[1]);
    const std::string number = server > 0 ? readNumber(ends[0]) : "";
    close(ends[0]);
    if (number.empty()) {
        process::end(server, 1000);
        throw Failure(server > 0 ? "Xvfb did not start; see " + log
                                 : "Xvfb is missing; install it with: apt-get install xvfb");
    }
    writeRunFile(unit, "xvfb.pid", std::to_string(server));
    writeRunFile(unit, "display", ":" + number);
}

int useDesktop(const Unit& unit, const std::string& display) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(
        xcb_connect(display.c_str(), nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(server.get()) != 0) {
        throw Failure("there is no display " + display +
                      " (DISPLAY); without one: " + commandFor(unit, "boot --headless"));
    }
    writeRunFile(unit, "display", display);
    return xcb_setup_roots_iterator(xcb_get_setup(server.get())).data->width_in_pixels;
}

}  // namespace headunit
