#include "simulator/shared/tape_reader.h"

#include <fstream>

namespace headunit {

std::optional<TapeLine> TapeReader::next() {
    // Opened again every time: a boot begins a new file under the same name.
    std::ifstream stream(tape_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset_));
    TapeLine line;
    if (!std::getline(stream, line.raw) || stream.eof()) {
        return std::nullopt;
    }
    offset_ += line.raw.size() + 1;
    line.value = parseJson(line.raw);
    if (!line.value.is_object()) {
        line.value = Json::object();
    }
    return line;
}

std::uint64_t tapeEnd(const std::filesystem::path& tape) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(tape, error);
    return error ? 0 : size;
}

}  // namespace headunit
