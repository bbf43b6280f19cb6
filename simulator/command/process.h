// Starting other programs, without a shell.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace process {

using Arguments = std::vector<std::string>;

struct Options {
    // "NAME=value" entries that replace or join the command's own environment.
    std::vector<std::string> environment = {};
    std::string folder = {};   // current directory; empty: the command's own
    std::string logFile = {};  // its output and errors are added there; empty: thrown away
    bool keepOutput = false;   // the program shares the command's own output and errors
    bool errorsToo = false;    // see runReading()
};

// Starts a program that goes on when this command ends (a session of its own). -1 when it cannot be
// started; a program that is not installed counts as that.
pid_t startDetached(const Arguments& arguments, const Options& options);

// Starts a program and waits for it. The exit status; 127 when it cannot be started, 128 + signal
// when it was ended by one.
int run(const Arguments& arguments, const Options& options);
// The same, keeping what it writes to its standard output, with `errorsToo` also to its errors.
int runReading(const Arguments& arguments, const Options& options, std::string& output);

bool isAlive(pid_t process);
// Ends a process: asked first, made to after `patienceMilliseconds`. Returns when it is gone.
void end(pid_t process, int patienceMilliseconds);

// Commands that hold the same file take turns: `how` is flock()'s LOCK_EX, or LOCK_SH for those
// that may go on together.
class FileLock {
public:
    FileLock(const std::string& file, int how);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    int handle_;
};

void sleepMilliseconds(int milliseconds);
long long nowMilliseconds();
// Looks every few milliseconds until it is so; false when it is not within that time.
bool waitUntil(int milliseconds, const std::function<bool()>& isSo);

}  // namespace process
