// Starting and ending the processes of the unit.
#include <algorithm>
#include <mutex>
#include <utility>

#include "simulator/hub/hub.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

constexpr DWORD kEndPatience = 2000;  // milliseconds

std::mutex childrenMutex;
std::vector<Child> children;
std::vector<Program> withoutPower;

void removeChild(DWORD number) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    std::erase_if(children, [number](const Child& child) { return child.number == number; });
}

bool create(const Program& program, HANDLE output, PROCESS_INFORMATION& process) {
    STARTUPINFOW start = {};
    start.cb = sizeof(start);
    if (output != nullptr) {
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdOutput = output;
        start.hStdError = output;
    }
    // Seen once in some forty starts on a loaded machine: Wine answers with an internal error, and
    // the next start goes well.
    constexpr int kAttempts = 3;
    constexpr DWORD kPauseMilliseconds = 200;
    for (int attempt = 1;; ++attempt) {
        std::wstring commandLine = program.commandLine;
        if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, output != nullptr,
                           CREATE_SUSPENDED, nullptr, program.folder.c_str(), &start, &process)) {
            return true;
        }
        if (GetLastError() != ERROR_INTERNAL_ERROR || attempt == kAttempts) {
            return false;
        }
        Sleep(kPauseMilliseconds);
    }
}

}  // namespace

DWORD startChild(const Program& program, DWORD& error) {
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (program.watch == Watch::EndsAndOutput) {
        SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
        if (CreatePipe(&read, &write, &inherit, 0)) {
            SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
        }
    }
    PROCESS_INFORMATION process = {};
    const bool created = create(program, write, process);
    error = created ? 0 : GetLastError();
    if (write != nullptr) {
        CloseHandle(write);
    }
    if (!created) {
        if (read != nullptr) {
            CloseHandle(read);
        }
        return 0;
    }
    HANDLE output = nullptr;
    if (program.watch == Watch::EndsAndOutput) {
        output = startReader(program.name, read);
    }
    const Child child = {program, process.hProcess, process.dwProcessId};
    {
        const std::lock_guard<std::mutex> lock(childrenMutex);
        children.push_back(child);
    }
    startWatcher(child, output, &removeChild);
    tape::Line("process")
        .text("from", program.name.c_str())
        .text("text", L"started")
        .number("process", child.number);
    ResumeThread(process.hThread);
    CloseHandle(process.hThread);
    return child.number;
}

std::wstring childName(DWORD process) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    for (const Child& child : children) {
        if (child.number == process) {
            return child.program.name;
        }
    }
    return {};
}

bool isRunning(const std::wstring& name) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    return std::ranges::any_of(children,
                               [&name](const Child& child) { return child.program.name == name; });
}

bool killChild(const std::wstring& name) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    bool found = false;
    for (const Child& child : children) {
        if (child.program.name == name) {
            TerminateProcess(child.process, 9);
            found = true;
        }
    }
    return found;
}

void cutPower() {
    {
        const std::lock_guard<std::mutex> lock(childrenMutex);
        for (const Child& child : children) {
            TerminateProcess(child.process, 9);
            if (child.program.name != kPlayer) {
                withoutPower.push_back(child.program);
            }
        }
    }
    for (DWORD waited = 0; waited < kEndPatience; waited += 10) {
        {
            const std::lock_guard<std::mutex> lock(childrenMutex);
            if (children.empty()) {
                return;
            }
        }
        Sleep(10);
    }
}

bool hasPower() {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    return withoutPower.empty();
}

std::vector<Program> takeWithoutPower() {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    return std::exchange(withoutPower, {});
}

}  // namespace hub
