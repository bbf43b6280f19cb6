// What the processes of the unit print, and how they end.
#include <memory>

#include "simulator/hub/hub.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

// What the program printed comes as bytes in its own encoding: UTF-8 where it is valid, else the
// system's code page.
void recordPrinted(const std::wstring& name, const std::string& line) {
    const int length = static_cast<int>(line.size());
    const bool isUtf8 =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, line.data(), length, nullptr, 0) > 0;
    const UINT page = isUtf8 ? CP_UTF8 : CP_ACP;
    std::wstring text(line.size(), L'\0');
    const int count = MultiByteToWideChar(page, 0, line.data(), length, text.data(),
                                          static_cast<int>(text.size()));
    tape::Line("print")
        .text("from", name.c_str())
        .text("text", text.data(), static_cast<std::size_t>(count));
}

// The C runtime's text mode turned every "\n" into "\r\n"; the tape shows what was printed, its
// line end included.
void readOutput(const std::wstring& name, HANDLE pipe) {
    std::string line;
    char bytes[512];
    DWORD count = 0;
    while (ReadFile(pipe, bytes, sizeof(bytes), &count, nullptr) && count > 0) {
        for (DWORD i = 0; i < count; ++i) {
            if (bytes[i] == '\n') {
                if (!line.empty() && line.back() == '\r') {
                    line.pop_back();
                }
                recordPrinted(name, line + '\n');
                line.clear();
            } else {
                line += bytes[i];
            }
        }
    }
    if (!line.empty()) {
        recordPrinted(name, line);
    }
    CloseHandle(pipe);
}

struct WatchedOutput {
    std::wstring name;
    HANDLE pipe;
};

DWORD WINAPI outputThread(LPVOID parameter) {
    auto* watched = static_cast<WatchedOutput*>(parameter);
    readOutput(watched->name, watched->pipe);
    delete watched;
    return 0;
}

struct WatchedEnd {
    Child child;
    HANDLE output;  // the thread that reads its output, or null
    void (*forget)(DWORD process);
};

DWORD WINAPI endThread(LPVOID parameter) {
    auto* watched = static_cast<WatchedEnd*>(parameter);
    WaitForSingleObject(watched->child.process, INFINITE);
    if (watched->output != nullptr) {
        // What it printed last comes before its end.
        WaitForSingleObject(watched->output, 1000);
        CloseHandle(watched->output);
    }
    DWORD value = 0;
    GetExitCodeProcess(watched->child.process, &value);
    tape::Line("process")
        .text("from", watched->child.program.name.c_str())
        .text("text", L"ended")
        .number("process", watched->child.number)
        .number("exit", static_cast<std::int32_t>(value));
    // Only now: who finds that it runs no more may end this program at once.
    watched->forget(watched->child.number);
    CloseHandle(watched->child.process);
    delete watched;
    return 0;
}

}  // namespace

HANDLE startReader(const std::wstring& name, HANDLE pipe) {
    auto watched = std::make_unique<WatchedOutput>(WatchedOutput{name, pipe});
    const HANDLE thread = CreateThread(nullptr, 0, &outputThread, watched.get(), 0, nullptr);
    if (thread == nullptr) {
        CloseHandle(pipe);
        return nullptr;
    }
    watched.release();
    return thread;
}

bool startWatcher(const Child& child, HANDLE output, void (*forget)(DWORD process), DWORD& error) {
    auto watched = std::make_unique<WatchedEnd>(WatchedEnd{child, output, forget});
    const HANDLE thread = CreateThread(nullptr, 0, &endThread, watched.get(), 0, nullptr);
    if (thread == nullptr) {
        error = GetLastError();
        return false;
    }
    watched.release();
    CloseHandle(thread);
    return true;
}

}  // namespace hub
