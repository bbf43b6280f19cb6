#include "simulator/tape/tape.h"

#include <windows.h>

#include <cstdio>
#include <nlohmann/json.hpp>

#include "simulator/shared/json.h"

namespace tape {
namespace {

constexpr wchar_t kTapeFile[] = L"\\.unit\\log.jsonl";
constexpr wchar_t kBootFile[] = L"\\.unit\\boot";

std::int64_t readBootTick() {
    long long tick = 0;
    if (std::FILE* const file = _wfopen(kBootFile, L"r")) {
        static_cast<void>(std::fscanf(file, "%lld", &tick));
        std::fclose(file);
    }
    return tick;
}

std::string utf8(const wchar_t* value, std::size_t length) {
    const int units = static_cast<int>(length);
    std::string out(3 * length, '\0');  // a UTF-16 unit takes three bytes at most
    const int count = WideCharToMultiByte(CP_UTF8, 0, value, units, out.data(),
                                          static_cast<int>(out.size()), nullptr, nullptr);
    out.resize(static_cast<std::size_t>(count));
    return out;
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
    if (std::FILE* const file = _wfopen(kBootFile, L"w")) {
        std::fprintf(file, "%lld\n", static_cast<long long>(GetTickCount64()));
        std::fclose(file);
    }
    DeleteFileW(kTapeFile);
}

Line::Line(const char* kind) : line_("{\"ms\": " + std::to_string(milliseconds())) {
    put("kind", headunit::Json(kind));
}

Line::~Line() {
    write(line_ + "}\n");
}

template <typename Value>
void Line::put(const char* name, const Value& value) {
    line_ += std::string(", \"") + name + "\": " + headunit::oneLine(value);
}

Line& Line::text(const char* name, const wchar_t* value) {
    return text(name, value, value == nullptr ? 0 : std::char_traits<wchar_t>::length(value));
}

Line& Line::text(const char* name, const wchar_t* value, std::size_t length) {
    put(name, headunit::Json(utf8(value, length)));
    return *this;
}

Line& Line::text(const char* name, const char* utf8) {
    put(name, headunit::Json(utf8));
    return *this;
}

Line& Line::number(const char* name, std::int64_t value) {
    put(name, headunit::Json(value));
    return *this;
}

Line& Line::numbers(const char* name, std::span<const std::int64_t> values) {
    headunit::Json array = headunit::Json::array();
    for (const std::int64_t value : values) {
        array.push_back(value);
    }
    put(name, array);
    return *this;
}

}  // namespace tape
