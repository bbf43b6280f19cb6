// headunit view: the screen in a web browser of this machine, over the loopback interface only.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "simulator/command/screen.h"
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
    const int connection = connectTo(port);
    close(connection);
    return connection >= 0;
}

// Starts one of the two servers of a view; it ends with the unit.
void startServer(const Unit& unit, const process::Arguments& arguments, const char* pidFile,
                 int port) {
    const std::string log = (unit.run() / (arguments[0] + ".log")).string();
    const pid_t server = process::startDetached(
        arguments, {.environment = {"HEADUNIT=" + unit.device.string(),
                                    "DISPLAY=" + readRunFile(unit, "display")},
                    .logFile = log});
    if (server < 0) {
        throw Failure(arguments[0] +
                      " is missing; install it with: apt-get install x11vnc novnc websockify");
    }
    writeRunFile(unit, pidFile, std::to_string(server));
    process::waitUntil(kViewPatience, [&] { return answers(port) || !process::isAlive(server); });
    if (!answers(port)) {
        throw Failure(arguments[0] + " did not start; see " + log);
    }
}

Outcome view(const Unit& unit, int port) {
    Screen display;
    std::string why;
    if (!display.open(unit, why)) {
        return failed(why);
    }
    const std::string served = readRunFile(unit, "view.url");
    if (!served.empty() && helperProcess(unit, "view.pid") != 0 &&
        helperProcess(unit, "view-web.pid") != 0) {
        return {true, served};
    }
    // One of the two has died: the page of the other would stay empty.
    endHelper(unit, "view-web.pid");
    endHelper(unit, "view.pid");
    if (port != 0 && answers(port)) {
        return failed("port " + std::to_string(port) + " is in use; name another");
    }
    const int screenPort = freePort();
    const int webPort = port != 0 ? port : freePort();
    process::Arguments screen = {"x11vnc", "-localhost", "-forever", "-shared",
                                 "-nopw",  "-noxdamage", "-rfbport", std::to_string(screenPort)};
    if (!display.isOwn()) {
        screen.insert(screen.end(), {"-id", std::to_string(display.window())});
    }
    const std::string loopback = "127.0.0.1:";
    startServer(unit, screen, "view.pid", screenPort);
    startServer(unit,
                {"websockify", "--web", "/usr/share/novnc", loopback + std::to_string(webPort),
                 loopback + std::to_string(screenPort)},
                "view-web.pid", webPort);
    const std::string url =
        "http://" + loopback + std::to_string(webPort) + "/vnc.html?autoconnect=1&resize=scale";
    writeRunFile(unit, "view.url", url);
    return {true, url};
}

}  // namespace

Run viewVerb(Parser& parser) {
    const auto port =
        parser.word("PORT", "of the web page, else a free one", Needed::No, between(1024, 65535));
    return [port](const Call& call) { return view(call.unit, static_cast<int>(number(*port))); };
}

}  // namespace headunit
