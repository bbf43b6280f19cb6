#include <windows.h>

#include <array>
#include <cstdarg>
#include <cstdio>

#include "platform/print.h"
#include "platform/text.h"
#include "platform/wide.h"

namespace platform {

void print(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stdout, format, arguments);
    va_end(arguments);
    std::fflush(stdout);
}

void debugPrint(const char* format, ...) {
    constexpr std::size_t kLongestLine = 512;
    std::array<char, kLongestLine> line{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    std::array<char16_t, kLongestLine> wideLine{};
    decodeText(CodePage::System, {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()},
               wideLine);
    OutputDebugStringW(wide(wideLine.data()));
}

}  // namespace platform
