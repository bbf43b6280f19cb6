// headunit scenario: runs several scenario files side by side and reports on them.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <pugixml.hpp>

#include "simulator/command/scenario.h"

namespace headunit {
namespace {

struct Job {
    fs::path file;
    std::vector<Section> sections;
    fs::path report;  // what the process that runs it leaves
};

// One line of JSON for each section.
void writeReport(const Job& job, const std::vector<SectionResult>& results) {
    std::ofstream out(job.report, std::ios::binary | std::ios::trunc);
    for (const SectionResult& result : results) {
        out << oneLine({{"name", result.name},
                        {"passed", result.passed},
                        {"report", result.report},
                        {"reason", result.reason},
                        {"seconds", result.seconds}})
            << '\n';
    }
}

// A process that died left no report: every section counts as failed.
std::vector<SectionResult> readReport(const Job& job) {
    std::vector<SectionResult> results;
    std::ifstream in(job.report, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        const Json value = parseJson(line);
        if (value.is_object()) {
            results.push_back({textOf(value, "name"), value.value("passed", false),
                               textOf(value, "report"), textOf(value, "reason"),
                               value.value("seconds", 0.0)});
        }
    }
    for (std::size_t i = results.size(); i < job.sections.size(); ++i) {
        results.push_back({job.sections[i].name, false, "",
                           job.file.string() + ": the runner ended before this section", 0});
    }
    return results;
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
            pugi::xml_node test = suite_.append_child("testcase");
            test.append_attribute("classname") = scenarioLabel(job.file).c_str();
            test.append_attribute("name") = result.name.c_str();
            test.append_attribute("time") = result.seconds;
            if (!result.passed) {
                test.append_child("failure").append_attribute("message") = result.reason.c_str();
            }
        }
        std::fflush(stdout);
    }

    bool writeJunit(const std::string& file) {
        suite_.append_attribute("name") = "scenarios";
        suite_.append_attribute("tests") = passed + failed;
        suite_.append_attribute("failures") = failed;
        return junit_.save_file(file.c_str(), "  ");
    }

    int passed = 0;
    int failed = 0;

private:
    bool verbose_;
    pugi::xml_document junit_;
    pugi::xml_node suite_ = junit_.append_child("testsuite");
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

Outcome runFiles(const Words& files, std::size_t atOnce, bool verbose, const std::string& junit,
                 const ScenarioOptions& options) {
    std::error_code error;
    const fs::path work = projectRoot() / "out/scenarios";
    fs::create_directories(work, error);
    std::vector<Job> jobs;
    std::string why;
    for (const std::string& file : files) {
        auto sections = readScenario(file, why);
        if (!sections) {
            return {false, why, Exit::WrongUse};
        }
        jobs.push_back(
            {file, *sections,
             work / (std::to_string(getpid()) + "." + std::to_string(jobs.size()) + ".report")});
    }
    // Those that take long begin first, so that no core is left with one of them in the end.
    std::ranges::stable_sort(jobs, std::ranges::greater(), &stepCount);
    Totals totals(verbose || files.size() == 1);
    runJobs(jobs, atOnce, options, totals);
    std::printf("%d passed, %d failed\n", totals.passed, totals.failed);
    if (!junit.empty() && !totals.writeJunit(junit)) {
        return failed(junit + " cannot be written");
    }
    // What failed has been said.
    return {totals.failed == 0, ""};
}

}  // namespace

Run scenarioVerb(Parser& parser) {
    const auto atOnce = parser.option("-j", "N", "how many units side by side", between(1, 1000));
    const auto verbose = parser.flag("--verbose", "every step, not only those of what failed");
    const auto keep = parser.flag("--keep", "leave the unit's folder");
    const auto junit = parser.option("--junit", "FILE", "a report as JUnit's XML");
    const auto golden = parser.flag("--update-golden", "write the pictures that are compared with");
    const auto files = parser.words("FILE", "scenarios, see docs/head-unit.md");
    return [=](const Call&) {
        const auto side = atOnce->empty() ? 1U : static_cast<std::size_t>(number(*atOnce));
        return runFiles(*files, side, *verbose, *junit, {*golden, *keep});
    };
}

}  // namespace headunit
