// headunit scenario: runs several scenario files side by side and reports on them.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "simulator/command/json.h"
#include "simulator/command/scenario.h"
#include "simulator/command/verbs.h"

namespace headunit {
namespace {

struct Job {
    fs::path file;
    std::vector<Section> sections;
    fs::path report;  // what the process that runs it leaves
};

// One line for each section: PASS or FAIL, seconds, name, reason, separated by tabs, then its
// report.
void writeReport(const Job& job, const std::vector<SectionResult>& results) {
    std::ofstream out(job.report, std::ios::binary | std::ios::trunc);
    for (const SectionResult& result : results) {
        out << json::quoted(result.name) << '\t' << (result.passed ? 1 : 0) << '\t'
            << result.seconds << '\t' << json::quoted(result.reason) << '\t'
            << json::quoted(result.report) << '\n';
    }
}

std::string unquoted(const std::string& text) {
    const auto value = json::parse(text);
    return value ? value->text : text;
}

// A process that died left no report: every section counts as failed.
std::vector<SectionResult> readReport(const Job& job) {
    std::vector<SectionResult> results;
    std::ifstream in(job.report, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::string> parts;
        std::stringstream stream(line);
        for (std::string part; std::getline(stream, part, '\t');) {
            parts.push_back(part);
        }
        if (parts.size() == 5) {
            results.push_back({unquoted(parts[0]), parts[1] == "1", unquoted(parts[4]),
                               unquoted(parts[3]), std::strtod(parts[2].c_str(), nullptr)});
        }
    }
    for (std::size_t i = results.size(); i < job.sections.size(); ++i) {
        results.push_back({job.sections[i].name, false, "",
                           job.file.string() + ": the runner ended before this section", 0});
    }
    return results;
}

std::string xml(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return out;
}

class Totals {
public:
    explicit Totals(bool verbose) : verbose_(verbose) {}

    void add(const Job& job, const std::vector<SectionResult>& results) {
        for (const SectionResult& result : results) {
            (result.passed ? passed : failed) += 1;
            std::printf("%s %s: %s (%.1f s)\n", result.passed ? "PASS" : "FAIL",
                        scenarioLabel(job.file).c_str(), result.name.c_str(), result.seconds);
            if (verbose_ || !result.passed) {
                std::fputs(
                    result.report.empty() ? (result.reason + "\n").c_str() : result.report.c_str(),
                    stdout);
            }
            cases_ += "  <testcase classname=\"" + xml(scenarioLabel(job.file)) + "\" name=\"" +
                      xml(result.name) + "\" time=\"" + std::to_string(result.seconds) + "\">" +
                      (result.passed ? "" : "<failure message=\"" + xml(result.reason) + "\"/>") +
                      "</testcase>\n";
        }
        std::fflush(stdout);
    }

    void writeJunit(const std::string& file) const {
        std::ofstream(file) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite "
                               "name=\"scenarios\" tests=\""
                            << passed + failed << "\" failures=\"" << failed << "\">\n"
                            << cases_ << "</testsuite>\n";
    }

    int passed = 0;
    int failed = 0;

private:
    bool verbose_;
    std::string cases_;
};

std::size_t stepCount(const Job& job) {
    std::size_t count = 0;
    for (const Section& section : job.sections) {
        count += section.steps.size();
    }
    return count;
}

void startJob(const Job& job, const ScenarioOptions& options,
              std::map<pid_t, const Job*>& running) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        // When this command is ended by force its runners end their units.
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        writeReport(job, runScenario(job.file, job.sections, options));
        std::fflush(stdout);
        _exit(0);
    }
    running[child] = &job;
}

void runJobs(const std::vector<Job>& jobs, std::size_t atOnce, const ScenarioOptions& options,
             Totals& totals) {
    std::map<pid_t, const Job*> running;
    std::size_t next = 0;
    while (next < jobs.size() || !running.empty()) {
        while (next < jobs.size() && running.size() < atOnce) {
            startJob(jobs[next++], options, running);
        }
        int status = 0;
        const pid_t ended = waitpid(-1, &status, 0);
        const auto found = running.find(ended);
        if (found != running.end()) {
            totals.add(*found->second, readReport(*found->second));
            std::error_code error;
            fs::remove(found->second->report, error);
            running.erase(found);
        }
    }
}

}  // namespace

int scenarioVerb(const Unit&, const Words& given) {
    Words words = given;
    ScenarioOptions options;
    options.updateGolden = takeFlag(words, "--update-golden");
    options.keep = takeFlag(words, "--keep");
    const bool verbose = takeFlag(words, "--verbose");
    std::string value = "1";
    long long atOnce = 1;
    for (std::string& word : words) {
        // "-j4" as well as "-j 4".
        if (word.starts_with("-j") && word.size() > 2) {
            value = word.substr(2);
            word = "-j";
            words.insert(words.begin() + (&word - words.data()) + 1, value);
            break;
        }
    }
    if (takeValue(words, "-j", value) && (!parseNumber(value, atOnce) || atOnce < 1)) {
        return wrongUse("scenario");
    }
    std::string junit;
    takeValue(words, "--junit", junit);
    if (words.empty() || words[0].starts_with("-")) {
        return wrongUse("scenario");
    }
    std::error_code error;
    const fs::path work = projectRoot() / "out/scenarios";
    fs::create_directories(work, error);
    std::vector<Job> jobs;
    for (const std::string& file : words) {
        std::string why;
        auto sections = readScenario(file, why);
        if (!sections) {
            fail(why);
            return 2;
        }
        jobs.push_back(
            {file, *sections,
             work / (std::to_string(getpid()) + "." + std::to_string(jobs.size()) + ".report")});
    }
    // Those that take long begin first, so that no core is left with one of them in the end.
    std::ranges::stable_sort(jobs, std::ranges::greater(), &stepCount);
    Totals totals(verbose || words.size() == 1);
    runJobs(jobs, static_cast<std::size_t>(atOnce), options, totals);
    if (!junit.empty()) {
        totals.writeJunit(junit);
    }
    std::printf("%d passed, %d failed\n", totals.passed, totals.failed);
    return totals.failed == 0 ? 0 : 1;
}

}  // namespace headunit
