// The tape of the simulated head unit: one JSON object a line for everything that crosses a process
// border. Every process of the unit, the libraries inside the player included, appends to the same
// file, `\.unit\log.jsonl` of the drive it runs on; writers take turns, so lines of several
// processes and threads never mix. On a drive without a folder `\.unit` nothing is
// recorded. Windows only.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace tape {

// One line, written when the object goes out of scope:
//   tape::Line("post").text("from", L"Video").number("wParam", 7);
// Keys are ASCII; texts are escaped as JSON needs. "ms" (milliseconds since the unit was
// booted) and "kind" come first.
class Line {
public:
    explicit Line(const char* kind);
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Line& text(const char* key, const wchar_t* value);
    Line& text(const char* key, const wchar_t* value, std::size_t length);
    Line& text(const char* key, const char* utf8);
    Line& number(const char* key, std::int64_t value);
    Line& numbers(const char* key, std::span<const std::int64_t> values);

private:
    template <typename Value>
    void put(const char* name, const Value& value);

    std::string line_;
};

// A line of the kind "filter": what one of the vendor's filters was told or does.
struct FilterLine : Line {
    FilterLine(const wchar_t* filter, const wchar_t* what) : Line("filter") {
        text("filter", filter).text("what", what);
    }
};

// Marks this moment as the boot of the unit: empties the tape and makes "ms" count from now.
// Called once by the process that starts the others.
void begin();

// Milliseconds since the boot.
std::int64_t milliseconds();

}  // namespace tape
