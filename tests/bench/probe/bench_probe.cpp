// Times the probe on real files against a bare loop that reads the same byte ranges, and against
// libavformat, MediaInfoLib and (audio) TagLib. In-process, warm cache; processor time of the
// thread, which waits for nothing, so that other work on the machine counts little. Prints a
// table of medians and ratios. Usage: bench_probe [google-benchmark options] FILE...
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "others.h"
#include "platform/file.h"
#include "platform/text.h"
#include "probe/media_info.h"
#include "probe/record/diagnostics.h"

namespace {

using Ranges = std::vector<std::pair<std::uint64_t, std::size_t>>;

// Notes the reads that the probe makes.
class NotingFile final : public platform::ReadOnlyFile {
public:
    explicit NotingFile(platform::ReadOnlyFile& file) : file_(file) {}
    bool size(std::uint64_t& bytes) override { return file_.size(bytes); }
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        ranges.emplace_back(offset, buffer.size());
        const bool done = file_.readAt(offset, buffer, read);
        delivered += read;
        return done;
    }
    Ranges ranges;
    std::uint64_t delivered = 0;

private:
    platform::ReadOnlyFile& file_;
};

struct Subject {
    std::string path;
    std::u16string wide;
    Ranges ranges;
    std::uint64_t bytes = 0;
    std::size_t largest = 0;  // of the ranges
    bool audio = false;
};

Subject subjectOf(const char* path) {
    Subject subject{.path = path, .wide = platform::toUtf16(path), .ranges = {}};
    std::uint32_t error = 0;
    const auto file = platform::openFile(subject.wide.c_str(), error);
    if (!file) {
        std::fprintf(stderr, "%s cannot be opened\n", path);
        std::exit(2);
    }
    NotingFile noting(*file);
    probe::MediaInfo info;
    static_cast<void>(info.Probe(noting));
    subject.ranges = noting.ranges;
    subject.bytes = noting.delivered;
    for (const auto& range : subject.ranges) {
        subject.largest = std::max(subject.largest, range.second);
    }
    subject.audio = info.videoFourCC == 0 && info.audioFormatTag != 0 && info.imageWidth == 0;
    return subject;
}

void openWithProbe(const Subject& subject) {
    probe::MediaInfo info;
    benchmark::DoNotOptimize(info.Open(subject.wide.c_str()));
    benchmark::DoNotOptimize(info.containerType);
}

// The system calls alone: open, each read that the probe makes, close.
void readBare(const Subject& subject, std::uint8_t* buffer) {
    const int file = open(subject.path.c_str(), O_RDONLY | O_CLOEXEC);
    for (const auto& [offset, length] : subject.ranges) {
        benchmark::DoNotOptimize(pread(file, buffer, length, static_cast<off_t>(offset)));
    }
    close(file);
    benchmark::ClobberMemory();
}

// The same reads through the player's own view of a file, its size asked for besides.
void readSeam(const Subject& subject, std::uint8_t* buffer) {
    std::uint32_t error = 0;
    const auto file = platform::openFile(subject.wide.c_str(), error);
    std::uint64_t size = 0;
    std::size_t read = 0;
    benchmark::DoNotOptimize(file->size(size));
    for (const auto& [offset, length] : subject.ranges) {
        benchmark::DoNotOptimize(file->readAt(offset, {buffer, length}, read));
    }
    benchmark::ClobberMemory();
}

void runProbe(benchmark::State& state, const Subject& subject) {
    for (auto _ : state) {
        openWithProbe(subject);
    }
}

double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <typename Work>
double timeOfSome(Work&& work) {
    constexpr int kTimes = 32;
    const double start = processorTime();
    for (int i = 0; i < kTimes; ++i) {
        work();
    }
    return processorTime() - start;
}

// The probe and the two loops in turn, so that all three meet the same load: their times differ
// by less than a busy machine's from one second to the next.
void runBeside(benchmark::State& state, const Subject& subject) {
    const std::unique_ptr<std::uint8_t[]> buffer(new std::uint8_t[subject.largest]);
    double own = 0, bare = 0, seam = 0;
    for (auto _ : state) {
        own += timeOfSome([&] { openWithProbe(subject); });
        bare += timeOfSome([&] { readBare(subject, buffer.get()); });
        seam += timeOfSome([&] { readSeam(subject, buffer.get()); });
    }
    state.counters["bare"] = own / bare;
    state.counters["seam"] = own / seam;
}

