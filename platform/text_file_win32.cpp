#include <algorithm>
#include <cstdio>
#include <cwchar>

#include "platform/text_file.h"
#include "platform/wide.h"

namespace platform {

TextReader::TextReader(const char16_t* path) : file_(_wfopen(wide(path), L"rt")) {
}

TextReader::~TextReader() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool TextReader::next(char16_t& character) {
    const std::wint_t read = std::fgetwc(file_);
    character = static_cast<char16_t>(read);
    return read != WEOF;
}

bool writeTextFile(const char16_t* path, std::initializer_list<std::u16string_view> parts) {
    std::FILE* const file = _wfopen(wide(path), L"wt");
    if (file == nullptr) {
        return false;
    }
    // Room for all of it, so that it goes out with the one flush of the close. Without memory for
    // that it goes out in pieces.
    constexpr std::size_t kLongestCharacter = 2, kSmallestBuffer = 512;
    std::size_t characters = 0;
    for (const std::u16string_view part : parts) {
        characters += part.size();
    }
    std::setvbuf(file, nullptr, _IOFBF, std::max(characters * kLongestCharacter, kSmallestBuffer));
    bool written = true;
    for (const std::u16string_view part : parts) {
        written = written && std::ranges::all_of(part, [file](char16_t character) {
                      return std::fputwc(static_cast<wchar_t>(character), file) != WEOF;
                  });
    }
    return std::fclose(file) == 0 && written;
}

}  // namespace platform
