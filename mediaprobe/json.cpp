// The JSON line. Written by hand: a flat line of known names needs no document in memory, which
// costs eight times as long as the probing itself (docs/decisions.md).
#include <charconv>
#include <cinttypes>
#include <string_view>

#include "mediaprobe/codecs.h"
#include "mediaprobe/format_text.h"
#include "mediaprobe/names.h"
#include "mediaprobe/report.h"
#include "platform/text.h"
#include "probe/record/field_list.h"

namespace mediaprobe {
namespace {

// `utf8` must be valid.
void appendText(std::string& out, std::string_view utf8) {
    out += '"';
    for (const char c : utf8) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            out += formatted("\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        } else {
            out += c;
        }
    }
    out += '"';
}

template <typename Number>
void appendNumber(std::string& out, Number value) {
    char digits[16];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendValue(std::string& out, std::uint32_t value) {
    appendNumber(out, value);
}
void appendValue(std::string& out, std::int32_t value) {
    appendNumber(out, value);
}
void appendValue(std::string& out, std::u16string_view value) {
    if (value.empty()) {
        out += "\"\"";
    } else {
        appendText(out, platform::toUtf8(value));
    }
}

void appendKey(std::string& out, std::string_view key) {
    out += ", \"";
    out += key;
    out += "\": ";
}

// Null for an empty text.
void appendTextOrNull(std::string& out, std::string_view key, std::string_view text) {
    appendKey(out, key);
    if (text.empty()) {
        out += "null";
    } else {
        appendText(out, text);
    }
}

void appendCode(std::string& out, probe::Result code) {
    char text[16];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<std::uint32_t>(code), 16);
    const std::size_t length = static_cast<std::size_t>(end.ptr - text);
    out += "\"0x";
    out.append(8 - length, '0');
    for (std::size_t i = 0; i < length; ++i) {
        out += text[i] >= 'a' ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
    }
    out += '"';
}

// A name that may be in any encoding is valid UTF-8 after once to UTF-16 and back.
void appendPath(std::string& out, const std::string& path) {
    bool plain = true;
    for (const char c : path) {
        plain = plain && static_cast<unsigned char>(c) < 0x80;
    }
    appendText(out, plain ? path : platform::toUtf8(platform::toUtf16(path)));
}

}  // namespace

void appendJsonLine(std::string& out, const Finding& finding) {
    const probe::MediaRecord& record = finding.record;
    out += "{\"path\": ";
    appendPath(out, finding.path);
    out += ", \"open\": ";
    appendCode(out, finding.open);
    out += ", \"status\": ";
    appendCode(out, record.status);
    probe::visitFields(record, [&out](const char* name, auto value) {
        appendKey(out, name);
        appendValue(out, value);
    });
    const char* const container = containerName(record.containerType);
    appendTextOrNull(out, "containerName", container ? container : "");
    appendTextOrNull(out, "videoCodec",
                     record.videoFourCC == probe::kUnknownVideo
                         ? "unknown"
                         : videoCodec(record, finding.seen).name);
    appendTextOrNull(out, "audioCodec", audioCodec(record, finding.seen).name);
    appendTextOrNull(out, "damaged", finding.seen.damage);
    appendTextOrNull(out, "error", finding.error);
    out += "}\n";
}

}  // namespace mediaprobe
