#include "settings/ini_store.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "platform/text_file.h"

namespace settings {
namespace {

constexpr std::size_t kNameCapacity = 128;  // of a section, key or value, the terminator included
constexpr std::uint64_t kLargestFileBytes = 1 << 20;  // that is rewritten; it is held in memory

class BoundedText {
public:
    void clear() { length_ = 0; }
    void append(char16_t character) {
        if (length_ < kNameCapacity - 1) {
            text_[length_++] = character;
        }
    }
    [[nodiscard]] std::u16string_view view() const { return {text_.data(), length_}; }

private:
    std::array<char16_t, kNameCapacity> text_{};
    std::size_t length_ = 0;
};

std::u16string_view cut(const char16_t* name) {
    return std::u16string_view(name).substr(0, kNameCapacity - 1);
}

// The machine that reader and writer share. It is fed one character after the other and tells
// when the value has been read, or when the wanted section has ended without the key.
class KeyFinder {
public:
    enum class Progress { Going, ValueStarts, ValueEnds, SectionEnds };

    KeyFinder(std::u16string_view section, std::u16string_view key)
        : section_(section), key_(key) {}

    Progress feed(char16_t character) {
        switch (state_) {
            case State::LineStart:
                atLineStart(character);
                break;
            case State::Comment:
                state_ = character == u'\n' ? State::LineStart : State::Comment;
                break;
            case State::SectionName:
                inSectionName(character);
                break;
            case State::Skipping:
                state_ = character == u'\n' ? State::SectionLineStart : State::Skipping;
                break;
            case State::SectionLineStart:
                return atSectionLineStart(character);
            case State::KeyName:
                return inKeyName(character);
            case State::Value:
                if (character == u'\n') {
                    return Progress::ValueEnds;
                }
                buffer_.append(character);
                break;
        }
        return Progress::Going;
    }

    [[nodiscard]] bool sectionFound() const { return sectionFound_; }
    [[nodiscard]] std::u16string_view value() const { return buffer_.view(); }

private:
    enum class State {
        LineStart,
        Comment,
        SectionName,
        Skipping,          // in the wanted section, up to the end of the line
        SectionLineStart,  // in the wanted section
        KeyName,
        Value,
    };

    void atLineStart(char16_t character) {
        if (character == u';') {
            state_ = State::Comment;
        } else if (character == u'[') {
            state_ = State::SectionName;
            buffer_.clear();
        }
        // Any other character is dropped and the line has still to start: a "[" further on in a
        // line opens a section name. Required.
    }

    void inSectionName(char16_t character) {
        if (character != u']') {
            buffer_.append(character);
            return;
        }
        const bool wanted = buffer_.view() == section_;
        sectionFound_ = sectionFound_ || wanted;
        state_ = wanted ? State::Skipping : State::Comment;
    }

    Progress atSectionLineStart(char16_t character) {
        if (character == u'[') {
            return Progress::SectionEnds;
        }
        if (character == u';') {
            state_ = State::Skipping;
            return Progress::Going;
        }
        state_ = State::KeyName;  // a newline too: a blank line spoils the next key. Required.
        buffer_.clear();
        buffer_.append(character);
        return Progress::Going;
    }

    Progress inKeyName(char16_t character) {
        if (character != u'=') {
            buffer_.append(character);
            return Progress::Going;
        }
        if (buffer_.view() != key_) {
            state_ = State::Skipping;
            return Progress::Going;
        }
        state_ = State::Value;
        buffer_.clear();
        return Progress::ValueStarts;
    }

