#include "simulator/shared/words.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace headunit {
namespace {

constexpr std::string_view kLetters = "nrt\"\\";
constexpr std::string_view kMeant = "\n\r\t\"\\";

bool isColour(std::string_view text) {
    return text.size() >= 7 &&
           text.substr(1, 6).find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

// `at` stands behind the backslash, and afterwards on the escape's last letter.
bool unescape(std::string_view line, std::size_t& at, std::string& word) {
    if (at < line.size() && line[at] == 'x') {
        const std::string digits(line.substr(at + 1, 2));
        char* end = nullptr;
        const auto byte = static_cast<char>(std::strtoul(digits.c_str(), &end, 16));
        at += 2;
        word += byte;
        return digits.size() == 2 && *end == '\0' && std::isxdigit(digits[0]) != 0;
    }
    const auto place = at < line.size() ? kLetters.find(line[at]) : std::string_view::npos;
    if (place == std::string_view::npos) {
        return false;
    }
    word += kMeant[place];
    return true;
}

bool takeWord(std::string_view line, std::size_t& at, std::string& word) {
    bool quotes = false;
    for (; at < line.size() && (quotes || (line[at] != ' ' && line[at] != '\t')); ++at) {
        if (line[at] == '"') {
            quotes = !quotes;
        } else if (!quotes || line[at] != '\\') {
            word += line[at];
        } else if (!unescape(line, ++at, word)) {
            return false;
        }
    }
    return !quotes;
}

}  // namespace

bool splitWords(std::string_view line, Words& words) {
    std::size_t at = 0;
    while ((at = line.find_first_not_of(" \t", at)) != std::string_view::npos) {
        if (line[at] == '#' && !isColour(line.substr(at))) {
            return true;
        }
        if (!takeWord(line, at, words.emplace_back())) {
            return false;
        }
    }
    return true;
}

std::string inQuotes(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto place = kMeant.find(c);
        if (place != std::string_view::npos) {
            out += '\\';
            out += kLetters[place];
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char code[8];
            std::snprintf(code, sizeof(code), "\\x%02x", static_cast<unsigned>(c));
            out += code;
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string joinWords(const Words& words) {
    std::string line;
    for (const std::string& word : words) {
        const bool bare = !word.empty() && inQuotes(word).size() == word.size() + 2 &&
                          word.find_first_of(" #") == std::string::npos;
        line += (line.empty() ? "" : " ") + (bare ? word : inQuotes(word));
    }
    return line;
}

bool parseNumber(const std::string& text, long long& number) {
    char* end = nullptr;
    errno = 0;
    number = std::strtoll(text.c_str(), &end, 0);
    return !text.empty() && *end == '\0' && errno == 0;
}

}  // namespace headunit
