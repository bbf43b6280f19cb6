// Probing bytes in memory, with the diagnostics caught and the file made to fail on demand.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/file.h"
#include "probe/media_info.h"
#include "samples.h"

namespace probe_test {

// A file in memory that counts what is asked of it and can be made to misbehave.
class TestFile final : public platform::ReadOnlyFile {
public:
    explicit TestFile(const Bytes& bytes) : bytes_(bytes) {}

    bool size(std::uint64_t& bytes) override;
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override;

    std::uint64_t failAtRead = 0;        // this read, counted from 1, fails; 0 none does
    std::uint64_t badFrom = 0;           // reads that touch the bytes from here
    std::uint64_t badTo = 0;             // to here, exclusive, fail
    std::size_t longestRead = SIZE_MAX;  // a read delivers no more than this, as if cut short
    std::uint64_t claimedSize = 0;       // the size told instead of the real one; 0 the real one
    bool sizeFails = false;

    std::uint64_t reads = 0;
    std::uint64_t bytesAsked = 0;
    std::uint64_t bytesRead = 0;
    std::uint64_t cost = 0;  // bytes read, a read of less than a sector counting as one

private:
    const Bytes& bytes_;
};

struct Outcome {
    std::unique_ptr<probe::MediaInfo> info;
    probe::Result claimed = 0;  // what Probe returned
    std::string lines;          // the diagnostic lines
    std::uint64_t reads = 0;
    std::uint64_t bytesRead = 0;
    std::uint64_t cost = 0;
};

Outcome probeFile(TestFile& file);
Outcome probeBytes(const Bytes& bytes);
// Every read that touches the `count` bytes from `bad` on fails.
Outcome probeWithBad(const Bytes& bytes, std::uint64_t bad, std::uint64_t count = 1);

// One line per field, as in the golden dumps.
std::string dump(const Outcome& outcome);

}  // namespace probe_test
