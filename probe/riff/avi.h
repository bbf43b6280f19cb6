// The AVI reader: walks the chunks of a RIFF "AVI " file, reads its header lists and its index
// (OpenDML standard indexes, or the older idx1) and finds the pixel aspect in the first picture.
// Everything here lives for one probe. In this family bytes that the file does not hold are 0.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "probe/read/byte_reader.h"
#include "probe/read/read_budget.h"
#include "probe/read/read_window.h"
#include "probe/record/media_record.h"
#include "probe/record/result.h"

namespace probe {

inline constexpr std::size_t kAviAudioStreams = 8;

// An OpenDML super index; its entries stay in the header list.
struct SuperIndex {
    std::uint16_t longsPerEntry = 0;
    std::uint8_t indexSubType = 0;
    std::uint8_t indexType = 0;
    std::uint32_t chunkId = 0;
    std::uint32_t entryCount = 0;     // entries that can be read; 0 when none was found
    std::uint64_t entryPosition = 0;  // of the first entry in the header list
};

struct BitmapInfoHeader {
    std::uint32_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t compression = 0;  // first letter highest
};

struct WaveFormat {
    std::uint16_t formatTag = 0;
    std::uint16_t channels = 0;
    std::uint32_t samplesPerSec = 0;
    std::uint32_t avgBytesPerSec = 0;
};

struct VideoSlot {
    BitmapInfoHeader format;
    SuperIndex index;
};

struct AudioSlot {
    WaveFormat format;
    SuperIndex index;
};

// What the "hdrl" list says.
struct AviHeader {
    std::uint32_t microSecPerFrame = 0;  // dwMicroSecPerFrame of "avih"
    VideoSlot video;
    std::array<AudioSlot, kAviAudioStreams> audio;
    std::uint32_t videoCount = 0;  // 0 or 1
    std::uint32_t audioCount = 0;  // 0 to 8
    bool superIndexSeen = false;
};

// What the index says about the video stream. Of the chunk offsets only the first is kept: the
// rest, and all of the audio streams' entries, would be read to be thrown away.
struct AviIndex {
    std::uint64_t frameCount = 0;      // as counted; with OpenDML, as the index headers declare
    std::uint64_t entryCount = 0;      // video entries met
    std::uint32_t videoBytes = 0;      // sum of their sizes, modulo 2^32
    std::int64_t firstVideoChunk = 0;  // file position of the first one's chunk header
};

struct AviReader {
    AviReader(ReadWindow& window, std::uint64_t fileSize)
        : file(window), end(fileSize), aside(fileSize) {}

    ReadWindow& file;
    std::uint64_t position = 0;
    std::uint64_t end;  // size of the file
    bool moviSeen = false;
    std::uint64_t moviStart = 0;  // file position of the first "movi" list's type word
    AviHeader header;
    AviIndex index;
    bool hasIndex = false;
    // Of the reads apart from the walk over the top-level chunks: header lists and standard
    // indexes. Super indexes lead anywhere, and every header list has its own. A sound file's
    // entries are at most half of the file: each has 8 bytes, as has the header of its chunk.
    ReadBudget aside;

    // Fills `out` from `offset`, with 0 where the file has ended. kFail when a seek or a read
    // failed; a position whose low 32 bits are all ones cannot be told from a failed seek.
    [[nodiscard]] Result read(std::uint64_t offset, std::span<std::uint8_t> out) const;
    // The same apart from the walk. kFail too when that is used up.
    [[nodiscard]] Result readAside(std::uint64_t offset, std::span<std::uint8_t> out);

private:
    // Whether a seek to `offset` could be told from a failed one.
    static bool canSeek(std::uint64_t offset);
};

// The payload of a header list, read through the file's window where it is wanted. Bytes beyond
// what the file holds are 0. A list leads back and forth, so that what it costs comes out of the
// budget.
class ListBytes {
public:
    // A list at `start`, of which `available` bytes lie within the file.
    ListBytes(AviReader& reader, std::uint64_t start, std::uint64_t available)
        : reader_(reader), start_(start), available_(available) {}

    // Bytes that the file holds of the list.
    std::uint64_t available() const { return available_; }
    // Whether a read failed or was one too many; what was read since is 0.
    bool failed() const { return failed_; }

    std::uint8_t u8(std::uint64_t at) const { return bytesAt<1>(at)[0]; }
    std::uint16_t le16(std::uint64_t at) const { return probe::le16(bytesAt<2>(at).data()); }
    std::uint32_t le32(std::uint64_t at) const { return probe::le32(bytesAt<4>(at).data()); }
    std::uint64_t le64(std::uint64_t at) const { return probe::le64(bytesAt<8>(at).data()); }
    // First letter highest.
    std::uint32_t fourcc(std::uint64_t at) const { return be32(bytesAt<4>(at).data()); }

private:
    template <std::size_t kCount>
    std::array<std::uint8_t, kCount> bytesAt(std::uint64_t at) const {
        std::array<std::uint8_t, kCount> bytes = {};
        if (at < available_ && !failed_) {
            read(at, bytes);
        }
        return bytes;
    }
    void read(std::uint64_t at, std::span<std::uint8_t> bytes) const;

    AviReader& reader_;
    std::uint64_t start_;
    std::uint64_t available_;
    mutable bool failed_ = false;
};

// Walks the top-level chunks from offset 12.
[[nodiscard]] Result ReadAviHeaders(AviReader& reader);
// Parses the "hdrl" list whose `size` bytes begin with the type word at `start`.
[[nodiscard]] Result ParseHdrl(AviReader& reader, std::uint64_t start, std::uint32_t size);
// Parses a stream list: `listBytes` bytes behind the type word "strl", from `at` in the buffer.
[[nodiscard]] Result ParseStrl(AviReader& reader, const ListBytes& bytes, std::uint64_t at,
                               std::int64_t listBytes);
// Reads the standard indexes that the super indexes point to. kFail too when they are read more
// often than a sound file needs.
[[nodiscard]] Result ReadOdmlIndexes(AviReader& reader, const ListBytes& bytes);
// Reads the `size` bytes of an "idx1" chunk that begin at `start`.
[[nodiscard]] Result ReadIdx1(AviReader& reader, std::uint64_t start, std::uint32_t size);

// All of it: fills the record when everything that it needs could be read, and leaves it alone
// otherwise.
Result parseAvi(ReadWindow& file, std::uint64_t fileSize, MediaRecord& record);

}  // namespace probe
