// The hub's end of the `headunit` command: one request a connection, one line of JSON in, one out.
//   {"token": "...", "words": ["message", "post", ...]}   ->   {"ok": true, "value": ...}
// The token is that of `\.unit\token`, which only the user who booted the unit can read: other
// users of the PC reach the port too.
#include <winsock2.h>

#include "simulator/hub/requests.h"

namespace hub {
namespace {

constexpr std::size_t kLongestRequest = 65536;
constexpr DWORD kAcceptPause = 100;  // milliseconds, after a connection that could not be taken

std::string token;

Answer answer(const std::string& line) {
    const Json request = headunit::parseJson(line);
    const auto words = request.is_object() ? request.find("words") : request.end();
    if (!request.is_object() || words == request.end() || !words->is_array()) {
        return failed("this is no request");
    }
    if (token.empty() || headunit::textOf(request, "token") != token) {
        return failed("the unit belongs to another user");
    }
    Words list;
    for (const Json& word : *words) {
        list.push_back(headunit::plain(word));
    }
    return execute(list);
}

void serve(SOCKET connection) {
    std::string request;
    char bytes[1024];
    while (request.find('\n') == std::string::npos && request.size() < kLongestRequest) {
        const int count = recv(connection, bytes, sizeof(bytes), 0);
        if (count <= 0) {
            break;
        }
        request.append(bytes, static_cast<std::size_t>(count));
    }
    const auto end = request.find('\n');
    if (end != std::string::npos) {
        const Answer given = answer(request.substr(0, end));
        const std::string line =
            headunit::oneLine({{"ok", given.good}, {"value", given.value}}) + '\n';
        for (std::size_t sent = 0; sent < line.size();) {
            const int count =
                send(connection, line.data() + sent, static_cast<int>(line.size() - sent), 0);
            if (count <= 0) {
                break;
            }
            sent += static_cast<std::size_t>(count);
        }
    }
    shutdown(connection, SD_SEND);
    closesocket(connection);
}

void listenOn(SOCKET listener) {
    for (;;) {
        const SOCKET connection = accept(listener, nullptr, nullptr);
        if (connection == INVALID_SOCKET) {
            Sleep(kAcceptPause);
        } else {
            CloseHandle(startThread([connection] { serve(connection); }));
        }
    }
}

// Written under another name first: whoever waits for the file finds it whole.
bool writePort(int port) {
    const HANDLE file =
        CreateFileW(L"\\.unit\\port.new", GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    const std::string text = std::to_string(port) + "\n";
    DWORD count = 0;
    const BOOL good =
        WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
    CloseHandle(file);
    return good &&
           MoveFileExW(L"\\.unit\\port.new", L"\\.unit\\port", MOVEFILE_REPLACE_EXISTING) != FALSE;
}

}  // namespace

bool startServer() {
    token = runFile(L"token");
    WSADATA data;
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0) {
        return false;
    }
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    int length = sizeof(address);
    if (listener == INVALID_SOCKET || bind(listener, plain, length) != 0 ||
        listen(listener, 16) != 0 || getsockname(listener, plain, &length) != 0) {
        return false;
    }
    CloseHandle(startThread([listener] { listenOn(listener); }));
    return writePort(ntohs(address.sin_port));
}

}  // namespace hub
