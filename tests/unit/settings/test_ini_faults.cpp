// The settings file on a storage that fails: the platform's files are played by this test, and the
// writer's calls are compared whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/text_file.h"
#include "settings/ini_store.h"

namespace {

// What the next file does. Counts are bytes.
struct Storage {
    std::string bytes = {};
    std::uint32_t openError = 0;
    bool sizeFails = false;
    std::uint64_t extraSize = 0;       // told, and not there
    std::size_t rawReadFailsAt = ~0u;  // from this offset on
    bool textOpens = true;
    std::size_t textReadFailsAt = ~0u;
    std::vector<bool> writesWork = {};  // one for each write; works when there is none
    std::vector<std::string> written = {};
};
Storage storage;

class Raw final : public platform::ReadOnlyFile {
public:
    bool size(std::uint64_t& bytes) override {
        bytes = storage.bytes.size() + storage.extraSize;
        return !storage.sizeFails;
    }
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override {
        read = 0;
        if (offset + buffer.size() > storage.rawReadFailsAt) {
            return false;
        }
        const std::size_t at =
            static_cast<std::size_t>(std::min<std::uint64_t>(offset, storage.bytes.size()));
        read = std::min(buffer.size(), storage.bytes.size() - at);
        std::memcpy(buffer.data(), storage.bytes.data() + at, read);
        return true;
    }
};

ssize_t readText(void* cookie, char* buffer, std::size_t size) {
    std::size_t& at = *static_cast<std::size_t*>(cookie);
    if (at >= storage.textReadFailsAt) {
        return -1;
    }
    const std::size_t end = std::min(storage.bytes.size(), storage.textReadFailsAt);
    const std::size_t read = std::min(size, end - std::min(at, end));
    std::memcpy(buffer, storage.bytes.data() + at, read);
    at += read;
    return static_cast<ssize_t>(read);
}

int closeText(void* cookie) {
    delete static_cast<std::size_t*>(cookie);
    return 0;
}

}  // namespace

namespace platform {

std::unique_ptr<ReadOnlyFile> openFile(const char16_t*, std::uint32_t& error) {
    error = storage.openError;
    return error == 0 ? std::make_unique<Raw>() : nullptr;
}

TextReader::TextReader(const char16_t*)
    : file_(storage.textOpens
                ? fopencookie(new std::size_t(0), "r", {readText, nullptr, nullptr, closeText})
                : nullptr) {
}

TextReader::~TextReader() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

// A byte above 0x7F is a character above 0xFF with its seven low bits.
bool TextReader::next(char16_t& character) {
    const int read = std::fgetc(file_);
    character = static_cast<char16_t>(read < 0x80 ? read : 0x100 + (read & 0x7F));
    return read != EOF;
}

bool writeTextFile(const char16_t*, std::initializer_list<std::u16string_view> parts) {
    const std::size_t number = storage.written.size();
    std::string& text = storage.written.emplace_back();
    for (const std::u16string_view part : parts) {
        text.append(part.begin(), part.end());
    }
    return number >= storage.writesWork.size() || storage.writesWork[number];
}

}  // namespace platform

namespace {

constexpr char kOthers[] = "[Sound]\nMUTE=1\n";
constexpr char kBoth[] = "[Sound]\nMUTE=1\n[MISC]\nDMB=3\n";

struct Case {
    const char* name;
    Storage storage;
    int result;
    std::vector<std::string> written;
};

TEST(IniFaults, NothingOfOtherProgramsIsLost) {
    const std::string large(1 << 20, 'x');
    const std::string blocks(2 * 4096 + 100, 'x');
    const Case cases[] = {
        {"good", {.bytes = kOthers}, 1, {kBoth}},
        {"no such file", {.openError = 2}, 1, {"[MISC]\nDMB=3\n"}},
        {"no such folder", {.openError = 3}, 1, {"[MISC]\nDMB=3\n"}},
        {"no right to read", {.openError = 5}, 0, {}},
        {"locked", {.openError = 32}, 0, {}},
        {"no drive for the path", {.openError = 1}, 0, {}},
        {"too many files open", {.openError = 4}, 0, {}},
        {"size not told", {.bytes = kOthers, .sizeFails = true}, 0, {}},
        {"as large as can be", {.bytes = large}, 1, {large + "\n[MISC]\nDMB=3\n"}},
        {"one byte larger", {.bytes = large + "x"}, 0, {}},
        {"shorter than told", {.bytes = kOthers, .extraSize = 5000}, 0, {}},
        {"grown by a byte since", {.bytes = kOthers, .extraSize = ~std::uint64_t{0}}, 0, {}},
        {"sector not readable", {.bytes = blocks, .rawReadFailsAt = 8192}, 0, {}},
        {"end of text at once", {.bytes = "\x1A"}, 0, {}},
        {"end of text at its end", {.bytes = std::string(kOthers) + "\x1A"}, 0, {}},
        {"end of text in a later block", {.bytes = blocks + "\x1A[A]\n"}, 0, {}},
        {"several blocks", {.bytes = blocks}, 1, {blocks + "\n[MISC]\nDMB=3\n"}},
        {"no text stream", {.bytes = kOthers, .textOpens = false}, 0, {}},
        {"text stream fails at once", {.bytes = kOthers, .textReadFailsAt = 0}, 0, {}},
        {"text stream fails later", {.bytes = kOthers, .textReadFailsAt = 9}, 0, {}},
        {"write fails", {.bytes = kOthers, .writesWork = {false}}, 0, {kBoth, kOthers}},
        {"write fails twice",
         {.bytes = kOthers, .writesWork = {false, false}},
         0,
         {kBoth, kOthers}},
    };
    for (const Case& c : cases) {
        storage = c.storage;
        EXPECT_EQ(settings::writeIniInt(u"MISC", u"DMB", 3, u"Config.ini"), c.result) << c.name;
        EXPECT_TRUE(storage.written == c.written) << c.name;
    }
}

TEST(IniFaults, OnlyAsciiDigitsCount) {
    storage = {.bytes = "[MISC]\nDMB=\xB1\n"};  // U+0131, whose low byte is that of "1"
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 8, u"Config.ini"), 0);
    storage = {.bytes = "[MISC]\nDMB=7\xB1\n"};
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 8, u"Config.ini"), 7);
}

TEST(IniFaults, WhatCannotBeReadGivesTheFallback) {
    storage = {.bytes = kBoth, .textOpens = false};
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 8, u"Config.ini"), 8);
    storage = {.bytes = kBoth, .textReadFailsAt = sizeof kBoth - 2};  // before the last newline
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 8, u"Config.ini"), 8);
    storage = {.bytes = kBoth};
    EXPECT_EQ(settings::readIniInt(u"MISC", u"DMB", 8, u"Config.ini"), 3);
}

}  // namespace
