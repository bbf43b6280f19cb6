#include "settings/ini_store.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#include "platform/file.h"
#include "platform/text_file.h"
#include "settings/key_finder.h"

namespace settings {
namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t kLargestFileBytes = 1 << 20;  // that is rewritten; it is held in memory

std::u16string_view cut(const char16_t* name) {
    return std::u16string_view(name).substr(0, kNameCapacity - 1);
}

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

// The characters from `begin` to `end` become `inserted`.
struct Edit {
    std::size_t begin = 0;
    std::size_t end = 0;
    // At most the end of the last line, a section's line and a key's.
    BoundedText<3 * kNameCapacity + 8> inserted;
};

// What brings key and value into the text.
Edit editFor(std::u16string_view text, std::u16string_view section, std::u16string_view key,
             std::u16string_view value) {
    Edit edit;
    const auto insert = [&edit](std::initializer_list<std::u16string_view> parts) {
        for (const std::u16string_view part : parts) {
            edit.inserted.append(part);
        }
    };
    KeyFinder finder(section, key);
    for (std::size_t i = 0; i < text.size(); ++i) {
        switch (finder.feed(text[i])) {
            case KeyFinder::Progress::ValueStarts:
                edit.begin = i + 1;
                break;
            case KeyFinder::Progress::ValueEnds:
                edit.end = i;
                insert({value});
                return edit;
            case KeyFinder::Progress::SectionEnds:
                edit.begin = edit.end = i;
                insert({key, u"="sv, value, u"\n"sv});
                return edit;
            case KeyFinder::Progress::Going:
                break;
        }
    }
    if (!text.empty() && text.back() != u'\n') {
        insert({u"\n"sv});
    }
    if (!finder.sectionFound()) {
        insert({u"["sv, section, u"]\n"sv});
    }
    edit.begin = edit.end = text.size();
    insert({key, u"="sv, value, u"\n"sv});
    return edit;
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

struct WholeText {
    std::unique_ptr<char16_t[]> characters;
    std::size_t length = 0;

    [[nodiscard]] std::u16string_view view() const { return {characters.get(), length}; }
};

// The whole text of the file, nothing when there is none. False when there is one and its end
// cannot be reached, or there is no memory for it: writing it back would lose what other programs
// keep there.
bool readWhole(const char16_t* path, WholeText& text) {
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
    const auto capacity = static_cast<std::size_t>(size);  // a character has at least one byte
    text.characters.reset(new (std::nothrow) char16_t[capacity + 1]);
    platform::TextReader file(path);
    if (!text.characters || !file.ok()) {
        return false;
    }
    char16_t character = 0;
    while (file.next(character)) {
        if (text.length == capacity) {
            return false;  // it has grown meanwhile
        }
        text.characters[text.length++] = character;
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
    WholeText whole;
    if (!readWhole(path, whole)) {
        return 0;
    }
    const std::u16string_view before = whole.view();
    const Edit edit = editFor(before, cut(section), cut(key), cut(value));
    std::u16string_view behind = before;
    behind.remove_prefix(edit.end);
    if (platform::writeTextFile(path,
                                {before.substr(0, edit.begin), edit.inserted.view(), behind})) {
        return 1;
    }
    // What was there had room and may have it again; the other programs' settings stand in it.
    static_cast<void>(platform::writeTextFile(path, {before}));
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
