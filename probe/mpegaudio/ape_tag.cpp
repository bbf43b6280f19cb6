#include "probe/mpegaudio/ape_tag.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "probe/read/file_cursor.h"
#include "probe/record/text_field.h"

namespace probe {
namespace {

constexpr std::uint32_t kLargestTag = 0x1000000;
constexpr std::uint32_t kUtf8Version = 2000;  // values are UTF-8 from this version on

// No more of a value is converted: a field holds 127 UTF-16 units, each of at most three bytes
// of UTF-8.
constexpr std::size_t kLongestValue = std::size_t{3} * kTextLength;

struct ItemRow {
    std::string_view key;
    char16_t (MediaRecord::*text)[kTextLength];
    std::uint32_t MediaRecord::*flag;
};

constexpr auto kItems = std::to_array<ItemRow>({
    {"Title", &MediaRecord::title, &MediaRecord::hasTitle},
    {"Album", &MediaRecord::album, &MediaRecord::hasAlbum},
    {"Artist", &MediaRecord::artist, &MediaRecord::hasArtist},
    {"Genre", &MediaRecord::genre, &MediaRecord::hasGenre},
    {"Track", &MediaRecord::track, &MediaRecord::hasTrack},
});

// The row of the zero-terminated key at the cursor, which moves behind the terminator; null for
// any other key.
const ItemRow* readKey(FileCursor& cursor) {
    constexpr std::size_t kLongestKey = 6;
    char key[kLongestKey];
    std::size_t length = 0;
    while (const std::uint8_t byte = cursor.u8()) {
        if (length < kLongestKey) {
            key[length] = static_cast<char>(byte);
        }
        ++length;
    }
    if (length > kLongestKey) {
        return nullptr;
    }
    const auto row = std::ranges::find(kItems, std::string_view(key, length), &ItemRow::key);
    return row != kItems.end() ? &*row : nullptr;
}

// One item: value size (4 bytes), flags (4), key with its terminator, value.
void readItem(FileCursor& cursor, platform::CodePage codePage, MediaRecord& record) {
    const std::uint32_t valueBytes = cursor.le32();
    cursor.skip(4);
    const ItemRow* row = readKey(cursor);
    if (!cursor.ok() || valueBytes > cursor.remaining()) {
        cursor.skip(valueBytes);  // ends the walk
        return;
    }
    std::array<std::uint8_t, kLongestValue> value;
    const std::size_t taken = row ? std::min<std::size_t>(valueBytes, kLongestValue) : 0;
    if (row && cursor.take(std::span(value).first(taken))) {
        setText(codePage, std::span(value).first(taken), record.*row->text, record.*row->flag);
    }
    cursor.skip(valueBytes - taken);
}

}  // namespace

Result readApeTag(ReadWindow& file, std::uint64_t fileSize,
                  std::span<const std::uint8_t, kApeFooterBytes> footer, MediaRecord& record) {
    const std::uint32_t version = le32(&footer[8]);
    const std::uint32_t tagBytes = le32(&footer[12]);
    const std::uint32_t items = le32(&footer[16]);
    if (tagBytes > kLargestTag || tagBytes < kApeFooterBytes) {
        return kOk;
    }
    if (tagBytes > fileSize) {
        return kFail;
    }
    const auto codePage =
        version >= kUtf8Version ? platform::CodePage::Utf8 : platform::CodePage::System;
    FileCursor cursor(file, fileSize - tagBytes, fileSize - kApeFooterBytes);
    for (std::uint32_t i = 0; i < items && cursor.ok() && cursor.remaining() != 0; ++i) {
        readItem(cursor, codePage, record);
    }
    return cursor.readFailed() ? kFail : kOk;
}

}  // namespace probe
