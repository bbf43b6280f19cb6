#include "simulator/command/process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <fstream>

namespace process {
namespace {

void setEnvironment(const std::vector<std::string>& entries) {
    for (const std::string& entry : entries) {
        const auto sign = entry.find('=');
        setenv(entry.substr(0, sign).c_str(), entry.substr(sign + 1).c_str(), 1);
    }
}

void redirect(const Options& options, int outputPipe) {
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, 0);
    int output = nothing;
    if (!options.logFile.empty()) {
        output = open(options.logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    }
    if (!options.keepOutput) {
        dup2(output, 1);
        dup2(output, 2);
    }
    if (outputPipe >= 0) {
        dup2(outputPipe, 1);
    }
    if (outputPipe >= 0 && options.errorsToo) {
        dup2(outputPipe, 2);
    }
}

// In the child, which was forked from a program with one thread.
// Returns only when the program cannot be started.
void become(const Arguments& arguments, const Options& options, int outputPipe) {
    // This command may have put interrupts off; the program must not inherit that.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    redirect(options, outputPipe);
    setEnvironment(options.environment);
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) {
        return;
    }
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    execvp(pointers[0], pointers.data());
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
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        close(report[0]);
        // The pipe closes by itself when the program was found; otherwise one byte says so.
        become(arguments, options, -1);
        const char failure = 1;
        static_cast<void>(!write(report[1], &failure, 1));
        _exit(127);
    }
    close(report[1]);
    char failure = 0;
    const bool failed = child < 0 || read(report[0], &failure, 1) > 0;
    close(report[0]);
    if (failed && child > 0) {
        waitFor(child);
    }
    return failed ? -1 : child;
}

int run(const Arguments& arguments, const Options& options) {
    const pid_t child = fork();
    if (child == 0) {
        become(arguments, options, -1);
        _exit(127);
    }
    return child < 0 ? 127 : waitFor(child);
}

int runReading(const Arguments& arguments, const Options& options, std::string& output) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return 127;
    }
    const pid_t child = fork();
    if (child == 0) {
        become(arguments, options, ends[1]);
        _exit(127);
    }
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
    if (!isAlive(process)) {
        return;
    }
    kill(process, SIGTERM);
    for (int waited = 0; waited < patienceMilliseconds && isAlive(process); waited += 10) {
        sleepMilliseconds(10);
    }
    if (isAlive(process)) {
        kill(process, SIGKILL);
        for (int waited = 0; waited < 2000 && isAlive(process); waited += 10) {
            sleepMilliseconds(10);
        }
    }
}

void sleepMilliseconds(int milliseconds) {
    timespec time = {milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    while (nanosleep(&time, &time) != 0 && errno == EINTR) {
    }
}

long long nowMilliseconds() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000LL + time.tv_nsec / 1000000;
}

}  // namespace process