    std::u16string_view section_;
    std::u16string_view key_;
    State state_ = State::LineStart;
    BoundedText buffer_;
    bool sectionFound_ = false;
};

std::int32_t toInteger(std::u16string_view text) {
    std::array<char, kNameCapacity> digits{};
    std::transform(text.begin(), text.end(), digits.begin(), [](char16_t character) {
        return character < 0x80 ? static_cast<char>(character) : '?';
    });
    constexpr int kDecimal = 10;
    const long long value = std::strtol(digits.data(), nullptr, kDecimal);
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<long long>(value, Limits::min(), Limits::max()));
}

// The file's text with key and value in place.
std::u16string withValue(std::u16string text, std::u16string_view section, std::u16string_view key,
                         std::u16string_view value) {
    std::u16string line(key);
    line.append(u"=").append(value).append(u"\n");

    KeyFinder finder(section, key);
    std::size_t valueStart = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (finder.feed(text[i])) {
            case KeyFinder::Progress::ValueStarts:
                valueStart = i + 1;
                break;
            case KeyFinder::Progress::ValueEnds:
                text.replace(valueStart, i - valueStart, value);
                return text;
            case KeyFinder::Progress::SectionEnds:
                text.insert(i, line);
                return text;
            case KeyFinder::Progress::Going:
                break;
        }
    }
    if (!text.empty() && text.back() != u'\n') {
        text += u'\n';
    }
    if (!finder.sectionFound()) {
        text.append(u"[").append(section).append(u"]\n");
    }
    return text.append(line);
}

// Text mode takes the byte 0x1A for the end wherever it stands in the file.
bool holdsTextEnd(platform::ReadOnlyFile& file, std::uint64_t size) {
    constexpr std::uint8_t kTextEnd = 0x1A;
    std::array<std::uint8_t, 4096> block{};
    std::size_t read = 0;
    for (std::uint64_t offset = 0; offset < size; offset += read) {
        if (!file.readAt(offset, block, read) || read == 0) {
            return true;
        }
        if (std::find(block.begin(), block.begin() + read, kTextEnd) != block.begin() + read) {
            return true;
        }
    }
    return false;
}

// The whole text of the file, nothing when there is none. False when there is one and its end
// cannot be reached: writing it back would lose what other programs keep there.
bool readWhole(const char16_t* path, std::u16string& text) {
    constexpr std::uint32_t kFileNotFound = 2, kPathNotFound = 3;
    std::uint32_t error = 0;
    const std::unique_ptr<platform::ReadOnlyFile> bytes = platform::openFile(path, error);
    if (!bytes) {
        return error == kFileNotFound || error == kPathNotFound;
    }
    std::uint64_t size = 0;
    if (!bytes->size(size) || size > kLargestFileBytes || holdsTextEnd(*bytes, size)) {
        return false;
    }
    platform::TextReader file(path);
    if (!file.ok()) {
        return false;
    }
    text.reserve(static_cast<std::size_t>(size));
    char16_t character = 0;
    while (file.next(character)) {
        text += character;
    }
    return !file.failed();
}

}  // namespace

std::int32_t readIniInt(const char16_t* section, const char16_t* key, std::int32_t fallback,
                        const char16_t* path) {
    platform::TextReader file(path);
    if (!file.ok()) {
        return fallback;
    }
    KeyFinder finder(cut(section), cut(key));
    char16_t character = 0;
    while (file.next(character)) {
        switch (finder.feed(character)) {
            case KeyFinder::Progress::ValueEnds:
                return toInteger(finder.value());
            case KeyFinder::Progress::SectionEnds:
                return fallback;
            default:
                break;
        }
    }
    return fallback;
}

int writeIniString(const char16_t* section, const char16_t* key, const char16_t* value,
                   const char16_t* path) {
    std::u16string before;
    if (!readWhole(path, before)) {
        return 0;
    }
    if (platform::writeTextFile(path, withValue(before, cut(section), cut(key), cut(value)))) {
        return 1;
    }
    // What was there had room and may have it again; the other programs' settings stand in it.
    static_cast<void>(platform::writeTextFile(path, before));
    return 0;
}

int writeIniInt(const char16_t* section, const char16_t* key, std::int32_t value,
                const char16_t* path) {
    constexpr std::size_t kLongestInteger = 12;
    std::array<char, kLongestInteger> digits{};
    std::snprintf(digits.data(), digits.size(), "%d", static_cast<int>(value));
    std::array<char16_t, kLongestInteger> wideDigits{};
    std::copy(digits.begin(), digits.end(), wideDigits.begin());
    return writeIniString(section, key, wideDigits.data(), path);
}

}  // namespace settings
