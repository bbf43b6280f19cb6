// One fuzz target: the recogniser number FUZZED_RECOGNISER of the chain (counted from 0), or the
// whole probe when that is -1. Built once per target. The input is a packed file
// of at most LARGEST_FILE bytes.
#include <cstdlib>

#include "platform/file.h"
#include "probe/media_info.h"
#include "probe/recognisers.h"
#include "probe/record/diagnostics.h"
#include "tests/fuzz/packed.h"

namespace {

// What must hold of every file, whatever it holds.
void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void requireSoundRecord(const probe::MediaInfo& info) {
    require(info.status == probe::kOk || info.status == probe::kNotParsed ||
            info.status == probe::kFail || info.status == probe::kOutOfMemory);
    require(info.fileSizeHigh == 0);
    for (const auto* text :
         {info.title, info.artist, info.album, info.track, info.genre, info.composer, info.year}) {
        require(text[probe::kTextLength - 1] == u'\0');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    probe::setDiagnosticSink(nullptr);
    static std::vector<std::uint8_t> bytes;
    fuzz::unpack({data, size}, LARGEST_FILE, bytes);
    const auto file = platform::openMemory(bytes);
    constexpr bool kWhole = FUZZED_RECOGNISER < 0;
    constexpr std::size_t kFirst = kWhole ? 0 : static_cast<std::size_t>(FUZZED_RECOGNISER);
    constexpr std::size_t kCount = kWhole ? 10 : 1;
    probe::ReadWindow window(*file);
    probe::MediaInfo info;
    int claimed = 0;
    for (const auto& recogniser : probe::recognisers().subspan(kFirst, kCount)) {
        claimed = claimed != 0 ? claimed : recogniser.recognise(info, window);
    }
    require(claimed == 0 || claimed == 1);
    requireSoundRecord(info);
    // A few passes over the file; a read of less than a sector counts as one.
    const std::uint64_t cost =
        window.counts().bytes + window.counts().reads * probe::ReadWindow::kSector;
    require(cost <= 5 * std::uint64_t{bytes.size()} + 16 * probe::ReadWindow::kLargest);
    return 0;
}
