#include "simulator/tape/registered.h"

#include <cstring>
#include <vector>

#include "simulator/tape/tape.h"

namespace tape {
namespace {

struct Number {
    UINT number;
    const Message* message;
};

std::vector<Number> lookUpAll() {
    std::vector<Number> numbers;
    for (const Message& message : messages()) {
        numbers.push_back({RegisterWindowMessageA(message.name), &message});
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
        .text("from", from)
        .text("to", to)
        .text("message", name)
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
        .text("from", from)
        .text("to", to)
        .number("identifier", static_cast<std::int64_t>(data.dwData))
        .number("bytes", data.cbData)
        .numbers("values", values);
}

}  // namespace tape
