#include "simulator/filters/captions/caption_scan.h"

#include <algorithm>

namespace filters {

namespace {

char16_t small(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

bool isBlank(char16_t c) {
    constexpr char16_t kNoBreakSpace = 0xA0;
    return c <= u' ' || c == kNoBreakSpace;
}

}  // namespace

View trimmed(View text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool startsWithNoCase(View text, View start) {
    return text.size() >= start.size() &&
           std::equal(start.begin(), start.end(), text.begin(),
                      [](char16_t a, char16_t b) { return small(a) == small(b); });
}

std::size_t findNoCase(View text, View wanted, std::size_t from) {
    for (std::size_t i = from; i + wanted.size() <= text.size(); ++i) {
        if (startsWithNoCase(text.substr(i), wanted)) {
            return i;
        }
    }
    return View::npos;
}

bool takeLine(View& text, View& line) {
    if (text.empty()) {
        return false;
    }
    const std::size_t end = text.find(u'\n');
    line = text.substr(0, end);
    text.remove_prefix(end == View::npos ? text.size() : end + 1);
    if (line.ends_with(u'\r')) {
        line.remove_suffix(1);
    }
    line = line.substr(0, kLongestLine);
    return true;
}

bool takeOneOf(View& text, View set) {
    if (text.empty() || set.find(text.front()) == View::npos) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

std::optional<std::uint32_t> takeNumber(View& text, int* digits) {
    constexpr int kMostDigits = 9;
    std::uint32_t value = 0;
    int count = 0;
    while (count < kMostDigits && !text.empty() && text.front() >= u'0' && text.front() <= u'9') {
        value = value * 10 + static_cast<std::uint32_t>(text.front() - u'0');
        text.remove_prefix(1);
        ++count;
    }
    if (digits) {
        *digits = count;
    }
    return count ? std::optional(value) : std::nullopt;
}

std::optional<Milliseconds> takeClock(View& text) {
    constexpr std::uint32_t kLargest[] = {999, 59, 59};  // hours, minutes, seconds
    Milliseconds seconds = 0;
    text = trimmed(text);
    for (const std::uint32_t& largest : kLargest) {
        const bool first = &largest == kLargest;
        const auto value = first || takeOneOf(text, u":") ? takeNumber(text) : std::nullopt;
        if (!value || *value > largest) {
            return std::nullopt;
        }
        seconds = seconds * 60 + *value;
    }
    std::uint32_t fraction = 0;
    if (takeOneOf(text, u",.:")) {
        int digits = 0;
        fraction = takeNumber(text, &digits).value_or(0);
        for (; digits < 3; ++digits) {
            fraction *= 10;
        }
        for (; digits > 3; --digits) {
            fraction /= 10;
        }
    }
    return seconds * 1000 + fraction;
}

void replaceAll(std::u16string& text, View from, View to) {
    std::u16string out;
    View rest = text;
    for (std::size_t at; (at = rest.find(from)) != View::npos;) {
        out.append(rest.substr(0, at)).append(to);
        rest.remove_prefix(at + from.size());
    }
    text = out.append(rest);
}

std::u16string withoutTags(View text) {
    std::u16string out;
    for (std::size_t open; (open = text.find(u'<')) != View::npos;) {
        const std::size_t close = text.find(u'>', open);
        if (close == View::npos) {
            break;  // what is never closed is text, and so is all that follows
        }
        out.append(text.substr(0, open));
        if (startsWithNoCase(text.substr(open), u"<br")) {
            out += u'\n';
        }
        text.remove_prefix(close + 1);
    }
    return out.append(text);
}

std::u16string withoutBraces(View text) {
    std::u16string out;
    bool inside = false;
    for (const char16_t c : text) {
        if (c == u'{' || c == u'}') {
            inside = c == u'{';
        } else if (!inside) {
            out += c;
        }
    }
    return out;
}

bool add(Captions& captions, Milliseconds start, Milliseconds end, View text) {
    const View shown = trimmed(text).substr(0, kLongestCaption);
    if (shown.empty() || end <= start || captions.size() >= kMostCaptions) {
        return false;
    }
    captions.push_back({start, end, std::u16string(shown)});
    return true;
}

}  // namespace filters
