#include "samples.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace probe_test {
namespace {

std::vector<Sample>& registry() {
    static std::vector<Sample> all;
    return all;
}

}  // namespace

SampleSet::SampleSet(std::initializer_list<Sample> set) {
    registry().insert(registry().end(), set.begin(), set.end());
}

const std::vector<Sample>& samples() {
    static const bool sorted = [] {
        std::sort(registry().begin(), registry().end(),
                  [](const Sample& a, const Sample& b) { return a.name < b.name; });
        return true;
    }();
    static_cast<void>(sorted);
    return registry();
}

const Sample& sample(const std::string& name) {
    for (const Sample& one : samples()) {
        if (one.name == name) {
            return one;
        }
    }
    std::fprintf(stderr, "no sample is called %s\n", name.c_str());
    std::abort();
}

}  // namespace probe_test
