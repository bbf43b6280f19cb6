#include "simulator/command/movie_dat.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "platform/text.h"

namespace headunit {
namespace {

fs::path movieDat(const Unit& unit) {
    return unit.device / "ResidentFlash2/Data/Movie.dat";
}

std::string pathText(const char16_t (&path)[platform::kPathCapacity]) {
    std::size_t length = 0;
    while (length < platform::kPathCapacity && path[length] != 0) {
        ++length;
    }
    return platform::toUtf8({path, length});
}

}  // namespace

std::optional<settings::PersistedState> readMovieDat(const Unit& unit) {
    settings::PersistedState state;
    std::error_code error;
    if (fs::file_size(movieDat(unit), error) != sizeof(state) || error) {
        return std::nullopt;
    }
    std::ifstream file(movieDat(unit), std::ios::binary);
    file.read(reinterpret_cast<char*>(&state), sizeof(state));
    return file ? std::optional(state) : std::nullopt;
}

bool writeMovieDat(const Unit& unit, const settings::PersistedState& state) {
    std::ofstream file(movieDat(unit), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(&state), sizeof(state));
    file.close();
    return !file.fail();
}

Json movieDatJson(const settings::PersistedState& state) {
    return {{"playState", state.playState},     {"volume", state.volume},
            {"fileIndex", state.fileIndex},     {"reserved", state.reserved},
            {"position", state.position},       {"endTime", state.endTime},
            {"folder", pathText(state.folder)}, {"file", pathText(state.file)}};
}

}  // namespace headunit
