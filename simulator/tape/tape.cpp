#include "simulator/tape/tape.h"

#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tape {
namespace {

constexpr wchar_t kTapeFile[] = L"\\.unit\\log.jsonl";
constexpr wchar_t kBootFile[] = L"\\.unit\\boot";

std::int64_t readBootTick() {
    HANDLE file = CreateFileW(kBootFile, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return 0;
    }
    char digits[32] = {};
    DWORD count = 0;
    const BOOL good = ReadFile(file, digits, sizeof(digits) - 1, &count, nullptr);
    CloseHandle(file);
    return good ? std::strtoll(digits, nullptr, 10) : 0;
}

void appendUtf8(std::string& out, const wchar_t* value, std::size_t length) {
    char bytes[4 * 512];
    while (length > 0) {
        std::size_t part = length < 512 ? length : 512;
        // A surrogate pair must not be cut in two.
        if (part < length && value[part - 1] >= 0xD800 && value[part - 1] < 0xDC00) {
            --part;
        }
        const int count = WideCharToMultiByte(CP_UTF8, 0, value, static_cast<int>(part), bytes,
                                              sizeof(bytes), nullptr, nullptr);
        out.append(bytes, static_cast<std::size_t>(count));
        value += part;
        length -= part;
    }
}

void appendEscaped(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    char code[8];
                    std::snprintf(code, sizeof(code), "\\u%04x", static_cast<unsigned>(c));
                    out += code;
                } else {
                    out += c;
                }
        }
    }
    out += '"';
}

// Wine appends in two steps (find the end, write there), so writers take turns.
class Turn {
public:
    Turn() {
        static HANDLE mutex = CreateMutexW(nullptr, FALSE, L"headunit.tape");
        mutex_ = mutex;
        WaitForSingleObject(mutex_, INFINITE);
    }
    ~Turn() { ReleaseMutex(mutex_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    HANDLE mutex_;
};

void write(const std::string& line) {
    const Turn turn;
    HANDLE file = CreateFileW(kTapeFile, FILE_APPEND_DATA,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                              OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    DWORD count = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &count, nullptr);
    CloseHandle(file);
}

}  // namespace

std::int64_t milliseconds() {
    static const std::int64_t bootTick = readBootTick();
    return static_cast<std::int64_t>(GetTickCount64()) - bootTick;
}

void begin() {
    HANDLE file =
        CreateFileW(kBootFile, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        char digits[32];
        const int length = std::snprintf(digits, sizeof(digits), "%lld\n",
                                         static_cast<long long>(GetTickCount64()));
        DWORD count = 0;
        WriteFile(file, digits, static_cast<DWORD>(length), &count, nullptr);
        CloseHandle(file);
    }
    DeleteFileW(kTapeFile);
}

Line::Line(const char* kind) {
    char head[96];
    std::snprintf(head, sizeof(head), "{\"ms\": %lld, \"kind\": \"%.40s\"",
                  static_cast<long long>(milliseconds()), kind);
    line_ = head;
}

Line::~Line() {
    line_ += "}\n";
    write(line_);
}

void Line::key(const char* name) {
    line_ += ", \"";
    line_ += name;
    line_ += "\": ";
}

Line& Line::text(const char* name, const wchar_t* value) {
    return text(name, value, value == nullptr ? 0 : std::char_traits<wchar_t>::length(value));
}

Line& Line::text(const char* name, const wchar_t* value, std::size_t length) {
    key(name);
    std::string utf8;
    appendUtf8(utf8, value, length);
    appendEscaped(line_, utf8);
    return *this;
}

Line& Line::number(const char* name, std::int64_t value) {
    key(name);
    line_ += std::to_string(value);
    return *this;
}

Line& Line::real(const char* name, double value) {
    key(name);
    char digits[40];
    std::snprintf(digits, sizeof(digits), "%.17g", value);
    // JSON knows no infinities.
    line_ += std::isfinite(value) ? digits : "null";
    return *this;
}

Line& Line::numbers(const char* name, std::span<const std::int64_t> values) {
    key(name);
    line_ += '[';
    for (std::size_t i = 0; i < values.size(); ++i) {
        line_ += (i > 0 ? ", " : "") + std::to_string(values[i]);
    }
    line_ += ']';
    return *this;
}

}  // namespace tape
