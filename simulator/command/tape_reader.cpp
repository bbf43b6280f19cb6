#include "simulator/command/tape_reader.h"

namespace headunit {

TapeReader::TapeReader(const Unit& unit, std::uint64_t offset)
    : file_(unit.tape()), offset_(offset) {
}

std::optional<TapeLine> TapeReader::next() {
    // Opened anew every time: a boot begins a new file under the same name.
    std::ifstream stream(file_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(offset_));
    TapeLine line;
    if (!std::getline(stream, line.raw) || stream.eof()) {
        return std::nullopt;
    }
    offset_ += line.raw.size() + 1;
    std::optional<json::Value> value = json::parse(line.raw);
    if (value) {
        line.value = std::move(*value);
    }
    return line;
}

std::uint64_t tapeEnd(const Unit& unit) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(unit.tape(), error);
    return error ? 0 : size;
}

}  // namespace headunit