void runOther(benchmark::State& state, const Subject& subject, bool (*open)(const char*)) {
    for (auto _ : state) {
        if (!open(subject.path.c_str())) {
            state.SkipWithError("not recognised");
            break;
        }
    }
}

// Keeps the medians by "what/file": microseconds, for "bare" and "seam" ratios.
class Medians final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median" && !run.error_occurred) {
                values[run.run_name.function_name] = run.GetAdjustedCPUTime();
                const std::string& name = run.run_name.function_name;
                for (const auto& [counter, value] : run.counters) {
                    values[counter + name.substr(name.find('/'))] = value;
                }
            }
        }
    }
    std::map<std::string, double> values;
};

double geometricMean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values) {
        sum += std::log(value);
    }
    return values.empty() ? 0 : std::exp(sum / static_cast<double>(values.size()));
}

constexpr const char* kKinds[] = {"bare", "seam", "libavformat", "MediaInfoLib", "TagLib"};
constexpr std::size_t kBares = 2;  // of these: their medians are ratios already

void printTable(const std::vector<Subject>& subjects, const Medians& medians) {
    std::map<std::string, std::vector<double>> ratios;
    std::printf(
        "| file | reads | bytes | probe, us | / bare | / seam | libavformat / | MediaInfoLib / "
        "| TagLib / |\n|---|---|---|---|---|---|---|---|---|\n");
    for (const Subject& subject : subjects) {
        const auto probe = medians.values.find("probe/" + subject.path);
        if (probe == medians.values.end()) {
            continue;  // filtered out
        }
        const double own = probe->second;
        const std::string name = subject.path.substr(subject.path.rfind('/') + 1);
        std::printf("| %s | %zu | %llu | %.2f |", name.c_str(), subject.ranges.size(),
                    static_cast<unsigned long long>(subject.bytes), own);
        for (std::size_t i = 0; i < std::size(kKinds); ++i) {
            const char* const kind = kKinds[i];
            const auto found = medians.values.find(std::string(kind) + "/" + subject.path);
            if (found == medians.values.end()) {
                std::printf(" - |");
                continue;
            }
            const double ratio = i < kBares ? found->second : found->second / own;
            ratios[kind].push_back(ratio);
            std::printf(ratio < 10 ? " %.2f |" : " %.0f |", ratio);
        }
        std::printf("\n");
    }
    for (const char* kind : kKinds) {
        std::vector<double> all = ratios[kind];
        std::sort(all.begin(), all.end());
        if (!all.empty()) {
            std::printf("%s: geometric mean %.2f, least %.2f, most %.2f over %zu files\n", kind,
                        geometricMean(all), all.front(), all.back(), all.size());
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    silenceOthers();
    probe::setDiagnosticSink(nullptr);
    std::vector<Subject> subjects;
    for (int i = 1; i < argc; ++i) {
        subjects.push_back(subjectOf(argv[i]));
    }
    for (const Subject& subject : subjects) {
        const auto add = [&subject](const char* kind, auto&& function) {
            benchmark::RegisterBenchmark((std::string(kind) + "/" + subject.path).c_str(), function)
                ->Unit(benchmark::kMicrosecond)
                ->ReportAggregatesOnly();
        };
        add("probe", [&subject](benchmark::State& s) { runProbe(s, subject); });
        add("beside", [&subject](benchmark::State& s) { runBeside(s, subject); });
        add("libavformat",
            [&subject](benchmark::State& s) { runOther(s, subject, openWithLibavformat); });
        add("MediaInfoLib",
            [&subject](benchmark::State& s) { runOther(s, subject, openWithMediaInfoLib); });
        if (subject.audio) {
            add("TagLib",
                [&subject](benchmark::State& s) { runOther(s, subject, openWithTagLib); });
        }
    }
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    printTable(subjects, medians);
    return 0;
}
