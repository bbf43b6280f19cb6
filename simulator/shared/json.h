// JSON (RFC 8259) as the tape and the hub write it: one line, members in the order in which they
// were put, a blank behind ":" and ",". Portable. Who looks into a value includes
// <nlohmann/json.hpp> too.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace headunit {

using Json = nlohmann::ordered_json;

// Never throws: bytes that are no UTF-8 become U+FFFD, infinities null; a real number that is whole
// is written as a whole one.
std::string oneLine(const Json& value);
// A discarded value when `text` is not one JSON value.
Json parseJson(std::string_view text);

// The member's text, or "" when it is missing or no text.
std::string textOf(const Json& object, std::string_view name);
// The member's number, or `fallback`.
long long numberOf(const Json& object, std::string_view name, long long fallback);
// As a person reads it: texts without quotes, null as "none", everything else as on the tape.
std::string plain(const Json& value);

}  // namespace headunit
