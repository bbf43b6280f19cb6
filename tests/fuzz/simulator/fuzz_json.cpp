// Fuzz target: a line of the tape, as the command takes it apart and the panel shows it.
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "simulator/shared/describe.h"
#include "simulator/shared/json.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const headunit::Json value = headunit::parseJson(text);
    if (value.is_discarded()) {
        return 0;
    }
    const std::string line = headunit::oneLine(value);
    require(line.find('\n') == std::string::npos);
    // Written and read again it is the same line.
    const headunit::Json again = headunit::parseJson(line);
    require(!again.is_discarded());
    require(headunit::oneLine(again) == line);
    if (value.is_object()) {
        require(!headunit::describe(value).empty());
        (void)headunit::textOf(value, "text");
        (void)headunit::numberOf(value, "ms", 0);
    }
    (void)headunit::plain(value);
    return 0;
}
