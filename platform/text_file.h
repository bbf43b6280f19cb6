// Text files through the C runtime's text mode: line ends are "\n" in memory whatever they are in
// the file, and characters are wide.
#pragma once

#include <cstdio>
#include <string_view>

namespace platform {

class TextReader {
public:
    // ok() tells whether the file could be opened.
    explicit TextReader(const char16_t* path);
    ~TextReader();
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;

    [[nodiscard]] bool ok() const { return file_ != nullptr; }

    // The next character; false at the end of the file or on a read error. Only of a file that is
    // ok().
    [[nodiscard]] bool next(char16_t& character);

    // True once a read error, and not the file's end, has ended it. Only of a file that is ok().
    [[nodiscard]] bool failed() const { return std::ferror(file_) != 0; }

private:
    std::FILE* file_;
};

// Replaces the file with `text`; false when it could not be written in full. The file is empty from
// its opening until its text goes out, in one piece and without a pause between.
[[nodiscard]] bool writeTextFile(const char16_t* path, std::u16string_view text);

}  // namespace platform
