// Fuzz target: a scenario, read and checked without a step of it being run; and each of its lines
// as words.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "simulator/command/scenario.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// A file of this process alone, under a name that a scenario may have.
class Scratch {
public:
    Scratch() : handle_(memfd_create("fuzzed.scn", 0)) { require(handle_ >= 0); }
    void put(const std::uint8_t* data, std::size_t size) const {
        require(ftruncate(handle_, 0) == 0);
        require(pwrite(handle_, data, size, 0) == static_cast<ssize_t>(size));
    }
    [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(handle_); }

private:
    int handle_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Scratch scratch;
    scratch.put(data, size);
    std::string why;
    const auto sections = headunit::readScenario(scratch.path(), why);
    if (!sections) {
        // The reason names the file and a line of it, on one line.
        require(why.starts_with(scratch.path() + ":"));
    } else {
        std::size_t lines = 1;
        for (std::size_t i = 0; i < size; ++i) {
            lines += data[i] == '\n' ? 1 : 0;
        }
        std::size_t steps = 0;
        for (const headunit::Section& section : *sections) {
            steps += section.steps.size();
            for (const headunit::Step& step : section.steps) {
                require(step.run != nullptr);
                require(step.line >= 1 && static_cast<std::size_t>(step.line) <= lines);
            }
        }
        require(!sections->empty() && steps <= lines);
    }
    headunit::Words words, again;
    if (headunit::splitWords({reinterpret_cast<const char*>(data), size}, words)) {
        require(headunit::splitWords(headunit::joinWords(words), again));
        require(again == words);
    }
    return 0;
}
