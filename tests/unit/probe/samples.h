// The small files that the tests of the probe are made of, each named after what it shows. Every
// area registers its own; the standing sweeps and the golden dumps run over all of them.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace probe_test {

using Bytes = std::vector<std::uint8_t>;

enum class Kind {
    Good,     // the probe recognises it and status is 0
    Claimed,  // recognised, but its parser gives up or fills nothing
    Refused,  // recognised by nobody
};

struct Sample {
    std::string name;  // "avi_second_vids_is_passed_over": also the name of its golden dump
    Kind kind;
    std::function<Bytes()> build;
};

// Every registered sample, ordered by name.
const std::vector<Sample>& samples();
// The sample of that name; the name must exist.
const Sample& sample(const std::string& name);

// A namespace-scope object of this type adds its samples before main starts.
struct SampleSet {
    SampleSet(std::initializer_list<Sample> set);
};

}  // namespace probe_test
