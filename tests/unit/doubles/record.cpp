#include "tests/unit/doubles/record.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "platform/text.h"

namespace test {
namespace {

std::string lines;

}  // namespace

void note(const char* format, ...) {
    std::array<char, 1024> line{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    lines += line.data();
    lines += '\n';
}

std::string taken() {
    return std::exchange(lines, {});
}

std::string shown(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else {
            out += c;
        }
    }
    return out;
}

std::string shown(std::u16string_view text) {
    return shown(std::string_view(platform::toUtf8(text)));
}

}  // namespace test
