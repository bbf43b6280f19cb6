// Fuzz target: the input is the record of the playback state as it lies in the unit.
#include "settings/persisted_state.h"
#include "tests/fuzz/settings/unit.h"

namespace {

constexpr char kFile[] = "ResidentFlash2/Data/Movie.dat";

std::string bytesOf(const settings::PersistedState& state) {
    return {reinterpret_cast<const char*>(&state), sizeof state};
}

void requireRanges(const settings::PersistedState& state) {
    fuzz::require(state.playState >= 0 && state.playState <= 2);
    fuzz::require(state.volume >= 0 && state.volume <= 10);
    fuzz::require(state.fileIndex >= 0);
    fuzz::require(state.endTime >= 0);
    fuzz::require(state.position >= 0 && state.position <= state.endTime);
    fuzz::require(state.folder[platform::kPathCapacity - 1] == u'\0');
    fuzz::require(state.file[platform::kPathCapacity - 1] == u'\0');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Unit unit;
    unit.put(kFile, {data, size});
    settings::PersistedState state;
    const int read = settings::readPersistedState(state);
    fuzz::require(read == (size >= sizeof state ? 1 : 0));
    fuzz::require(bytesOf(state) == (read == 1 ? std::string(data, data + sizeof state)
                                               : bytesOf(settings::PersistedState{})));
    settings::repair(state);
    requireRanges(state);
    const std::string repaired = bytesOf(state);
    settings::repair(state);
    fuzz::require(bytesOf(state) == repaired);
    settings::writePersistedState(state);
    fuzz::require(unit.contents(kFile) == repaired);
    return 0;
}
