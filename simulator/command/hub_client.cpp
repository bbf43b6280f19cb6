// Asking the hub: one connection to its loopback port for each question.
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "simulator/command/unit.h"
#include "simulator/shared/json.h"

namespace headunit {
namespace {

constexpr char kTokenFile[] = "token";

std::string converse(int connection, const std::string& request) {
    for (std::size_t sent = 0; sent < request.size();) {
        const ssize_t count =
            send(connection, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return {};
        }
        sent += static_cast<std::size_t>(count);
    }
    std::string answer;
    char bytes[4096];
    ssize_t count = 0;
    while ((count = recv(connection, bytes, sizeof(bytes), 0)) > 0) {
        answer.append(bytes, static_cast<std::size_t>(count));
    }
    return answer;
}

}  // namespace

int connectTo(int port) {
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connection >= 0 &&
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        close(connection);
        return -1;
    }
    return connection;
}

void writeToken(const Unit& unit) {
    std::array<unsigned char, 16> secret = {};
    const fs::path file = unit.run() / kTokenFile;
    std::error_code error;
    fs::remove(file, error);
    const int handle = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    std::string digits;
    if (getrandom(secret.data(), secret.size(), 0) == std::ssize(secret)) {
        for (const unsigned char byte : secret) {
            constexpr char kDigits[] = "0123456789abcdef";
            digits += kDigits[byte >> 4];
            digits += kDigits[byte & 15];
        }
    }
    const bool good = handle >= 0 && !digits.empty() &&
                      write(handle, digits.data(), digits.size()) == std::ssize(digits);
    close(handle);
    if (!good) {
        throw Failure(file.string() + " cannot be written; is the disk full?");
    }
}

std::string commandFor(const Unit& unit, const std::string& words) {
    std::string text = "./headunit " + words;
    if (unit.device == projectRoot() / "out" / "device") {
        return text;
    }
    const std::string device = unit.device.string();
    if (device.find_first_of(" \t\n'\"\\$`*?[]{}()<>|&;#~!") == std::string::npos) {
        return text + " --device " + device;
    }
    text += " --device '";
    for (const char c : device) {
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return text + '\'';
}

std::string noUnit(const Unit& unit) {
    return "no unit runs in " + unit.device.string() +
           "; start one with: " + commandFor(unit, "boot");
}

bool ask(const Unit& unit, const std::vector<std::string>& words, std::string& answer) {
    const int port = std::atoi(readRunFile(unit, "port").c_str());
    const int connection = port > 0 ? connectTo(port) : -1;
    if (connection < 0) {
        answer = noUnit(unit);
        return false;
    }
    const Json request = {{"token", readRunFile(unit, kTokenFile)}, {"words", words}};
    const Json given = parseJson(converse(connection, oneLine(request) + '\n'));
    close(connection);
    if (!given.is_object()) {
        answer = "the unit ended before it answered";
        return false;
    }
    const Json value = given.value("value", Json());
    answer = value.is_null() ? "" : plain(value);
    return given.value("ok", false);
}

std::string demand(const Unit& unit, const std::vector<std::string>& words) {
    std::string answer;
    if (!ask(unit, words, answer)) {
        throw Failure(answer);
    }
    return answer;
}

bool isRunning(const Unit& unit) {
    std::string answer;
    return ask(unit, {"ping"}, answer);
}

void requireRunning(const Unit& unit) {
    if (!isRunning(unit)) {
        throw Failure(noUnit(unit));
    }
}

}  // namespace headunit
