#include "simulator/shared/json.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace headunit {
namespace {

constexpr double kExact = 9007199254740992.0;  // up to here every whole number is a double

std::string leaf(const Json& value) {
    if (value.is_number_float()) {
        const double number = value.get<double>();
        if (std::fabs(number) < kExact && std::trunc(number) == number) {
            return std::to_string(static_cast<long long>(number));
        }
    }
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string oneLine(const Json& value) {
    if (!value.is_structured()) {
        return leaf(value);
    }
    std::string out;
    for (const auto& [name, item] : value.items()) {
        out += out.empty() ? "" : ", ";
        out += value.is_object() ? leaf(name) + ": " : "";
        out += oneLine(item);
    }
    return value.is_object() ? '{' + out + '}' : '[' + out + ']';
}

Json parseJson(std::string_view text) {
    return Json::parse(text, nullptr, false);
}

std::string textOf(const Json& object, std::string_view name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

long long numberOf(const Json& object, std::string_view name, long long fallback) {
    const auto found = object.find(name);
    return found != object.end() && found->is_number() ? found->get<long long>() : fallback;
}

std::string plain(const Json& value) {
    return value.is_string() ? value.get<std::string>()
                             : (value.is_null() ? "none" : oneLine(value));
}

}  // namespace headunit
