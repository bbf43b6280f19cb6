#include "mediaprobe/output.h"

#include <chrono>
#include <cstdio>

#include "mediaprobe/format_text.h"

namespace mediaprobe {
namespace {

constexpr std::int64_t kFirstMilliseconds = 500;  // shorter work shows nothing
constexpr std::int64_t kEveryMilliseconds = 100;

std::int64_t nowMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace

void Output::write() {
    std::size_t written = 0;
    for (const Error& error : errors_) {
        std::fwrite(text.data() + written, 1, error.at - written, stdout);
        written = error.at;
        std::fflush(stdout);
        std::fwrite(error.line.data(), 1, error.line.size(), stderr);
    }
    std::fwrite(text.data() + written, 1, text.size() - written, stdout);
    text.clear();
    errors_.clear();
}

void Progress::show(const Tally& tally) {
    if (!shown_) {
        return;
    }
    const std::int64_t now = nowMilliseconds();
    if (nextMilliseconds_ == 0) {
        nextMilliseconds_ = now + kFirstMilliseconds;
    }
    if (now < nextMilliseconds_) {
        return;
    }
    nextMilliseconds_ = now + kEveryMilliseconds;
    std::fprintf(stderr, "\r\x1b[K%s files, %s faulty", grouped(tally.files).c_str(),
                 grouped(tally.faulty).c_str());
    std::fflush(stderr);
    standing_ = true;
}

void Progress::wipe() {
    if (standing_) {
        std::fputs("\r\x1b[K", stderr);
        standing_ = false;
    }
}

}  // namespace mediaprobe
