// How the probe came to its result: who claimed the file, and the long answer.
#pragma once

#include <string>

#include "mediaprobe/second_look.h"
#include "probe/media_info.h"
#include "probe/read/read_window.h"

namespace mediaprobe {

enum class Account { None, Written };

// Has the recognisers' reasons kept for accounts that are written. Once, before the first one.
void listenForReasons();

// A MediaInfo that keeps who claimed the file and, if asked to, writes down what happens while it
// probes.
class WatchedInfo final : public probe::MediaInfo {
public:
    explicit WatchedInfo(Account wanted) : wanted_(wanted) {}

    probe::Result Probe(platform::ReadOnlyFile& file) override;

    // Name of the recogniser that claimed the file; null when none did.
    const char* claimedBy() const { return claimedBy_; }
    // One line per recogniser, then the reads and bytes; empty when it is not wanted.
    const std::string& account() const { return account_; }
    // What the file looks like beside its record.
    const SecondLook& seen() const { return seen_; }

private:
    void writeAccount(probe::ReadWindow& window);

    Account wanted_;
    const char* claimedBy_ = nullptr;
    std::string account_;
    SecondLook seen_;
};

// The three fields that the player takes, and whether it would refuse the file and why.
std::string playersView(probe::Result open, const probe::MediaRecord& record);

}  // namespace mediaprobe
