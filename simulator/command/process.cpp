#include "simulator/command/process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <string_view>
#include <thread>

namespace process {
namespace {

// The command's own environment with these entries in place of those of the same name.
std::vector<std::string> environmentWith(const std::vector<std::string>& entries) {
    std::vector<std::string> all = entries;
    for (char** own = environ; *own != nullptr; ++own) {
        const std::string_view entry = *own;
        const auto name = entry.substr(0, entry.find('=') + 1);
        const auto isSame = [name](const std::string& other) { return other.starts_with(name); };
        if (std::ranges::none_of(entries, isSame)) {
            all.emplace_back(entry);
        }
    }
    return all;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

// -1 when it cannot be started; `output` is the writing end of a pipe, or -1.
pid_t spawn(const Arguments& arguments, const Options& options, int output, short flags) {
    constexpr char kNothing[] = "/dev/null";
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, kNothing, O_RDONLY, 0);
    if (!options.keepOutput) {
        const char* log = options.logFile.empty() ? kNothing : options.logFile.c_str();
        posix_spawn_file_actions_addopen(&files, 1, log, O_WRONLY | O_CREAT | O_APPEND, 0644);
        posix_spawn_file_actions_adddup2(&files, 1, 2);
    }
    if (output >= 0) {
        posix_spawn_file_actions_adddup2(&files, output, 1);
    }
    if (output >= 0 && options.errorsToo) {
        posix_spawn_file_actions_adddup2(&files, output, 2);
    }
    if (!options.folder.empty()) {
        posix_spawn_file_actions_addchdir_np(&files, options.folder.c_str());
    }
    // This command may have put interrupts off; the program must not inherit that.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, static_cast<short>(POSIX_SPAWN_SETSIGMASK | flags));
    const std::vector<std::string> environment = environmentWith(options.environment);
    pid_t child = -1;
    const int failure = posix_spawnp(&child, arguments[0].c_str(), &files, &attributes,
                                     pointersTo(arguments).data(), pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? child : -1;
}

int statusOf(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return 127;
        }
    }
    return statusOf(status);
}

}  // namespace

pid_t startDetached(const Arguments& arguments, const Options& options) {
    return spawn(arguments, options, -1, POSIX_SPAWN_SETSID);
}

int run(const Arguments& arguments, const Options& options) {
    const pid_t child = spawn(arguments, options, -1, 0);
    return child < 0 ? 127 : waitFor(child);
}

int runReading(const Arguments& arguments, const Options& options, std::string& output) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return 127;
    }
    const pid_t child = spawn(arguments, options, ends[1], 0);
    close(ends[1]);
    char bytes[4096];
    for (;;) {
        const ssize_t count = read(ends[0], bytes, sizeof(bytes));
        if (count > 0) {
            output.append(bytes, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    close(ends[0]);
    return child < 0 ? 127 : waitFor(child);
}

bool isAlive(pid_t process) {
    if (process <= 0) {
        return false;
    }
    // A child of this very command that has ended still counts as a process until it is waited for.
    waitpid(process, nullptr, WNOHANG);
    // Elsewhere nobody may ever wait for it: proc(5), the state stands behind the name in brackets.
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    const auto bracket = line.rfind(')');
    return bracket != std::string::npos && bracket + 2 < line.size() && line[bracket + 2] != 'Z';
}

void end(pid_t process, int patienceMilliseconds) {
    const auto isGone = [process] { return !isAlive(process); };
    if (isGone()) {
        return;
    }
    kill(process, SIGTERM);
    if (!waitUntil(patienceMilliseconds, isGone)) {
        kill(process, SIGKILL);
        waitUntil(2000, isGone);
    }
}

FileLock::FileLock(const std::string& file, int how)
    : handle_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
    flock(handle_, how);
}

FileLock::~FileLock() {
    close(handle_);
}

void sleepMilliseconds(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

long long nowMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool waitUntil(int milliseconds, const std::function<bool()>& isSo) {
    const long long end = nowMilliseconds() + milliseconds;
    while (!isSo()) {
        if (nowMilliseconds() >= end) {
            return false;
        }
        sleepMilliseconds(10);
    }
    return true;
}

}  // namespace process
