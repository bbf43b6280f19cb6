#include "simulator/command/json.h"

#include <cstdio>
#include <cstdlib>

namespace json {
namespace {

constexpr int kDeepest = 16;

class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    bool value(Value& out, int depth) {
        skipSpace();
        if (rest_.empty() || depth > kDeepest) {
            return false;
        }
        switch (rest_.front()) {
            case '{':
                return object(out, depth);
            case '[':
                return array(out, depth);
            case '"':
                out.kind = Value::Kind::Text;
                return string(out.text);
            case 't':
                out.truth = true;
                out.kind = Value::Kind::Bool;
                return word("true");
            case 'f':
                out.kind = Value::Kind::Bool;
                return word("false");
            case 'n':
                return word("null");
            default:
                return number(out);
        }
    }

    bool atEnd() {
        skipSpace();
        return rest_.empty();
    }

private:
    void skipSpace() {
        const auto first = rest_.find_first_not_of(" \t\r\n");
        rest_.remove_prefix(first == std::string_view::npos ? rest_.size() : first);
    }

    bool take(char wanted) {
        skipSpace();
        if (rest_.empty() || rest_.front() != wanted) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    bool word(std::string_view wanted) {
        if (!rest_.starts_with(wanted)) {
            return false;
        }
        rest_.remove_prefix(wanted.size());
        return true;
    }

    bool number(Value& out) {
        const auto end = rest_.find_first_not_of("+-0123456789.eE");
        out.text = std::string(rest_.substr(0, end));
        char* stop = nullptr;
        out.number = std::strtod(out.text.c_str(), &stop);
        out.kind = Value::Kind::Number;
        rest_.remove_prefix(out.text.size());
        return !out.text.empty() && *stop == '\0';
    }

    bool hex4(unsigned& code) {
        if (rest_.size() < 4) {
            return false;
        }
        const std::string digits(rest_.substr(0, 4));
        char* stop = nullptr;
        code = static_cast<unsigned>(std::strtoul(digits.c_str(), &stop, 16));
        rest_.remove_prefix(4);
        return *stop == '\0';
    }

    static void appendUtf8(std::string& out, unsigned code) {
        if (code < 0x80) {
            out += static_cast<char>(code);
        } else if (code < 0x800) {
            out += static_cast<char>(0xC0 | (code >> 6));
            out += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            out += static_cast<char>(0xE0 | (code >> 12));
            out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (code & 0x3F));
        }
    }

    bool escape(std::string& out) {
        if (rest_.empty()) {
            return false;
        }
        const char kind = rest_.front();
        rest_.remove_prefix(1);
        constexpr std::string_view kLetters = "nrtbf\"\\/";
        constexpr std::string_view kMeant = "\n\r\t\b\f\"\\/";
        if (kind == 'u') {
            unsigned code = 0;
            if (!hex4(code)) {
                return false;
            }
            appendUtf8(out, code);
            return true;
        }
        const auto at = kLetters.find(kind);
        if (at == std::string_view::npos) {
            return false;
        }
        out += kMeant[at];
        return true;
    }

    bool string(std::string& out) {
        rest_.remove_prefix(1);
        while (!rest_.empty()) {
            const char c = rest_.front();
            rest_.remove_prefix(1);
            if (c == '"') {
                return true;
            }
            if (c != '\\') {
                out += c;
            } else if (!escape(out)) {
                return false;
            }
        }
        return false;
    }

    bool array(Value& out, int depth) {
        out.kind = Value::Kind::Array;
        take('[');
        if (take(']')) {
            return true;
        }
        do {
            if (!value(out.items.emplace_back(), depth + 1)) {
                return false;
            }
        } while (take(','));
        return take(']');
    }

    bool object(Value& out, int depth) {
        out.kind = Value::Kind::Object;
        take('{');
        if (take('}')) {
            return true;
        }
        do {
            skipSpace();
            auto& member = out.members.emplace_back();
            if (rest_.empty() || rest_.front() != '"' || !string(member.first) || !take(':') ||
                !value(member.second, depth + 1)) {
                return false;
            }
        } while (take(','));
        return take('}');
    }

    std::string_view rest_;
};

}  // namespace

const Value* Value::find(std::string_view name) const {
    for (const auto& member : members) {
        if (member.first == name) {
            return &member.second;
        }
    }
    return nullptr;
}

std::string Value::textOf(std::string_view name) const {
    const Value* member = find(name);
    return member != nullptr && member->kind == Kind::Text ? member->text : std::string();
}

long long Value::numberOf(std::string_view name, long long fallback) const {
    const Value* member = find(name);
    return member != nullptr && member->kind == Kind::Number
               ? static_cast<long long>(member->number)
               : fallback;
}

std::optional<Value> parse(std::string_view text) {
    Reader reader(text);
    Value value;
    if (!reader.value(value, 0) || !reader.atEnd()) {
        return std::nullopt;
    }
    return value;
}

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (code < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\u%04x", static_cast<unsigned>(code));
            out += escaped;
        } else {
            out += c;
        }
    }
    return out + '"';
}

}  // namespace json
