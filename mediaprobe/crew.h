// The work itself: takes files in the order of the command line and prints in that order, whether
// one thread looks at them or many. What waits is bounded, so memory does not grow with the number
// of files.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "mediaprobe/options.h"
#include "mediaprobe/output.h"
#include "mediaprobe/report.h"

namespace mediaprobe {

struct Manner {
    bool json = false;
    bool explain = false;
    Style style;                 // of standard output
    bool escapesErrors = false;  // standard error is a terminal
};

// Looks at one file and adds what there is to say.
void probeFile(const std::string& path, const Manner& manner, Output& output, Tally& tally);

class Crew {
public:
    // `jobs`: how many files are looked at at a time, 1 or more.
    Crew(const Manner& manner, int jobs, bool showsProgress);
    ~Crew();
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    void probe(std::string_view path);
    // A line on standard error in its place among the files; the exit status at least.
    void say(std::string_view what, Exit exit);
    // Waits for the rest, prints it, and returns the exit status.
    int finish();

private:
    struct Job {
        std::string text;  // a path, or what is to be said
        bool isPath = true;
        Exit exit = kAllGood;
    };
    struct Batch {
        std::vector<Job> jobs;
        std::size_t count = 0;  // jobs in use; the others keep their memory for the next time
        Output output;
        Tally tally;
        bool done = false;
    };

    void work();
    void workOn(Batch& batch);
    void add(std::string_view text, bool isPath, Exit exit);
    void handOver();
    void printOldest();
    void print(Batch& batch);

    const Manner manner_;
    Progress progress_;
    Tally tally_;
    int exit_ = kAllGood;
    // A ring: `oldest_` <= `next_` <= `filled_`, counted up for ever. The batch at `filled_` is
    // being filled by the caller's thread, those from `next_` on wait for a thread of the crew,
    // those from `oldest_` on to be printed.
    std::vector<Batch> ring_;
    std::size_t oldest_ = 0, next_ = 0, filled_ = 0;
    bool ended_ = false;
    std::mutex mutex_;
    std::condition_variable work_, done_;
    std::vector<std::thread> threads_;
};

}  // namespace mediaprobe
