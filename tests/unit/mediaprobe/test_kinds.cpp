// What a file that no recogniser claims is said to begin like.
#include <gtest/gtest.h>

#include "file_bytes.h"

namespace mediaprobe {
namespace {

std::string noteOf(const std::string& bytes) {
    const SecondLook seen = look(bytes, {}, Claimed::No);
    EXPECT_EQ(seen.damage, "");
    return seen.note;
}

std::string padded(const std::string& bytes, std::size_t size = 600) {
    return bytes + std::string(size - bytes.size(), '\x01');
}

constexpr char kMayPlay[] = "; the unit's graph may play it all the same";

TEST(Kinds, WhatTheProbeNeverReads) {
    const struct {
        std::string head;
        std::string name;
        bool mayPlay;
    } cases[] = {{"\x1A\x45\xDF\xA3", "Matroska or WebM", true},
                 {".RMF", "RealMedia", true},
                 {zeros(2) + "\x08\x08moov", "QuickTime without a file type", true},
                 {zeros(2) + "\x08\x08mdat", "QuickTime without a file type", true},
                 {zeros(2) + "\x08\x08wide", "QuickTime without a file type", true},
                 {zeros(2) + "\x01\xB3", "a bare MPEG picture stream", true},
                 {"\xFF\xF1", "AAC without a container", false},
                 {"\xFF\xF9", "AAC without a container", false},
                 {"#!AMR", "AMR sound", false},
                 {"MThd", "a MIDI score", false},
                 {"RF64", "WAVE with 64-bit lengths", false}};
    for (const auto& one : cases) {
        const std::string note =
            one.name + ", which the player's probe does not read" + (one.mayPlay ? kMayPlay : "");
        EXPECT_EQ(noteOf(padded(one.head)), note);
        EXPECT_EQ(noteOf(one.head + "\x01"), note);
        EXPECT_NE(noteOf(padded('\x01' + one.head)), note);
        std::string cut = one.head;
        cut.pop_back();
        EXPECT_NE(noteOf(cut), note);
        EXPECT_NE(noteOf(padded(cut)), note);
    }
    EXPECT_EQ(noteOf(padded("")), "");
}

TEST(Kinds, WhatIsTooShortForTheProbe) {
    const struct {
        std::string head;
        const char* name;
    } cases[] = {{"RIFF\x01\x01\x01\x01"
                  "AVI ",
                  "AVI"},
                 {"RIFF\x01\x01\x01\x01WAVE", "WAVE"},
                 {zeros(3) + "\x20"
                             "ftypisom",
                  "MP4"},
                 {"\x30\x26\xB2\x75", "ASF (Windows Media)"},
                 {"OggS", "Ogg"},
                 {"fLaC", "FLAC"},
                 {"MAC ", "Monkey's Audio"}};
    for (const auto& one : cases) {
        const std::string note =
            std::string(one.name) + ", too short: the player's probe takes no file below 256 bytes";
        EXPECT_EQ(noteOf(one.head), note);
        EXPECT_EQ(noteOf(padded(one.head, 255)), note);
        EXPECT_NE(noteOf(padded(one.head, 256)), note);
    }
    const std::string stream =
        std::string(
            "an MPEG program stream, too short: the player's probe takes none below "
            "262,144 bytes") +
        kMayPlay;
    EXPECT_EQ(noteOf(zeros(2) + "\x01\xBA"), stream);
    EXPECT_EQ(noteOf(padded(zeros(2) + "\x01\xBA", 200000)), stream);
}

TEST(Kinds, BrandsAndForms) {
    EXPECT_EQ(noteOf(padded(zeros(3) + "\x20"
                                       "ftypqt  ")),
              std::string("MP4 or QuickTime of the brand \"qt  \", which the player's probe does "
                          "not take") +
                  kMayPlay);
    EXPECT_EQ(noteOf(padded(zeros(3) + "\x20"
                                       "ftyp\x1b[2J")),
              std::string("MP4 or QuickTime of the brand \"\\x1b[2J\", which the player's probe "
                          "does not take") +
                  kMayPlay);
    EXPECT_EQ(noteOf(padded("RIFF\x01\x01\x01\x01WEBP")),
              "RIFF of the form \"WEBP\", which the player's probe does not read");
    EXPECT_EQ(noteOf(padded("RIFF\x01\x01\x01\x01WAVE")),
              "WAVE, but without a format, or below 2,048 bytes");
    EXPECT_EQ(noteOf(padded("ID3")),
              "an ID3 tag, but no six frames of MPEG audio in a row behind it");
    // By all of their letters.
    for (const char* other : {"RIFX\x01\x01\x01\x01WAVE", "RIFX\x01\x01\x01\x01WEBP", "ID4", "xD3",
                              "QIFF\x01\x01\x01\x01WAVE"}) {
        EXPECT_EQ(noteOf(padded(other)), "") << other;
    }
}

TEST(Kinds, FramesOfMpegAudio) {
    for (int second = 0; second < 256; ++second) {
        const int version = second >> 3 & 3, layer = second >> 1 & 3;
        const bool isFrame = second >= 0xE0 && version != 1 && layer != 0 && second != 0xFE;
        EXPECT_EQ(noteOf(padded("\xFF" + std::string(1, static_cast<char>(second)))) ==
                      "MPEG audio, but without six frames in a row",
                  isFrame)
            << second;
    }
    EXPECT_EQ(noteOf("\xFF\xFB\x01"), "");
    EXPECT_EQ(noteOf(padded("\x7F\xFB")), "");
}

TEST(Kinds, TransportStreamsByFourPackets) {
    const std::string note =
        std::string("an MPEG transport stream, which the player's probe does not read") + kMayPlay;
    const auto packets = [](int count, std::size_t extra) {
        std::string out;
        for (int i = 0; i < count; ++i) {
            out += zeros(extra) + "\x47" + std::string(187, '\x02');
        }
        return out;
    };
    EXPECT_EQ(noteOf(packets(4, 0)), note);
    EXPECT_EQ(noteOf(packets(50, 0)), note);
    EXPECT_EQ(noteOf(packets(4, 4)), note);
    EXPECT_EQ(noteOf(packets(3, 0)), "");
    EXPECT_EQ(noteOf(packets(3, 4)), "");
    EXPECT_EQ(noteOf(packets(9, 3)), "");
    // "G" is 0x47, and text stays text.
    EXPECT_EQ(noteOf(std::string(5000, 'G')), "it is text");
}

TEST(Kinds, Text) {
    EXPECT_EQ(noteOf("1\r\n00:00:01,000 --> 00:00:02,000\r\n\tHello\r\n"), "it is text");
    EXPECT_EQ(noteOf("\xED\x95\x9C\xEA\xB5\xAD"), "it is text");  // UTF-8
    EXPECT_EQ(noteOf("\xC7\xD1\xB1\xDB"), "it is text");          // EUC-KR
    for (const char c : {'\x00', '\x08', '\x0B', '\x0C', '\x0E', '\x1B', '\x1F', '\x7F'}) {
        EXPECT_EQ(noteOf("text" + std::string(1, c)), "") << static_cast<int>(c);
    }
}

}  // namespace
}  // namespace mediaprobe
