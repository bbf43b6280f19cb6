#include "simulator/command/describe.h"

#include <cstdio>

#include "simulator/tape/messages.h"

namespace headunit {
namespace {

std::string messageText(const json::Value& line) {
    const std::string name = line.textOf("message");
    const long long wParam = line.numberOf("wParam", 0);
    const long long lParam = line.numberOf("lParam", 0);
    std::string text = line.textOf("from") + " -> " + line.textOf("to") + "  " + name + " (" +
                       std::to_string(wParam) + ", " + std::to_string(lParam) + ")";
    const tape::Message* known = tape::findMessage(name);
    const std::string meaning = known == nullptr ? "" : tape::meaningOf(*known, wParam, lParam);
    return meaning.empty() ? text : text + "  " + meaning;
}

// Every other kind: its members as they are, texts on one line.
std::string plainText(const json::Value& line) {
    std::string text;
    for (const auto& [name, value] : line.members) {
        if (name == "ms" || name == "kind") {
            continue;
        }
        text += text.empty() ? "" : "  ";
        if (value.kind == json::Value::Kind::Array) {
            text += name + " [";
            for (const json::Value& item : value.items) {
                text += (&item == value.items.data() ? "" : ", ") + item.text;
            }
            text += "]";
        } else if (value.kind == json::Value::Kind::Number) {
            text += name + " " + value.text;
        } else if (name == "from" || name == "text") {
            const std::string escaped = json::quoted(value.text);
            text += name == "from" ? value.text : escaped.substr(1, escaped.size() - 2);
        } else {
            text += name + " " + json::quoted(value.text);
        }
    }
    return text;
}

}  // namespace

std::string describe(const json::Value& line) {
    char head[48];
    std::snprintf(head, sizeof(head), "%9.3f  %-9.20s ",
                  static_cast<double>(line.numberOf("ms", 0)) / 1000.0,
                  line.textOf("kind").c_str());
    return head + (line.find("message") != nullptr ? messageText(line) : plainText(line));
}

}  // namespace headunit
