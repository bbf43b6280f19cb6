// SAMI: <SYNC Start=ms><P Class=name>text ... up to the next SYNC; blank text clears.
#include <algorithm>

#include "simulator/filters/captions/caption_scan.h"

namespace filters {

namespace {

std::u16string samiText(View body) {
    std::u16string flat(body.substr(0, kLongestLine));
    std::erase_if(flat, [](char16_t c) { return c == u'\r' || c == u'\n'; });
    std::u16string text = withoutTags(flat);
    constexpr struct {
        View name, letter;
    } kEntities[] = {
        {u"&nbsp;", u" "}, {u"&lt;", u"<"}, {u"&gt;", u">"}, {u"&quot;", u"\""}, {u"&amp;", u"&"}};
    for (const auto& entity : kEntities) {
        replaceAll(text, entity.name, entity.letter);
    }
    return text;
}

// The class of the first paragraph, in small letters: one language of several.
std::u16string paragraphClass(View body) {
    constexpr View kTag = u"<p class=";
    std::u16string name;
    const std::size_t at = findNoCase(body, kTag, 0);
    if (at == View::npos) {
        return name;
    }
    for (const char16_t c : body.substr(at + kTag.size(), kLongestCaption)) {
        if (c == u'>' || c == u' ') {
            break;
        }
        if (c != u'"' && c != u'\'') {
            name += c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
        }
    }
    return name;
}

std::optional<Milliseconds> syncTime(View tag) {
    constexpr View kStart = u"start=";
    const std::size_t start = findNoCase(tag, kStart, 0);
    if (start == View::npos) {
        return std::nullopt;
    }
    tag.remove_prefix(start + kStart.size());
    takeOneOf(tag, u"\"'");
    return takeNumber(tag);
}

}  // namespace

Captions readSami(View file) {
    constexpr View kSync = u"<sync";
    Captions captions;
    std::optional<std::u16string> language;  // the first that a paragraph names
    bool open = false;                       // the last caption has no end yet
    for (std::size_t at = findNoCase(file, kSync, 0); at != View::npos;) {
        const std::size_t next = findNoCase(file, kSync, at + kSync.size());
        const View block = file.substr(at, next == View::npos ? View::npos : next - at);
        at = next;
        const std::size_t tagEnd = block.find(u'>');
        if (tagEnd == View::npos) {
            continue;
        }
        const auto time = syncTime(block.substr(0, tagEnd));
        const View body = block.substr(tagEnd + 1);
        const std::u16string name = paragraphClass(body);
        if (!language && !name.empty()) {
            language = name;
        }
        if (!time || name != language.value_or(u"")) {
            continue;
        }
        if (open) {
            captions.back().end = std::max(*time, captions.back().start + 1);
        }
        open = add(captions, *time, kOpenEnd, samiText(body));
    }
    return captions;
}

}  // namespace filters
