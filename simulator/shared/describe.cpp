#include "simulator/shared/describe.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "simulator/shared/messages.h"
#include "simulator/shared/words.h"

namespace headunit {
namespace {

std::string messageText(const Json& line) {
    const std::string name = textOf(line, "message");
    const long long wParam = numberOf(line, "wParam", 0);
    const long long lParam = numberOf(line, "lParam", 0);
    std::string text = textOf(line, "from") + " -> " + textOf(line, "to") + "  " + name + " (" +
                       std::to_string(wParam) + ", " + std::to_string(lParam) + ")";
    const tape::Message* known = tape::findMessage(name);
    const std::string meaning = known == nullptr ? "" : tape::meaningOf(*known, wParam, lParam);
    return meaning.empty() ? text : text + "  " + meaning;
}

// Every other kind: its members as they are. Texts are quoted as a scenario takes them.
std::string memberText(const Json& line) {
    std::string text;
    for (const auto& [name, value] : line.items()) {
        if (name == "ms" || name == "kind") {
            continue;
        }
        text += text.empty() ? "" : "  ";
        if (name == "from") {
            text += plain(value);
        } else if (value.is_string()) {
            text += (name == "text" ? "" : name + " ") + inQuotes(value.get<std::string>());
        } else {
            text += name + " " + oneLine(value);
        }
    }
    return text;
}

}  // namespace

std::string describe(const Json& line) {
    char head[48];
    std::snprintf(head, sizeof(head), "%9.3f  %-9.20s ",
                  static_cast<double>(numberOf(line, "ms", 0)) / 1000.0,
                  textOf(line, "kind").c_str());
    return head + (line.contains("message") ? messageText(line) : memberText(line));
}

}  // namespace headunit
