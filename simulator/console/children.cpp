// Starting and watching the processes of the unit.
#include <memory>
#include <mutex>
#include <utility>

#include "simulator/console/hub.h"
#include "simulator/tape/tape.h"

namespace hub {
namespace {

constexpr wchar_t kTapLibrary[] = L"H:\\.unit\\bin\\tap.dll";
constexpr DWORD kTapPatience = 5000;  // milliseconds

constexpr DWORD kEndPatience = 2000;  // milliseconds
constexpr wchar_t kPlayer[] = L"movie.exe";

struct Child {
    std::wstring name;
    HANDLE process;
    DWORD number;
    Program program;
};

std::mutex childrenMutex;
std::vector<Child> children;
std::vector<Program> withoutPower;

void addChild(const Child& child) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    children.push_back(child);
}

void removeChild(DWORD number) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    std::erase_if(children, [number](const Child& child) { return child.number == number; });
}

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
        .text("from", watched->child.name.c_str())
        .text("text", L"ended")
        .number("process", watched->child.number)
        .number("exit", static_cast<std::int32_t>(value));
    // Only now: who finds that it runs no more may end this program at once.
    removeChild(watched->child.number);
    CloseHandle(watched->child.process);
    delete watched;
    return 0;
}

// Loads the tap before the first instruction of the program: the new process loads the library on a
// thread of ours while its own first thread still waits.
void loadTap(HANDLE process) {
    void* place = VirtualAllocEx(process, nullptr, sizeof(kTapLibrary), MEM_COMMIT, PAGE_READWRITE);
    if (place == nullptr ||
        !WriteProcessMemory(process, place, kTapLibrary, sizeof(kTapLibrary), nullptr)) {
        return;
    }
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW")));
    const HANDLE thread = CreateRemoteThread(process, nullptr, 0, load, place, 0, nullptr);
    if (thread != nullptr) {
        WaitForSingleObject(thread, kTapPatience);
        CloseHandle(thread);
    }
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

// The thread that reads what the child prints. Null when there can be none: the child's prints then
// fail, and it goes on.
HANDLE startReader(const WatchedOutput& watched) {
    auto copy = std::make_unique<WatchedOutput>(watched);
    const HANDLE thread = CreateThread(nullptr, 0, &outputThread, copy.get(), 0, nullptr);
    if (thread == nullptr) {
        CloseHandle(watched.pipe);
        return nullptr;
    }
    copy.release();
    return thread;
}

bool startWatcher(const WatchedEnd& watched, DWORD& error) {
    auto copy = std::make_unique<WatchedEnd>(watched);
    const HANDLE thread = CreateThread(nullptr, 0, &endThread, copy.get(), 0, nullptr);
    if (thread == nullptr) {
        error = GetLastError();
        return false;
    }
    copy.release();
    CloseHandle(thread);
    return true;
}

// A child whose end nobody would see counts as not started.
void dropUnwatched(const PROCESS_INFORMATION& process, HANDLE output) {
    TerminateProcess(process.hProcess, 9);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    if (output != nullptr) {
        CloseHandle(output);
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
        loadTap(process.hProcess);
        output = startReader({program.name, read});
    }
    const Child child = {program.name, process.hProcess, process.dwProcessId, program};
    if (!startWatcher({child, output}, error)) {
        dropUnwatched(process, output);
        return 0;
    }
    addChild(child);
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
            return child.name;
        }
    }
    return {};
}

bool isRunning(const std::wstring& name) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    for (const Child& child : children) {
        if (child.name == name) {
            return true;
        }
    }
    return false;
}

bool killChild(const std::wstring& name) {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    bool found = false;
    for (const Child& child : children) {
        if (child.name == name) {
            TerminateProcess(child.process, 9);
            found = true;
        }
    }
    return found;
}

void killAllChildren() {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    for (const Child& child : children) {
        TerminateProcess(child.process, 9);
    }
}

void cutPower() {
    {
        const std::lock_guard<std::mutex> lock(childrenMutex);
        for (const Child& child : children) {
            TerminateProcess(child.process, 9);
            if (child.name != kPlayer) {
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

std::vector<Program> takeWithoutPower() {
    const std::lock_guard<std::mutex> lock(childrenMutex);
    return std::exchange(withoutPower, {});
}

}  // namespace hub
