// Text files through the C runtime's text mode: line ends are "\n" in memory whatever they are in
// the file, and characters are wide.
#pragma once

#include <cstdio>
#include <initializer_list>
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

    // After next() has returned false: whether an error, and not the file's end, was the reason. A
    // character that the encoding does not have is such an error, although it sets no error flag.
    // Only of a file that is ok().
    [[nodiscard]] bool failed() const { return std::feof(file_) == 0; }

private:
    std::FILE* file_;
};

// Replaces the file with `parts`, one behind the other; false when they could not be written in
// full. The file is empty from its opening until its text goes out, in one piece and without a
// pause between.
[[nodiscard]] bool writeTextFile(const char16_t* path,
                                 std::initializer_list<std::u16string_view> parts);

}  // namespace platform
