#include "mediaprobe/crew.h"

#include "mediaprobe/explain.h"
#include "mediaprobe/format_text.h"
#include "mediaprobe/host.h"
#include "mediaprobe/names.h"
#include "probe/record/diagnostics.h"

namespace mediaprobe {
namespace {

constexpr std::size_t kBatch = 64;          // files that a thread takes at a time
constexpr std::size_t kBatchesForEach = 4;  // of the ring, for each thread

// Where the diagnostic lines of the file that this thread looks at go.
thread_local Output* current = nullptr;

void keepLine(const char* line) {
    if (current) {
        current->addError(line);
    }
}

}  // namespace

void probeFile(const std::string& path, const Manner& manner, Output& output, Tally& tally) {
    current = &output;
    WatchedInfo info(manner.explain ? Account::Written : Account::None);
    const probe::Result open = info.Open(openedName(path).c_str());
    current = nullptr;
    // A folder cannot be opened as a file, and the system says that reading it is not allowed.
    const bool isFolder = open != probe::kOk && kindOf(path) == EntryKind::Folder;
    const Finding finding{path,
                          open,
                          info,
                          info.seen(),
                          info.claimedBy(),
                          open == probe::kOk ? ""
                          : isFolder         ? "it is a folder"
                                             : openErrorText(open)};
    if (manner.json) {
        appendJsonLine(output.text, finding);
    } else if (open == probe::kOk) {
        appendPage(output.text, finding, manner.style);
    }
    const std::string shown = manner.escapesErrors ? escaped(path) : path;
    if (manner.explain) {
        output.text +=
            (open == probe::kOk ? "" : path + '\n') + info.account() + playersView(open, info);
    }
    const bool good = info.containerType != probe::kContainerNone && info.status == probe::kOk;
    ++tally.files;
    tally.faulty += open == probe::kOk && good && info.seen().damage.empty() ? 0 : 1;
    if (open == probe::kOk) {
        output.meet(good ? kAllGood : kCleanNo);
    } else if (isFolder) {
        output.complain(shown + " is a folder; -r looks into folders");
    } else {
        output.complain(shown + " cannot be opened: " + finding.error);
    }
}

Crew::Crew(const Manner& manner, int jobs, bool showsProgress)
    : manner_(manner),
      progress_(showsProgress),
      ring_(jobs > 1 ? static_cast<std::size_t>(jobs) * kBatchesForEach : 1) {
    probe::setDiagnosticSink(keepLine);
    if (manner.explain) {
        listenForReasons();
    }
    for (int i = 0; jobs > 1 && i < jobs; ++i) {
        threads_.emplace_back([this] { work(); });
    }
}

Crew::~Crew() {
    finish();
}

void Crew::probe(std::string_view path) {
    add(path, true, kAllGood);
}

void Crew::say(std::string_view what, Exit exit) {
    add(what, false, exit);
}

void Crew::add(std::string_view text, bool isPath, Exit exit) {
    Batch& batch = ring_[filled_ % ring_.size()];
    if (batch.count == batch.jobs.size()) {
        batch.jobs.emplace_back();
    }
    Job& job = batch.jobs[batch.count++];
    job.text = text;
    job.isPath = isPath;
    job.exit = exit;
    if (threads_.empty()) {
        workOn(batch);
        print(batch);
    } else if (batch.count == kBatch) {
        handOver();
    }
}

void Crew::workOn(Batch& batch) {
    for (std::size_t i = 0; i < batch.count; ++i) {
        const Job& job = batch.jobs[i];
        if (job.isPath) {
            probeFile(job.text, manner_, batch.output, batch.tally);
        } else {
            batch.output.say(manner_.escapesErrors ? escaped(job.text) : job.text);
            batch.output.meet(job.exit);
        }
    }
}

void Crew::print(Batch& batch) {
    progress_.wipe();
    exit_ = std::max(exit_, batch.output.exit());
    batch.output.write();
    tally_.files += batch.tally.files;
    tally_.faulty += batch.tally.faulty;
    batch.tally = {};
    batch.count = 0;
    batch.done = false;
    progress_.show(tally_);
}

// Gives the batch that was filled to the crew, and has room for the next one when it returns.
void Crew::handOver() {
    {
        const std::lock_guard lock(mutex_);
        ++filled_;
    }
    work_.notify_one();
    if (filled_ - oldest_ == ring_.size()) {
        printOldest();
    }
}

void Crew::printOldest() {
    Batch& batch = ring_[oldest_ % ring_.size()];
    {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [&batch] { return batch.done; });
    }
    print(batch);
    ++oldest_;
}

void Crew::work() {
    for (;;) {
        std::unique_lock lock(mutex_);
        work_.wait(lock, [this] { return next_ < filled_ || ended_; });
        if (next_ == filled_) {
            return;
        }
        Batch& batch = ring_[next_++ % ring_.size()];
        lock.unlock();
        workOn(batch);
        lock.lock();
        batch.done = true;
        lock.unlock();
        done_.notify_one();
    }
}

int Crew::finish() {
    if (!threads_.empty()) {
        handOver();
        while (oldest_ < filled_) {
            printOldest();
        }
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
        }
        work_.notify_all();
        for (std::thread& thread : threads_) {
            thread.join();
        }
        threads_.clear();
    }
    progress_.wipe();
    return exit_;
}

}  // namespace mediaprobe
