// What the processes of the unit print, and how they end.
#include <memory>

#include "simulator/hub/hub.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

constexpr DWORD kOutputPatience = 1000;  // milliseconds

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

DWORD WINAPI runWork(LPVOID parameter) {
    const std::unique_ptr<std::function<void()>> work(
        static_cast<std::function<void()>*>(parameter));
    (*work)();
    return 0;
}

}  // namespace

HANDLE startThread(std::function<void()> work) {
    auto owned = std::make_unique<std::function<void()>>(std::move(work));
    const HANDLE thread = CreateThread(nullptr, 0, &runWork, owned.get(), 0, nullptr);
    if (thread != nullptr) {
        owned.release();
    }
    return thread;
}

HANDLE startReader(const std::wstring& name, HANDLE pipe) {
    return startThread([name, pipe] { readOutput(name, pipe); });
}

void startWatcher(const Child& child, HANDLE output, void (*forget)(DWORD process)) {
    CloseHandle(startThread([child, output, forget] {
        WaitForSingleObject(child.process, INFINITE);
        if (output != nullptr) {
            // What it printed last comes before its end.
            WaitForSingleObject(output, kOutputPatience);
            CloseHandle(output);
        }
        DWORD value = 0;
        GetExitCodeProcess(child.process, &value);
        tape::Line("process")
            .text("from", child.program.name.c_str())
            .text("text", L"ended")
            .number("process", child.number)
            .number("exit", static_cast<std::int32_t>(value));
        // Only now: who finds that it runs no more may end this program at once.
        forget(child.number);
        CloseHandle(child.process);
    }));
}

}  // namespace hub
