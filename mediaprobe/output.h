// What the work on some files has to say, on both streams and in order, kept until it is its turn.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mediaprobe {

enum Exit { kAllGood = 0, kCleanNo = 1, kWrong = 2 };

class Output {
public:
    // For standard output.
    std::string text;

    // A whole line for standard error, its line end included.
    void addError(std::string line) { errors_.push_back({text.size(), std::move(line)}); }
    // "mediaprobe: WHAT"
    void say(const std::string& what) { addError("mediaprobe: " + what + '\n'); }
    void complain(const std::string& what) {
        say(what);
        meet(kWrong);
    }

    // The worst wins.
    void meet(int exit) { exit_ = exit > exit_ ? exit : exit_; }
    int exit() const { return exit_; }

    // Writes both streams and forgets what was written; the exit status stays.
    void write();

private:
    struct Error {
        std::size_t at;  // in `text`
        std::string line;
    };
    std::vector<Error> errors_;
    int exit_ = kAllGood;
};

// Of one session, for the progress line and for nothing else.
struct Tally {
    std::uint64_t files = 0;
    std::uint64_t faulty = 0;  // not recognised, damaged, or not opened
};

// One line on standard error that is written over ten times a second: "12,345 files, 3 faulty". The
// line is wiped before anything else is printed and at the end. Shows nothing unless `shown`.
class Progress {
public:
    explicit Progress(bool shown) : shown_(shown) {}
    ~Progress() { wipe(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(const Tally& tally);
    void wipe();

private:
    const bool shown_;
    bool standing_ = false;
    std::int64_t nextMilliseconds_ = 0;
};

}  // namespace mediaprobe
