#include "probe/mpegaudio/id3.h"

#include "probe/record/text_field.h"

namespace probe {
namespace {

//    0   3  "TAG"
//    3  30  title
//   33  30  artist
//   63  30  album
//   93   4  year
//   97  30  comment
//  127   1  genre number; 255 none
constexpr std::size_t kTitle = 3, kArtist = 33, kAlbum = 63, kYear = 93, kGenre = 127;
constexpr std::size_t kTextBytes = 30, kYearBytes = 4;
constexpr std::uint8_t kNoGenre = 255;

void setUnset(std::span<const std::uint8_t> bytes, std::span<char16_t, kTextLength> field,
              std::uint32_t& flag) {
    if (flag == 0) {
        setText(platform::CodePage::System, bytes, field, flag);
    }
}

}  // namespace

std::uint32_t id3TagSize(std::span<const std::uint8_t> header) {
    std::uint32_t size = 0;
    for (std::size_t i = 6; i < 10; ++i) {
        size = (size << 7) | (header[i] & 0x7Fu);
    }
    return size;
}

void readId3v1(std::span<const std::uint8_t, kId3v1Bytes> tag, MediaRecord& record) {
    setUnset(tag.subspan(kTitle, kTextBytes), record.title, record.hasTitle);
    setUnset(tag.subspan(kArtist, kTextBytes), record.artist, record.hasArtist);
    setUnset(tag.subspan(kAlbum, kTextBytes), record.album, record.hasAlbum);
    setUnset(tag.subspan(kYear, kYearBytes), record.year, record.hasYear);
    if (tag[kGenre] < kNoGenre && record.hasGenre == 0) {
        record.genreIndex = tag[kGenre];
        record.hasGenre = 1;
    }
}

}  // namespace probe
