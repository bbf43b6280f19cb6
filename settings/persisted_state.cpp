#include "settings/persisted_state.h"

#include <cstring>
#include <memory>
#include <span>

#include "platform/file.h"

namespace settings {
namespace {

constexpr char16_t kDataFolder[] = u"\\ResidentFlash2\\Data";
constexpr char16_t kStateFile[] = u"\\ResidentFlash2\\Data\\Movie.dat";

// Without the folder the file cannot be opened, and that is where it shows.
void makeDataFolder() {
    static_cast<void>(platform::ensureFolder(kDataFolder));
}

}  // namespace

int readPersistedState(PersistedState& state) {
    state = PersistedState{};
    makeDataFolder();
    std::uint32_t error = 0;
    const std::unique_ptr<platform::ReadOnlyFile> file = platform::openFile(kStateFile, error);
    if (!file) {
        return 0;
    }
    std::uint8_t bytes[sizeof(PersistedState)];
    std::size_t read = 0;
    if (!file->readAt(0, bytes, read) || read != sizeof bytes) {
        return 0;
    }
    std::memcpy(&state, bytes, sizeof bytes);
    return 1;
}

void repair(PersistedState& state) {
    if (state.playState < kStopped || state.playState > kPaused) {
        state.playState = kStopped;
    }
    if (state.volume < 0 || state.volume > kLoudestVolume) {
        state.volume = kDefaultVolume;
    }
    if (state.fileIndex < 0) {
        state.fileIndex = 0;
    }
    // Written so that a value that is not a number fails the test as well.
    if (!(state.endTime >= 0)) {
        state.endTime = 0;
    }
    if (!(state.position >= 0 && state.position <= state.endTime)) {
        state.position = 0;
    }
    state.folder[platform::kPathCapacity - 1] = u'\0';
    state.file[platform::kPathCapacity - 1] = u'\0';
}

void writePersistedState(const PersistedState& state) {
    makeDataFolder();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&state);
    // The player has nobody to tell, and the next start takes the defaults.
    static_cast<void>(platform::writeFile(kStateFile, std::span(bytes, sizeof state)));
}

}  // namespace settings
