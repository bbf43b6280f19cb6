#include "simulator/filters/caption_text.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <optional>
#include <string_view>

namespace filters {

namespace {

using View = std::wstring_view;
using Captions = std::vector<Caption>;

constexpr UINT kKoreanCodePage = 949;
constexpr double kDefaultFramesPerSecond = 25.0;  // of MicroDVD files that do not say

std::wstring decode(UINT codePage, DWORD flags, std::span<const std::uint8_t> bytes) {
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    const auto size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, text, size, nullptr, 0);
    std::wstring out(static_cast<std::size_t>(std::max(length, 0)), L'\0');
    MultiByteToWideChar(codePage, flags, text, size, out.data(), length);
    return out;
}

std::wstring decodeFile(std::span<const std::uint8_t> file) {
    if (file.size() >= 2 && file[0] == 0xFF && file[1] == 0xFE) {  // UTF-16, low byte first
        std::wstring out;
        for (std::size_t i = 2; i + 1 < file.size(); i += 2) {
            out.push_back(static_cast<wchar_t>(file[i] | file[i + 1] << 8));
        }
        return out;
    }
    if (file.size() >= 3 && file[0] == 0xEF && file[1] == 0xBB && file[2] == 0xBF) {
        return decode(CP_UTF8, 0, file.subspan(3));
    }
    std::wstring out = decode(CP_UTF8, MB_ERR_INVALID_CHARS, file);
    return out.empty() ? decode(kKoreanCodePage, 0, file) : out;
}

// --- text helpers

View trimmed(View text) {
    while (!text.empty() && (text.front() <= L' ' || text.front() == 0xA0)) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() <= L' ' || text.back() == 0xA0)) {
        text.remove_suffix(1);
    }
    return text;
}

bool startsWithNoCase(View text, View start) {
    if (text.size() < start.size()) {
        return false;
    }
    return std::equal(start.begin(), start.end(), text.begin(), [](wchar_t a, wchar_t b) {
        return std::towlower(static_cast<wint_t>(a)) == std::towlower(static_cast<wint_t>(b));
    });
}

std::size_t findNoCase(View text, View wanted, std::size_t from) {
    for (std::size_t i = from; i + wanted.size() <= text.size(); ++i) {
        if (startsWithNoCase(text.substr(i), wanted)) {
            return i;
        }
    }
    return View::npos;
}

std::vector<View> linesOf(View text) {
    std::vector<View> lines;
    while (!text.empty()) {
        const std::size_t end = text.find(L'\n');
        View line = text.substr(0, end);
        if (!line.empty() && line.back() == L'\r') {
            line.remove_suffix(1);
        }
        lines.push_back(line);
        text.remove_prefix(end == View::npos ? text.size() : end + 1);
    }
    return lines;
}

// Takes a decimal number off the front; nothing when there is none (at most nine digits).
std::optional<DWORD> takeNumber(View* text, int* digits = nullptr) {
    DWORD value = 0;
    int count = 0;
    while (!text->empty() && text->front() >= L'0' && text->front() <= L'9' && count < 9) {
        value = value * 10 + static_cast<DWORD>(text->front() - L'0');
        text->remove_prefix(1);
        ++count;
    }
    if (digits) {
        *digits = count;
    }
    return count ? std::optional<DWORD>(value) : std::nullopt;
}

bool takeOneOf(View* text, View set) {
    if (text->empty() || set.find(text->front()) == View::npos) {
        return false;
    }
    text->remove_prefix(1);
    return true;
}

// "hours:minutes:seconds" with a fraction of one to three digits after a comma or a point.
std::optional<DWORD> takeClock(View* text) {
    *text = trimmed(*text);
    const auto hours = takeNumber(text);
    if (!hours || !takeOneOf(text, L":")) {
        return std::nullopt;
    }
    const auto minutes = takeNumber(text);
    if (!minutes || !takeOneOf(text, L":")) {
        return std::nullopt;
    }
    const auto seconds = takeNumber(text);
    if (!seconds || *hours > 999 || *minutes > 59 || *seconds > 59) {
        return std::nullopt;
    }
    DWORD milliseconds = 0;
    if (takeOneOf(text, L",.:")) {
        int digits = 0;
        milliseconds = takeNumber(text, &digits).value_or(0);
        for (; digits < 3; ++digits) {
            milliseconds *= 10;
        }
        for (; digits > 3; --digits) {
            milliseconds /= 10;
        }
    }
    return ((*hours * 60 + *minutes) * 60 + *seconds) * 1000 + milliseconds;
}

