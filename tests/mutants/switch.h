// In front of every source that holds all its faults at once (tests/mutants/switches.py): which of
// them is on is read from the environment, MUTANT=N, none for 0. With MUTANT_TRACE=FILE the
// program leaves behind, one byte a fault, whose places were reached.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace mutants {

constexpr int kMost = 1 << 16;

// Read before any variable is constructed.
inline int active = 0;
[[gnu::constructor(101)]] static void readActive() {
    active = std::getenv("MUTANT") != nullptr ? std::atoi(std::getenv("MUTANT")) : 0;
}
inline unsigned char reached[kMost];

// Adds to what is there: a test may start several programs.
struct Trace {
    ~Trace() {
        const char* const path = std::getenv("MUTANT_TRACE");
        if (path == nullptr) {
            return;
        }
        if (std::FILE* const before = std::fopen(path, "rb")) {
            for (int i = 0, byte = 0; i < kMost && (byte = std::fgetc(before)) != EOF; ++i) {
                reached[i] = static_cast<unsigned char>(reached[i] | byte);
            }
            std::fclose(before);
        }
        if (std::FILE* const file = std::fopen(path, "wb")) {
            std::fwrite(reached, 1, kMost, file);
            std::fclose(file);
        }
    }
};
inline const Trace trace;

}  // namespace mutants

#define MUTANT_EARLY [[gnu::init_priority(102)]]
#define MUTANT(number) (mutants::reached[number] = 1, mutants::active == (number))
