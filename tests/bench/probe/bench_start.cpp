// How long a command takes to start, do its work and end, beside another: runs the two in turn, so
// that other work on the machine meets both alike, and prints the medians of wall time and
// processor time. Usage: bench_start TIMES PROGRAM FIRST-ARGUMENT OTHER-PROGRAM
// The first program gets one argument, the other none; what they print is thrown away.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Times {
    std::vector<double> wall;  // milliseconds
    std::vector<double> processor;
};

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

void runOnce(const posix_spawn_file_actions_t& actions, char* const* arguments, Times& times) {
    pid_t child = 0;
    int status = 0;
    rusage used{};
    const auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments, environ) != 0 ||
        wait4(child, &status, 0, &used) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s failed\n", arguments[0]);
        std::exit(2);
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    times.wall.push_back(wall.count());
    times.processor.push_back(milliseconds(used.ru_utime) + milliseconds(used.ru_stime));
}

double median(std::vector<double>& values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc == 5 ? std::atoi(argv[1]) : 0;
    if (count < 1) {
        std::fputs("usage: bench_start TIMES PROGRAM FIRST-ARGUMENT OTHER-PROGRAM\n", stderr);
        return 2;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char* const first[] = {argv[2], argv[3], nullptr};
    char* const other[] = {argv[4], nullptr};
    Times firstTimes, otherTimes;
    for (int i = 0; i < count; ++i) {
        runOnce(actions, first, firstTimes);
        runOnce(actions, other, otherTimes);
    }
    posix_spawn_file_actions_destroy(&actions);
    const double wall = median(firstTimes.wall), otherWall = median(otherTimes.wall);
    const double used = median(firstTimes.processor), otherUsed = median(otherTimes.processor);
    std::printf("wall %.3f ms against %.3f ms (%.2f), processor %.3f ms against %.3f ms (%.2f)\n",
                wall, otherWall, wall / otherWall, used, otherUsed, used / otherUsed);
    return 0;
}
