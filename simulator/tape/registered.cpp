#include "simulator/tape/registered.h"

#include <cstring>
#include <string>
#include <vector>

#include "simulator/tape/tape.h"

namespace tape {
namespace {

std::wstring widen(const char* ascii) {
    return std::wstring(ascii, ascii + std::strlen(ascii));
}

struct Number {
    UINT number;
    const Message* message;
};

std::vector<Number> lookUpAll() {
    std::vector<Number> numbers;
    for (const Message& message : messages()) {
        numbers.push_back({RegisterWindowMessageW(widen(message.name).c_str()), &message});
    }
    return numbers;
}

}  // namespace

const Message* registeredMessage(UINT message) {
    static const std::vector<Number> numbers = lookUpAll();
    for (const Number& row : numbers) {
        if (row.number == message) {
            return row.message;
        }
    }
    return nullptr;
}

void recordMessage(const char* kind, const char* from, const char* to, const char* name,
                   WPARAM wParam, LPARAM lParam) {
    // Both are printed as the 32-bit values that they are on the unit.
    Line(kind)
        .text("from", widen(from).c_str())
        .text("to", widen(to).c_str())
        .text("message", widen(name).c_str())
        .number("wParam", static_cast<std::int32_t>(wParam))
        .number("lParam", static_cast<std::int32_t>(lParam));
}

void recordCopyData(const char* from, const char* to, const COPYDATASTRUCT& data) {
    std::vector<std::int64_t> values(data.cbData / sizeof(std::int32_t));
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::int32_t value = 0;
        std::memcpy(&value, static_cast<const char*>(data.lpData) + i * sizeof(value),
                    sizeof(value));
        values[i] = value;
    }
    Line("copydata")
        .text("from", widen(from).c_str())
        .text("to", widen(to).c_str())
        .number("identifier", static_cast<std::int64_t>(data.dwData))
        .number("bytes", data.cbData)
        .numbers("values", values);
}

}  // namespace tape
