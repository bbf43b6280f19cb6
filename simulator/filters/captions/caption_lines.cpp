// The subtitle files that are read line by line.
#include <algorithm>

#include "simulator/filters/captions/caption_scan.h"

namespace filters {

// SubRip: a number, "start --> end", lines of text, an empty line.
Captions readSubRip(View file) {
    constexpr View kArrow = u"-->";
    Captions captions;
    for (View line; takeLine(file, line);) {
        const std::size_t arrow = line.find(kArrow);
        if (arrow == View::npos) {
            continue;
        }
        View left = line.substr(0, arrow);
        View right = line.substr(arrow + kArrow.size());
        const auto start = takeClock(left);
        const auto end = takeClock(right);
        std::u16string text;
        while (takeLine(file, line) && !trimmed(line).empty()) {
            if (text.size() < kLongestLine) {
                text.append(withoutTags(line)) += u'\n';
            }
        }
        if (start && end) {
            add(captions, *start, *end, text);
        }
    }
    return captions;
}

namespace {

constexpr double kDefaultFramesPerSecond = 25.0;  // of MicroDVD files that do not say

std::optional<std::uint32_t> takeBraced(View& text) {
    if (!takeOneOf(text, u"{")) {
        return std::nullopt;
    }
    const auto value = takeNumber(text);
    return takeOneOf(text, u"}") ? value : std::nullopt;
}

// "23.976"; 0 for anything else.
double frameRate(View text) {
    double rate = takeNumber(text).value_or(0);
    int digits = 0;
    if (takeOneOf(text, u".")) {
        double fraction = takeNumber(text, &digits).value_or(0);
        for (; digits > 0; --digits) {
            fraction /= 10;
        }
        rate += fraction;
    }
    return rate;
}

Milliseconds timeOfFrame(std::uint32_t frame, double framesPerSecond) {
    return static_cast<Milliseconds>(
        std::min<double>(frame * 1000.0 / framesPerSecond, kOpenEnd - 1));
}

}  // namespace

// MicroDVD: {first frame}{last frame}text|text; a first line of frames 0 or 1 holds the frame rate.
Captions readMicroDvd(View file) {
    Captions captions;
    double framesPerSecond = kDefaultFramesPerSecond;
    for (View line; takeLine(file, line);) {
        const auto first = takeBraced(line);
        const auto last = first ? takeBraced(line) : std::nullopt;
        if (!last) {
            continue;
        }
        if (*first <= 1 && *last <= 1) {
            const double rate = frameRate(line);
            framesPerSecond = rate >= 1 && rate <= 120 ? rate : framesPerSecond;
            continue;
        }
        std::u16string text = withoutBraces(line);
        std::replace(text.begin(), text.end(), u'|', u'\n');
        add(captions, timeOfFrame(*first, framesPerSecond), timeOfFrame(*last, framesPerSecond),
            text);
    }
    return captions;
}

// SubViewer: "start,end", then a line of text.
Captions readSubViewer(View file) {
    Captions captions;
    for (View line; takeLine(file, line);) {
        const auto start = takeClock(line);
        const auto end = start && takeOneOf(line, u",") ? takeClock(line) : std::nullopt;
        if (end && takeLine(file, line)) {
            std::u16string text(line);
            replaceAll(text, u"[br]", u"\n");
            add(captions, *start, *end, withoutTags(text));
        }
    }
    return captions;
}

namespace {

// The next of the fields that commas separate.
View takeField(View& line) {
    const std::size_t comma = line.find(u',');
    const View field = line.substr(0, comma);
    line.remove_prefix(comma == View::npos ? line.size() : comma + 1);
    return field;
}

struct SsaColumns {
    std::size_t start = 1, end = 2, text = 9;  // of v4 files without a format line
};

SsaColumns readFormat(View line) {
    SsaColumns columns;
    for (std::size_t column = 0; !line.empty(); ++column) {
        const View name = trimmed(takeField(line));
        if (startsWithNoCase(name, u"start")) {
            columns.start = column;
        } else if (startsWithNoCase(name, u"end")) {
            columns.end = column;
        } else if (startsWithNoCase(name, u"text")) {
            columns.text = column;
        }
    }
    return columns;
}

void readDialogue(View line, const SsaColumns& columns, Captions& captions) {
    std::optional<Milliseconds> start;
    std::optional<Milliseconds> end;
    for (std::size_t column = 0; column < columns.text && !line.empty(); ++column) {
        View field = takeField(line);
        if (column == columns.start) {
            start = takeClock(field);
        } else if (column == columns.end) {
            end = takeClock(field);
        }
    }
    if (start && end) {
        std::u16string text = withoutBraces(line);
        replaceAll(text, u"\\N", u"\n");
        replaceAll(text, u"\\n", u"\n");
        replaceAll(text, u"\\h", u" ");
        add(captions, *start, *end, text);
    }
}

}  // namespace

// Sub Station Alpha: in [Events], "Format:" names the columns of the "Dialogue:" lines.
Captions readSubStationAlpha(View file) {
    constexpr View kFormat = u"format:";
    constexpr View kDialogue = u"dialogue:";
    Captions captions;
    SsaColumns columns;
    bool events = false;
    for (View line; takeLine(file, line);) {
        if (line.starts_with(u'[')) {
            events = startsWithNoCase(line, u"[events]");
        } else if (events && startsWithNoCase(line, kFormat)) {
            columns = readFormat(line.substr(kFormat.size()));
        } else if (events && startsWithNoCase(line, kDialogue)) {
            readDialogue(line.substr(kDialogue.size()), columns, captions);
        }
    }
    return captions;
}

}  // namespace filters
