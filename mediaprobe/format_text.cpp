#include "mediaprobe/format_text.h"

#include <cinttypes>
#include <cstdarg>
#include <cstdio>

namespace mediaprobe {
namespace {

// Length of the UTF-8 sequence at the start of `text`, by RFC 3629; 0 when it is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
    };
    const auto follows = [&](std::size_t at) { return (byte(at) & 0xC0) == 0x80; };
    const unsigned first = byte(0);
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return follows(1) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        const bool shortest = first != 0xE0 || byte(1) >= 0xA0;
        const bool noSurrogate = first != 0xED || byte(1) < 0xA0;
        return follows(1) && follows(2) && shortest && noSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool shortest = first != 0xF0 || byte(1) >= 0x90;
        const bool inRange = first != 0xF4 || byte(1) < 0x90;
        return follows(1) && follows(2) && follows(3) && shortest && inRange ? 4 : 0;
    }
    return 0;
}

// C0, DEL, and C1 (U+0080 to U+009F, two bytes each).
bool isControl(std::string_view sequence) {
    const unsigned first = static_cast<unsigned char>(sequence[0]);
    return first < 0x20 || first == 0x7F ||
           (first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0);
}

}  // namespace

std::string formatted(const char* format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string grouped(std::uint64_t value) {
    std::string digits = std::to_string(value);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
    return digits;
}

std::string playTime(std::uint32_t seconds) {
    if (seconds >= 3600) {
        return formatted("%" PRIu32 ":%02" PRIu32 ":%02" PRIu32, seconds / 3600, seconds / 60 % 60,
                         seconds % 60);
    }
    return formatted("%" PRIu32 ":%02" PRIu32, seconds / 60, seconds % 60);
}

std::string roundSize(std::uint64_t bytes) {
    const struct {
        std::uint64_t unit;
        const char* name;
    } units[] = {{1000000000, "GB"}, {1000000, "MB"}, {1000, "kB"}};
    for (const auto& one : units) {
        if (bytes >= one.unit) {
            // Cut, not rounded: 999,999 bytes are not yet 1 MB.
            return formatted("%" PRIu64 ".%" PRIu64 " %s", bytes / one.unit,
                             bytes % one.unit * 10 / one.unit, one.name);
        }
    }
    return formatted("%" PRIu64 " byte%s", bytes, bytes == 1 ? "" : "s");
}

std::string partOf(std::uint64_t bytes, std::uint64_t wholeBytes, const char* least) {
    const std::string part = roundSize(bytes), whole = roundSize(wholeBytes);
    const bool bothSmall = wholeBytes < 1000;
    return part == whole || bothSmall
               ? grouped(bytes) + " of " + least + grouped(wholeBytes) + " bytes"
               : part + " of " + least + whole;
}

std::string escaped(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const std::size_t length = sequenceLength(rest);
        if (length != 0 && !isControl(rest)) {
            out += rest.substr(0, length);
            at += length;
            continue;
        }
        const char c = rest[0];
        at += 1;
        out += c == '\n'   ? "\\n"
               : c == '\r' ? "\\r"
               : c == '\t' ? "\\t"
                           : formatted("\\x%02x", static_cast<unsigned char>(c));
    }
    return out;
}

}  // namespace mediaprobe
