#include <windows.h>

#include <array>
#include <cstdarg>
#include <cstdio>

#include "platform/print.h"

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
    std::array<wchar_t, kLongestLine> wideLine{};
    MultiByteToWideChar(CP_ACP, 0, line.data(), -1, wideLine.data(),
                        static_cast<int>(wideLine.size()));
    OutputDebugStringW(wideLine.data());
}

}  // namespace platform
