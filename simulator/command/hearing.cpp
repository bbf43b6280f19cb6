#include "simulator/command/hearing.h"

#include <algorithm>
#include <fstream>
#include <map>

namespace headunit {
namespace {

// Wine hands its samples over in bursts: between two of them up to a fifth of a second is silent.
constexpr int kSilenceMilliseconds = 500;
constexpr int kLoudMilliseconds = 300;

using Sizes = std::map<fs::path, std::uintmax_t>;

// As ALSA takes a text in quotes, and its file plugin a name, in which "%" begins a key.
std::string escaped(const std::string& folder) {
    std::string out;
    for (const char c : folder) {
        if (c == '"' || c == '\\' || c == '%') {
            out += c == '%' ? '%' : '\\';
        }
        out += c;
    }
    return out;
}

Sizes playedFiles(const Unit& unit) {
    Sizes sizes;
    std::error_code error;
    const fs::path configuration = unit.run() / kHearingConfiguration;
    for (const auto& entry : fs::directory_iterator(configuration.parent_path(), error)) {
        const std::uintmax_t bytes = entry.file_size(error);
        if (entry.path() != configuration && !error) {
            sizes[entry.path()] = bytes;
        }
    }
    return sizes;
}

// Bytes other than zero from there to the end; silence is zero in every format that Wine plays in.
long long countSounding(const fs::path& file, std::uintmax_t from) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(from));
    long long count = 0;
    char bytes[65536];
    while (stream.read(bytes, sizeof(bytes)) || stream.gcount() > 0) {
        count += stream.gcount() - std::count(bytes, bytes + stream.gcount(), '\0');
    }
    return count;
}

// What is played from now on for that time. False with the reason when nobody can tell.
bool listen(const Unit& unit, int milliseconds, long long& sounding, std::string& why) {
    std::error_code error;
    if (!fs::exists(unit.run() / kHearingConfiguration, error)) {
        why = "nobody listens; boot the unit with --hear";
        return false;
    }
    Sizes before = playedFiles(unit);
    process::sleepMilliseconds(milliseconds);
    const Sizes after = playedFiles(unit);
    if (after.empty()) {
        why = "the unit has not opened its sound device yet";
        return false;
    }
    sounding = 0;
    std::uintmax_t played = 0;
    for (const auto& [file, size] : after) {
        played += size - std::min(size, before[file]);
        sounding += countSounding(file, before[file]);
    }
    why = std::to_string(played) + " bytes were played, " + std::to_string(sounding) +
          " of them not zero";
    return true;
}

}  // namespace

void prepareHearing(const Unit& unit, bool hear) {
    std::error_code error;
    const fs::path configuration = unit.run() / kHearingConfiguration;
    fs::remove_all(configuration.parent_path(), error);
    if (!hear) {
        return;
    }
    fs::create_directories(configuration.parent_path(), error);
    std::ofstream stream(configuration);
    // Rate, channels, format; a number is added where a file of that name is there already.
    stream << "pcm.!default {\n  type file\n  slave.pcm { type null }\n  format raw\n"
           << "  truncate false\n  perm 0644\n"
           << "  file \"" << escaped(configuration.parent_path().string()) << "/%r-%c-%f\"\n"
           << "}\nctl.!default { type null }\n";
    stream.close();
    if (stream.fail()) {
        throw Failure(configuration.string() + " cannot be written; is the disk full?");
    }
}

bool isSilent(Stage& stage, const Expectation&, std::string& why) {
    long long sounding = 0;
    return listen(stage.unit, kSilenceMilliseconds, sounding, why) && sounding == 0;
}

bool isLoud(Stage& stage, const Expectation&, std::string& why) {
    long long sounding = 0;
    return listen(stage.unit, kLoudMilliseconds, sounding, why) && sounding > 0;
}

}  // namespace headunit
