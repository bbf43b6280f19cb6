#include "simulator/command/movie_dat.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <variant>

#include "platform/text.h"
#include "simulator/shared/named.h"
#include "simulator/shared/words.h"

namespace headunit {
namespace {

fs::path movieDat(const Unit& unit) {
    return unit.device / "ResidentFlash2/Data/Movie.dat";
}

using State = settings::PersistedState;
using Path = char16_t[platform::kPathCapacity];

struct Field {
    const char* name;
    std::variant<std::int32_t State::*, double State::*, Path State::*> member;
};
constexpr Field kFields[] = {{"playState", &State::playState}, {"volume", &State::volume},
                             {"fileIndex", &State::fileIndex}, {"reserved", &State::reserved},
                             {"position", &State::position},   {"endTime", &State::endTime},
                             {"folder", &State::folder},       {"file", &State::file}};

Json jsonOf(std::int32_t number) {
    return number;
}
Json jsonOf(double number) {
    return number;
}
Json jsonOf(const Path& path) {
    const std::u16string_view whole(path, platform::kPathCapacity);
    return platform::toUtf8(whole.substr(0, whole.find(u'\0')));
}

bool set(std::int32_t& field, const std::string& value) {
    long long number = 0;
    const bool good = parseNumber(value, number);
    field = static_cast<std::int32_t>(number);
    return good;
}
bool set(double& field, const std::string& value) {
    field = std::strtod(value.c_str(), nullptr);
    return true;
}
bool set(Path& field, const std::string& value) {
    const std::u16string text = platform::toUtf16(value).substr(0, platform::kPathCapacity - 1);
    std::ranges::fill(field, u'\0');
    std::ranges::copy(text, field);
    return true;
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

Json movieDatJson(const State& state) {
    Json out = Json::object();
    for (const Field& field : kFields) {
        out[field.name] =
            std::visit([&](auto member) { return jsonOf(state.*member); }, field.member);
    }
    return out;
}

bool isMovieDatField(const std::string& name) {
    return findNamed(kFields, name) != nullptr;
}

bool setMovieDatField(State& state, const std::string& name, const std::string& value) {
    const Field* field = findNamed(kFields, name);
    return field != nullptr &&
           std::visit([&](auto member) { return set(state.*member, value); }, field->member);
}

}  // namespace headunit
