// Films, the view in a browser, the chart of the driving check, ready-made cards.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>

#include "app/driving_check.h"
#include "simulator/command/display.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

constexpr int kViewPatience = 10000;  // milliseconds

// A loopback port that nobody uses right now; 0 when there is none.
int freePort() {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    const bool good = bind(probe, plain, length) == 0 && getsockname(probe, plain, &length) == 0;
    close(probe);
    return good ? ntohs(address.sin_port) : 0;
}

bool answers(int port) {
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool good =
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    close(connection);
    return good;
}

bool waitForPort(int port, pid_t server) {
    for (int waited = 0; waited < kViewPatience && process::isAlive(server); waited += 20) {
        if (answers(port)) {
            return true;
        }
        process::sleepMilliseconds(20);
    }
    return false;
}

// Starts one of the two servers of a view; it ends with the unit.
bool startServer(const Unit& unit, const process::Arguments& arguments, const char* pidFile,
                 int port, std::string& why) {
    const std::string log = (unit.run() / (arguments[0] + ".log")).string();
    const pid_t server = process::startDetached(
        arguments, {.environment = {"HEADUNIT=" + unit.device.string(),
                                    "DISPLAY=" + readRunFile(unit, "display")},
                    .logFile = log});
    if (server < 0) {
        why =
            arguments[0] + " is missing; install it with: apt-get install x11vnc novnc websockify";
        return false;
    }
    writeRunFile(unit, pidFile, std::to_string(server));
    if (!waitForPort(port, server)) {
        why = arguments[0] + " did not start; see " + log;
        return false;
    }
    return true;
}

void chartRow(const char* name, int speed, int blockedAtFirst) {
    app::BlockCounters counters;
    std::int32_t blocked = blockedAtFirst;
    std::printf("  %-10s ", name);
    for (int second = 1; second <= 8; ++second) {
        app::driveOneSecond(speed, 0, counters, blocked);
        std::fputs(blocked != 0 ? " #" : " .", stdout);
    }
    std::puts("");
}

void printChart() {
    struct Row {
        const char* name;
        int speed;
    };
    constexpr Row kRows[] = {{"no signal", -1}, {"0 km/h", 0},   {"5 km/h", 5},  {"8 km/h", 8},
                             {"9 km/h", 9},     {"10 km/h", 10}, {"60 km/h", 60}};
    for (const int blocked : {0, 1}) {
        std::printf("%s at first; seconds 1 to 8 (# blocked, . free):\n",
                    blocked != 0 ? "blocked" : "free");
        for (const Row& row : kRows) {
            chartRow(row.name, row.speed, blocked);
        }
    }
    std::puts("With [MISC] DMB other than 0 nothing is ever blocked.");
}

}  // namespace

int chartDriving() {
    if (!isCheckOnly()) {
        printChart();
    }
    return 0;
}

int makeCard(const Words& words) {
    long long files = 20;
    if (words.empty() || words.size() > 2 ||
        (words.size() == 2 && (!parseNumber(words[1], files) || files < 1))) {
        return wrongUse("card");
    }
    if (isCheckOnly()) {
        return 0;
    }
    const std::string script = (projectRoot() / "simulator/samples/card.sh").string();
    const int status =
        process::run({script, words[0], std::to_string(files)}, {.keepOutput = true});
    return status == 0 ? 0 : fail("the card in " + words[0] + " was not made");
}

// What it finds is printed by the script; its exit status is the verb's.
int skinVerb(const Unit&, const Words& words) {
    if (words.empty() || words.size() > 2 || words[0] != "check") {
        return wrongUse("skin");
    }
    if (isCheckOnly()) {
        return 0;
    }
    const std::string folder =
        words.size() == 2 ? words[1] : (projectRoot() / "out" / "skin").string();
    return process::run({(projectRoot() / "skin" / "check.sh").string(), folder},
                        {.keepOutput = true});
}

int filmVerb(const Unit& unit, const Words& words) {
    long long seconds = 0;
    if (words.size() != 2 || !parseNumber(words[1], seconds) || seconds < 1 || seconds > 3600) {
        return wrongUse("film");
    }
    if (isCheckOnly()) {
        return 0;
    }
    Place place;
    if (!isRunning(unit) || !findPlace(unit, place)) {
        return fail("no unit runs in " + unit.device.string() + "; start one with: headunit boot");
    }
    const std::string input = readRunFile(unit, "display") + "+" + std::to_string(place.left) +
                              "," + std::to_string(place.top);
    const int status =
        process::run({"ffmpeg",  "-nostdin",    "-v",        "error",       "-y",      "-f",
                      "x11grab", "-draw_mouse", "0",         "-video_size", "800x480", "-framerate",
                      "25",      "-i",          input,       "-t",          words[1],  "-c:v",
                      "libx264", "-preset",     "ultrafast", "-pix_fmt",    "yuv420p", words[0]},
                     {.logFile = (unit.run() / "film.log").string()});
    return status == 0 ? 0
                       : fail("the film was not made; see " + (unit.run() / "film.log").string());
}

int viewVerb(const Unit& unit, const Words& words) {
    long long port = 0;
    if (words.size() > 1 ||
        (words.size() == 1 && (!parseNumber(words[0], port) || port < 1024 || port > 65535))) {
        return wrongUse("view");
    }
    Place place;
    if (!isRunning(unit) || !findPlace(unit, place)) {
        return fail("no unit runs in " + unit.device.string() + "; start one with: headunit boot");
    }
    const std::string served = readRunFile(unit, "view.url");
    if (!served.empty() && helperProcess(unit, "view.pid") != 0 &&
        helperProcess(unit, "view-web.pid") != 0) {
        std::puts(served.c_str());
        return 0;
    }
    // One of the two has died: the page of the other would stay empty.
    endHelper(unit, "view-web.pid");
    endHelper(unit, "view.pid");
    if (port != 0 && answers(static_cast<int>(port))) {
        return fail("port " + words[0] + " is in use; name another");
    }
    const int screenPort = freePort();
    const int webPort = port != 0 ? static_cast<int>(port) : freePort();
    process::Arguments screen = {"x11vnc", "-localhost", "-forever", "-shared",
                                 "-nopw",  "-noxdamage", "-rfbport", std::to_string(screenPort)};
    if (place.window != "root") {
        screen.insert(screen.end(), {"-id", place.window});
    }
    std::string why;
    if (!startServer(unit, screen, "view.pid", screenPort, why) ||
        !startServer(
            unit,
            {"websockify", "--web", "/usr/share/novnc", "127.0.0.1:" + std::to_string(webPort),
             "127.0.0.1:" + std::to_string(screenPort)},
            "view-web.pid", webPort, why)) {
        return fail(why);
    }
    const std::string url =
        "http://127.0.0.1:" + std::to_string(webPort) + "/vnc.html?autoconnect=1&resize=scale";
    writeRunFile(unit, "view.url", url);
    std::puts(url.c_str());
    return 0;
}

}  // namespace headunit