void replaceAll(std::wstring& text, View from, View to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::wstring::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

// Text between < and > goes; a line break tag becomes one.
std::wstring withoutTags(View text) {
    std::wstring out;
    while (!text.empty()) {
        const std::size_t end = text.front() == L'<' ? text.find(L'>') : View::npos;
        if (end != View::npos) {
            if (startsWithNoCase(text, L"<br")) {
                out += L'\n';
            }
            text.remove_prefix(end + 1);
        } else {
            out += text.front();
            text.remove_prefix(1);
        }
    }
    return out;
}

void add(Captions& captions, DWORD start, DWORD end, View text) {
    const View shown = trimmed(text);
    if (!shown.empty() && end > start) {
        captions.push_back({start, end, std::wstring(shown)});
    }
}

// --- SAMI: <SYNC Start=ms><P Class=name>text ... up to the next SYNC; blank text clears.

std::wstring samiText(View body) {
    std::wstring flat(body);
    std::erase_if(flat, [](wchar_t c) { return c == L'\r' || c == L'\n'; });
    std::wstring text = withoutTags(flat);
    replaceAll(text, L"&nbsp;", L" ");
    replaceAll(text, L"&lt;", L"<");
    replaceAll(text, L"&gt;", L">");
    replaceAll(text, L"&quot;", L"\"");
    replaceAll(text, L"&amp;", L"&");
    return text;
}

// The class of the first paragraph: one language of several.
std::wstring paragraphClass(View body) {
    const std::size_t at = findNoCase(body, L"<p class=", 0);
    if (at == View::npos) {
        return {};
    }
    std::wstring name;
    for (const wchar_t c : body.substr(at + 9)) {
        if (c == L'>' || c == L' ') {
            break;
        }
        if (c != L'"' && c != L'\'') {
            name += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
        }
    }
    return name;
}

Captions readSmi(View file) {
    Captions captions;
    std::wstring language;
    bool languageKnown = false;
    bool open = false;  // the last caption has no end yet
    for (std::size_t at = findNoCase(file, L"<sync", 0); at != View::npos;) {
        const std::size_t next = findNoCase(file, L"<sync", at + 5);
        const View block = file.substr(at, next == View::npos ? View::npos : next - at);
        at = next;
        const std::size_t tagEnd = block.find(L'>');
        const std::size_t start = findNoCase(block, L"start=", 0);
        if (tagEnd == View::npos || start == View::npos || start > tagEnd) {
            continue;
        }
        View number = block.substr(start + 6);
        takeOneOf(&number, L"\"'");
        const auto time = takeNumber(&number);
        const View body = block.substr(tagEnd + 1);
        const std::wstring name = paragraphClass(body);
        if (!languageKnown && !name.empty()) {
            language = name;
            languageKnown = true;
        }
        if (!time || name != language) {
            continue;
        }
        if (open) {
            captions.back().end = std::max(*time, captions.back().start + 1);
        }
        const std::size_t before = captions.size();
        add(captions, *time, kOpenEnd, samiText(body));
        open = captions.size() > before;
    }
    return captions;
}

// --- SubRip: number, "start --> end", lines of text, an empty line.

Captions readSrt(View file) {
    Captions captions;
    const std::vector<View> lines = linesOf(file);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t arrow = lines[i].find(L"-->");
        if (arrow == View::npos) {
            continue;
        }
        View left = lines[i].substr(0, arrow);
        View right = lines[i].substr(arrow + 3);
        const auto start = takeClock(&left);
        const auto end = takeClock(&right);
        std::wstring text;
        while (i + 1 < lines.size() && !trimmed(lines[i + 1]).empty()) {
            text += withoutTags(lines[++i]);
            text += L'\n';
        }
        if (start && end) {
            add(captions, *start, *end, text);
        }
    }
    return captions;
}

// --- MicroDVD: {first frame}{last frame}text|text. SubViewer: "start,end", then a line of text.

std::optional<DWORD> takeBraced(View* text) {
    if (!takeOneOf(text, L"{")) {
        return std::nullopt;
    }
    const auto value = takeNumber(text);
    return takeOneOf(text, L"}") ? value : std::nullopt;
}

std::wstring withoutBraces(View text) {
    std::wstring out;
    bool inside = false;
    for (const wchar_t c : text) {
        if (c == L'{') {
            inside = true;
        } else if (c == L'}') {
            inside = false;
        } else if (!inside) {
            out += c;
        }
    }
    return out;
}

