// Developer diagnostics: standard output, line by line, and the kernel's debug output.
#pragma once

namespace platform {

// Formats as printf does (narrow and UTF-8 texts alone) and writes at once.
[[gnu::format(printf, 1, 2)]] void print(const char* format, ...);

// The same to the kernel's debug output. Cut at 511 characters.
[[gnu::format(printf, 1, 2)]] void debugPrint(const char* format, ...);

}  // namespace platform
