// What is gathered of an MP4 file while its boxes are walked. The movie box and its tables are
// read through the file's window where they are wanted, never copied whole; places are absolute
// file offsets. Lives for one probe.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "probe/read/read_window.h"
#include "probe/record/result.h"

namespace probe {

inline constexpr std::size_t kMp4Tracks = 20;

enum class TrackKind { Video = 0, Audio = 1, Hint = 2, Other = 3, Unset = 5 };

struct FileRange {
    std::uint64_t start = 0;
    std::uint64_t size = 0;

    std::uint64_t end() const { return start + size; }
};

// A box: 32-bit big-endian size (header included), then four letters.
struct Mp4Box {
    static constexpr std::size_t kHeader = 8;

    std::uint64_t start = 0;
    std::uint64_t size = 0;  // a child's never leads beyond the parent's end
    std::uint32_t type = 0;

    std::uint64_t body() const { return start + kHeader; }
    std::uint64_t end() const { return start + size; }
    // Where its children lie; empty when it is no larger than its header.
    FileRange children() const { return {body(), size > kHeader ? size - kHeader : 0}; }
};

struct Mp4Table {
    bool present = false;
    std::uint32_t count = 0;     // entries, all of them within the file
    std::uint64_t entries = 0;   // where the first one lies
    std::uint32_t constant = 0;  // "stsz": the size of every sample, 0 when the entries tell
};

struct SampleDescription {
    std::uint32_t format = 0;
    std::uint16_t width = 0;  // pixels
    std::uint16_t height = 0;
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;      // Hz
    std::uint32_t averageBitRate = 0;  // bits per second, from "esds"
    std::uint8_t objectType = 0;       // object type indication, from "esds"
    FileRange decoderInfo;             // decoder specific information, from "esds"
    FileRange parameterSet;            // first sequence parameter set, from "avcC"
};

struct TrackSlot {
    TrackKind kind = TrackKind::Unset;
    std::uint32_t timescale = 0;  // units per second
};

// The tables of all tracks of one kind: of several the last one met stays.
struct KindTables {
    SampleDescription description;
    Mp4Table timeToSample;           // "stts"
    Mp4Table sampleToChunk;          // "stsc"
    Mp4Table sampleSize;             // "stsz"
    Mp4Table chunkOffset;            // "stco"
    std::uint64_t payloadBytes = 0;  // of a video track
};

struct Mp4Reader {
    Mp4Reader(ReadWindow& window, std::uint64_t size) : file(window), fileSize(size) {}

    ReadWindow& file;
    std::uint64_t fileSize;
    std::array<TrackSlot, kMp4Tracks> tracks;
    std::size_t trackCount = 0;
    TrackSlot* current = nullptr;     // opened by the latest "tkhd"; null before one, or beyond 20
    std::array<KindTables, 4> kinds;  // by TrackKind
    SampleDescription* entry = nullptr;  // whose boxes are being walked

    KindTables& of(TrackKind kind) { return kinds[static_cast<std::size_t>(kind)]; }
    // The last track of that kind, or null.
    const TrackSlot* lastTrack(TrackKind kind) const;
};

struct BoxRow {
    std::uint32_t type;
    Result (*read)(Mp4Reader& reader, const Mp4Box& box);
};

// Calls the row of each box in `boxes`, in file order; boxes without a row are passed over. A box
// that reaches beyond the end is cut there; fewer than 8 bytes, or a box of size 0, end the walk.
// kFail when a read failed; what a row returns other than kOk ends the walk and is returned.
[[nodiscard]] Result forEachBox(Mp4Reader& reader, const FileRange& boxes,
                                std::span<const BoxRow> rows);

// Walks the whole file; kOk when a movie box was met and the walk reached the file's end.
[[nodiscard]] Result Mp4WalkTopLevel(Mp4Reader& reader);
// Parses into the current slot. kOutOfMemory when a table or a sample description cannot be parsed,
// kFail when a read failed.
[[nodiscard]] Result Mp4ParseMdia(Mp4Reader& reader, const Mp4Box& mdia);
[[nodiscard]] Result Mp4ParseSampleDescription(Mp4Reader& reader, const Mp4Box& stsd,
                                               TrackKind kind);
// Adds up the payload of the video samples and finds a place for each sample of the kind. kFail
// when "stsz", "stsc" or "stco" is missing or the chunks do not hold all samples.
[[nodiscard]] Result Mp4SetSampleOffsets(Mp4Reader& reader, TrackKind kind);
// Duration of the last track of that kind by its "stts"; 0 when its timescale is 0.
[[nodiscard]] Result Mp4TrackDurationMs(Mp4Reader& reader, TrackKind kind,
                                        std::uint64_t& milliseconds);

}  // namespace probe
