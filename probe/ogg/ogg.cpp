#include "probe/ogg/ogg.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "probe/read/byte_reader.h"
#include "probe/read/head.h"
#include "probe/record/diagnostics.h"
#include "probe/record/text_field.h"

// Ogg (RFC 3533, section 6) with a Vorbis stream (Vorbis I specification, sections 4.2 and 5.2).
// All numbers are little-endian.
//
// Page header:                           Identification packet, from its first byte:
//   0  4  "OggS"                           0  1  packet type 1
//   4  1  version                          1  6  "vorbis"
//   5  1  header type                      7  4  version
//   6  8  granule position                11  1  channels
//  14  4  serial number                   12  4  sample rate
//  18  4  sequence number                 16  4  maximum bit rate
//  22  4  checksum                        20  4  nominal bit rate
//  26  1  segment count                   24  4  minimum bit rate
//  27  n  segment table                   28  1  block sizes
namespace probe {
namespace {

constexpr std::size_t kMinimumBytes = 256;
constexpr std::size_t kHeadBytes = 2048;  // where both header packets are looked for
constexpr std::size_t kTailBytes = 8192;  // where the last page is looked for
constexpr std::size_t kPageHeaderBytes = 27;
constexpr std::size_t kCommentSearchFrom = 28;  // behind the fields of the identification packet
constexpr std::size_t kCommentSearchEnd = 1984;
constexpr std::size_t kPacketMagicBytes = 7;  // packet type and "vorbis"

using Start = std::span<const std::uint8_t, kHeadBytes>;

struct Identification {
    std::uint32_t channels = 0;
    std::uint32_t sampleRate = 0;
    std::uint32_t nominalBitRate = 0;
    std::size_t offset = 0;  // of the packet in the head
};

struct CommentRow {
    std::string_view key;  // the "=" included
    char16_t (MediaRecord::*text)[kTextLength];
    std::uint32_t MediaRecord::*flag;
};

constexpr auto kComments = std::to_array<CommentRow>({
    {"TITLE=", &MediaRecord::title, &MediaRecord::hasTitle},
    {"ARTIST=", &MediaRecord::artist, &MediaRecord::hasArtist},
    {"ALBUM=", &MediaRecord::album, &MediaRecord::hasAlbum},
    {"TRACKNUMBER=", &MediaRecord::track, &MediaRecord::hasTrack},
    {"GENRE=", &MediaRecord::genre, &MediaRecord::hasGenre},
});

bool beginsWithKey(std::span<const std::uint8_t> comment, std::string_view key) {
    if (comment.size() < key.size()) {
        return false;
    }
    return std::ranges::equal(comment.first(key.size()), key, [](std::uint8_t byte, char wanted) {
        const bool isLower = byte >= 'a' && byte <= 'z';
        return (isLower ? byte - 0x20 : byte) == wanted;
    });
}

bool readIdentification(Start head, Identification& identification) {
    const std::size_t offset = kPageHeaderBytes + head[26];
    const auto packet = head.subspan(offset);
    if (!beginsWith(packet, "\1vorbis")) {
        return false;
    }
    identification = {packet[11], le32(&packet[12]), le32(&packet[20]), offset};
    return true;
}

void readComment(std::span<const std::uint8_t> comment, MediaRecord& record) {
    for (const CommentRow& row : kComments) {
        if (beginsWithKey(comment, row.key)) {
            setText(platform::CodePage::Utf8, comment.subspan(row.key.size()), record.*row.text,
                    record.*row.flag);
        }
    }
}

// Walks the comments behind the packet type and "vorbis". A comment that would end beyond the
// head ends the walk, however many the count announces.
void readComments(std::span<const std::uint8_t> packet, MediaRecord& record) {
    ByteReader reader(packet);
    reader.skip(reader.le32());  // vendor text
    if (!reader.ok() || reader.remaining() <= 8) {
        return;
    }
    const std::uint32_t count = reader.le32();
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t length = reader.le32();
        const auto comment = reader.take(length);
        if (!reader.ok()) {
            return;
        }
        readComment(comment, record);
    }
}

void findComments(Start head, std::size_t identification, MediaRecord& record) {
    for (std::size_t at = identification + kCommentSearchFrom; at < kCommentSearchEnd; ++at) {
        if (head[at] == 3 && beginsWith(head.subspan(at), "\3vorbis")) {
            readComments(head.subspan(at + kPacketMagicBytes), record);
            return;
        }
    }
}

// Offset of the last page header that has 26 bytes in `tail`; tail.size() when there is none.
std::size_t findLastPage(std::span<const std::uint8_t> tail) {
    constexpr std::size_t kHeaderBytes = 26;
    const std::size_t positions = tail.size() - kHeaderBytes + 1;
    std::size_t last = tail.size();
    for (std::size_t at = 0; at < positions; ++at) {
        const void* letter = std::memchr(&tail[at], 'O', positions - at);
        if (!letter) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(letter) - tail.data());
        last = beginsWith(tail.subspan(at), "OggS") ? at : last;
    }
    return last;
}

// Granule position of the last page: of its eight bytes only the lower four count, sign-extended.
// Required: the player's clock has always read long files so.
Result readLastGranule(ReadWindow& file, std::uint64_t fileSize, std::uint64_t& granule) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(kTailBytes, fileSize));
    std::span<const std::uint8_t> tail;
    if (!file.viewAll(fileSize - count, count, tail)) {
        return kFail;
    }
    const std::size_t page = findLastPage(tail);
    granule = 0;
    if (page < count) {
        const auto low = static_cast<std::int32_t>(le32(&tail[page + 6]));
        granule = static_cast<std::uint64_t>(std::int64_t{low});
    }
    return kOk;
}

Result parseOgg(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record) {
    Identification identification;
    {
        std::span<const std::uint8_t> head;
        if (!file.viewAll(0, kHeadBytes, head)) {
            return kFail;
        }
        const Start whole = head.first<kHeadBytes>();
        if (!readIdentification(whole, identification)) {
            return kFail;
        }
        findComments(whole, identification.offset, record);
    }
    std::uint64_t granule = 0;
    const Result result = readLastGranule(file, fileSize, granule);
    if (result != kOk) {
        return result;
    }
    record.audioFormatTag = kAudioVorbis;
    record.containerType = kContainerOgg;
    record.status = kOk;
    record.audioBitRate = identification.nominalBitRate;
    record.videoFourCC = 0;
    record.audioChannels = identification.channels;
    record.audioSampleRate = identification.sampleRate;
    if (identification.sampleRate != 0) {
        record.durationSeconds = static_cast<std::uint32_t>(granule / identification.sampleRate);
    }
    return kOk;
}

}  // namespace

int OggRecognise(MediaRecord& record, ReadWindow& file) {
    Head head;
    if (const char* why = readHead(file, kMinimumBytes, kMinimumBytes, head)) {
        return decline(why);
    }
    if (!beginsWith(head.bytes, "OggS")) {
        return decline("does not begin with OggS");
    }
    record.setFileSize(head.fileSize);
    static_cast<void>(
        parseOgg(file, head.fileSize, record));  // required: the status stays as it was
    return 1;
}

}  // namespace probe