Captions readMicroDvd(const std::vector<View>& lines) {
    Captions captions;
    double framesPerSecond = kDefaultFramesPerSecond;
    for (View line : lines) {
        const auto first = takeBraced(&line);
        const auto last = first ? takeBraced(&line) : std::nullopt;
        if (!last) {
            continue;
        }
        if (*first <= 1 && *last <= 1) {  // the file's frame rate
            const double rate = std::wcstod(std::wstring(line).c_str(), nullptr);
            framesPerSecond = rate >= 1 && rate <= 120 ? rate : framesPerSecond;
            continue;
        }
        std::wstring text = withoutBraces(line);
        std::replace(text.begin(), text.end(), L'|', L'\n');
        add(captions, static_cast<DWORD>(*first * 1000.0 / framesPerSecond),
            static_cast<DWORD>(*last * 1000.0 / framesPerSecond), text);
    }
    return captions;
}

Captions readSubViewer(const std::vector<View>& lines) {
    Captions captions;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        View line = lines[i];
        const auto start = takeClock(&line);
        if (!start || !takeOneOf(&line, L",")) {
            continue;
        }
        const auto end = takeClock(&line);
        if (!end) {
            continue;
        }
        std::wstring text(lines[++i]);
        replaceAll(text, L"[br]", L"\n");
        add(captions, *start, *end, withoutTags(text));
    }
    return captions;
}

// --- Sub Station Alpha: [Events], "Format:" names the columns, "Dialogue:" lines.

std::wstring ssaText(View body) {
    std::wstring text = withoutBraces(body);
    replaceAll(text, L"\\N", L"\n");
    replaceAll(text, L"\\n", L"\n");
    replaceAll(text, L"\\h", L" ");
    return text;
}

struct SsaColumns {
    std::size_t start = 1, end = 2, text = 9;  // of v4 files without a format line
};

SsaColumns readSsaFormat(View line) {
    SsaColumns columns;
    for (std::size_t column = 0; !line.empty(); ++column) {
        const std::size_t comma = line.find(L',');
        const View name = trimmed(line.substr(0, comma));
        if (startsWithNoCase(name, L"start")) {
            columns.start = column;
        } else if (startsWithNoCase(name, L"end")) {
            columns.end = column;
        } else if (startsWithNoCase(name, L"text")) {
            columns.text = column;
        }
        line.remove_prefix(comma == View::npos ? line.size() : comma + 1);
    }
    return columns;
}

Captions readSsa(View file) {
    Captions captions;
    SsaColumns columns;
    bool events = false;
    for (const View line : linesOf(file)) {
        if (line.starts_with(L"[")) {
            events = startsWithNoCase(line, L"[events]");
        } else if (events && startsWithNoCase(line, L"format:")) {
            columns = readSsaFormat(line.substr(7));
        } else if (events && startsWithNoCase(line, L"dialogue:")) {
            View rest = line.substr(9);
            std::optional<DWORD> start;
            std::optional<DWORD> end;
            for (std::size_t column = 0; column < columns.text && !rest.empty(); ++column) {
                const std::size_t comma = rest.find(L',');
                View field = rest.substr(0, comma);
                if (column == columns.start) {
                    start = takeClock(&field);
                } else if (column == columns.end) {
                    end = takeClock(&field);
                }
                rest.remove_prefix(comma == View::npos ? rest.size() : comma + 1);
            }
            if (start && end) {
                add(captions, *start, *end, ssaText(rest));
            }
        }
    }
    return captions;
}

}  // namespace

std::vector<Caption> readCaptions(SubtitleType type, std::span<const std::uint8_t> file) {
    const std::wstring text = decodeFile(file);
    Captions captions;
    switch (type) {
        case SubtitleType::Smi:
            captions = readSmi(text);
            break;
        case SubtitleType::Srt:
            captions = readSrt(text);
            break;
        case SubtitleType::Sub: {
            const std::vector<View> lines = linesOf(text);
            captions = readMicroDvd(lines);
            if (captions.empty()) {
                captions = readSubViewer(lines);
            }
            break;
        }
        case SubtitleType::Ssa:
            captions = readSsa(text);
            break;
    }
    std::stable_sort(captions.begin(), captions.end(),
                     [](const Caption& a, const Caption& b) { return a.start < b.start; });
    return captions;
}

int captionAt(const std::vector<Caption>& captions, DWORD milliseconds) {
    const auto after =
        std::upper_bound(captions.begin(), captions.end(), milliseconds,
                         [](DWORD time, const Caption& caption) { return time < caption.start; });
    for (auto at = after; at != captions.begin();) {
        --at;
        if (milliseconds < at->end) {
            return static_cast<int>(at - captions.begin());
        }
        if (after - at > 8) {  // overlaps are short
            break;
        }
    }
    return -1;
}

}  // namespace filters
