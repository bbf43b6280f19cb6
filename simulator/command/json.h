// A small reader of JSON (RFC 8259) for the tape's lines and the hub's answers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace json {

struct Value {
    enum class Kind { Null, Bool, Number, Text, Array, Object };
    Kind kind = Kind::Null;
    bool truth = false;
    double number = 0;
    std::string text;  // of a text as UTF-8; of a number as written
    std::vector<Value> items;
    std::vector<std::pair<std::string, Value>> members;

    // Null when there is no such member.
    [[nodiscard]] const Value* find(std::string_view name) const;
    // The member's text, or "" when it is missing or no text.
    [[nodiscard]] std::string textOf(std::string_view name) const;
    // The member's number, or `fallback`.
    [[nodiscard]] long long numberOf(std::string_view name, long long fallback) const;
};

// Nothing when `text` is not one JSON value.
std::optional<Value> parse(std::string_view text);

// `text` with quotes around it and escaped.
std::string quoted(std::string_view text);

}  // namespace json
