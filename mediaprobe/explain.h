// The long answer: how the probe came to its result.
#pragma once

#include <string>

#include "probe/media_info.h"

namespace mediaprobe {

// A MediaInfo that writes down what happens while it probes.
class ExplainingInfo final : public probe::MediaInfo {
public:
    probe::Result Probe(platform::ReadOnlyFile& file) override;

    // One line per recogniser, then the reads and bytes.
    const std::string& account() const { return account_; }

private:
    std::string account_;
};

// The three fields that the player takes, and whether it would refuse the file and why.
std::string playersView(probe::Result open, const probe::MediaRecord& record);

}  // namespace mediaprobe
