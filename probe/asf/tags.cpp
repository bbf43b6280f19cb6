#include "probe/asf/tags.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace probe {
namespace {

constexpr std::size_t kNameBytes = 64;
constexpr std::size_t kNameLimit = 32;  // names of this many bytes and more are passed over
constexpr std::size_t kKeptBytes = (kTextLength - 1) * std::size_t{2};

// Value types of an attribute; 1 is a byte array, 2 a boolean.
enum ValueType : std::uint16_t { Text = 0, Number32 = 3, Number64 = 4, Number16 = 5 };

constexpr std::u16string_view kTrackNumber = u"WM/TrackNumber";
constexpr std::u16string_view kAlbumArtist = u"WM/AlbumArtist";

struct NameRow {
    std::u16string_view name;
    AsfText AsfReader::*text;
};

constexpr auto kNames = std::to_array<NameRow>({
    {kAlbumArtist, &AsfReader::artist},
    {u"WM/AlbumTitle", &AsfReader::album},
    {u"WM/Genre", &AsfReader::genre},
    {kTrackNumber, &AsfReader::track},
    {u"WM/Composer", &AsfReader::composer},
    {u"WM/Year", &AsfReader::year},
});

// UTF-16 little-endian; an odd last byte is the lower half of its character.
std::size_t decodeUtf16(std::span<const std::uint8_t> bytes, std::span<char16_t> out) {
    std::size_t written = 0;
    for (std::size_t at = 0; at < bytes.size() && written < out.size(); at += 2) {
        const std::uint32_t high = at + 1 < bytes.size() ? bytes[at + 1] : 0u;
        out[written++] = static_cast<char16_t>(bytes[at] | (high << 8));
    }
    return written;
}

// Replaces `text` by the next `lengthBytes` of the header, of which a field's worth is kept. An
// empty one leaves it as it was, and so does one that the header's end cuts.
void readText(FileCursor& cursor, std::uint32_t lengthBytes, AsfText& text) {
    std::array<std::uint8_t, kKeptBytes> bytes;
    const std::size_t kept = std::min<std::size_t>(lengthBytes, bytes.size());
    if (lengthBytes > cursor.remaining()) {
        cursor.skip(lengthBytes);  // ends the walk
        return;
    }
    if (lengthBytes == 0 || !cursor.take(std::span(bytes).first(kept))) {
        return;
    }
    cursor.skip(lengthBytes - kept);
    AsfText replaced;
    replaced.lengthBytes = lengthBytes;
    const std::size_t units =
        decodeUtf16(std::span(bytes).first(kept), std::span(replaced.text).first(kTextLength - 1));
    const bool wasCut = kept < lengthBytes;
    const char16_t last = units != 0 ? replaced.text[units - 1] : u'\0';
    if (wasCut && last >= 0xD800 && last < 0xDC00) {
        replaced.text[units - 1] = u'\0';  // no half of a surrogate pair
    }
    text = replaced;
}

void setNumber(std::uint32_t number, AsfText& text) {
    std::array<char16_t, 10> digits;
    std::size_t count = 0;
    do {
        digits[count++] = static_cast<char16_t>(u'0' + number % 10);
        number /= 10;
    } while (number != 0);
    text = {};
    text.lengthBytes = static_cast<std::uint32_t>(count * 2);
    std::reverse_copy(digits.begin(), digits.begin() + count, text.text.begin());
}

// A track number stored as a number; false for a value of another type or one that is too short
// for its type.
bool readTrackNumber(FileCursor& cursor, std::uint16_t type, std::uint32_t valueBytes,
                     AsfText& text) {
    std::uint32_t number = 0;
    if (type == Number16 && valueBytes >= 2) {
        number = cursor.le16();
    } else if (type == Number32 && valueBytes >= 4) {
        number = cursor.le32();
    } else if (type == Number64 && valueBytes >= 8) {
        number = static_cast<std::uint32_t>(cursor.le64());
    } else {
        return false;
    }
    if (cursor.ok()) {
        setNumber(number, text);
    }
    return true;
}

// The value of a known attribute. The cursor is set to its end by the caller.
void readValue(FileCursor& cursor, const NameRow& row, std::uint16_t type, std::uint32_t valueBytes,
               AsfReader& reader) {
    AsfText& text = reader.*row.text;
    if (row.name == kAlbumArtist && text.lengthBytes != 0) {
        return;  // the author of the Content Description comes first
    }
    if (row.name == kTrackNumber && readTrackNumber(cursor, type, valueBytes, text)) {
        return;
    }
    if (type == Text) {
        readText(cursor, valueBytes, text);
    }
}

// One attribute: name length 2, name, value type 2, value length 2, value.
void readAttribute(FileCursor& cursor, AsfReader& reader) {
    std::array<std::uint8_t, kNameBytes> nameBytes{};
    std::array<char16_t, kNameBytes / 2> name{};
    const std::size_t nameLength = cursor.le16();
    const bool isShort = nameLength < kNameLimit;
    if (isShort) {
        cursor.take(std::span(nameBytes).first(nameLength));
        decodeUtf16(std::span(nameBytes).first(nameLength), name);
    } else {
        cursor.skip(nameLength);
    }
    const std::uint16_t type = cursor.le16();
    const std::uint32_t valueBytes = cursor.le16();
    if (!cursor.ok() || valueBytes > cursor.remaining()) {
        cursor.skip(valueBytes);  // ends the walk
        return;
    }
    const std::uint64_t end = cursor.position() + valueBytes;
    const auto row = std::ranges::find(kNames, std::u16string_view(name.data()), &NameRow::name);
    if (isShort && row != kNames.end()) {
        readValue(cursor, *row, type, valueBytes, reader);
    }
    cursor.moveTo(end);
}

}  // namespace

void readAsfContentDescription(FileCursor& cursor, AsfReader& reader) {
    const std::uint32_t titleBytes = cursor.le16();
    const std::uint32_t authorBytes = cursor.le16();
    const std::uint32_t rightsBytes = cursor.le16();
    const std::uint32_t descriptionBytes = cursor.le16();
    const std::uint32_t ratingBytes = cursor.le16();
    if (cursor.ok()) {
        readText(cursor, titleBytes, reader.title);
    }
    if (cursor.ok()) {
        readText(cursor, authorBytes, reader.artist);
    }
    cursor.skip(rightsBytes + descriptionBytes + ratingBytes);
}

void readAsfExtendedContentDescription(FileCursor& cursor, AsfReader& reader) {
    const std::uint32_t count = cursor.le16();
    for (std::uint32_t i = 0; i < count && cursor.ok() && takeAsfStep(reader); ++i) {
        readAttribute(cursor, reader);
    }
}

}  // namespace probe
