// The page and the player's verdict, from records made by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "mediaprobe/explain.h"
#include "mediaprobe/report.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;
using probe::MediaRecord;

std::string pageOf(const MediaRecord& record, const SecondLook& seen, const char* claimedBy = "AVI",
                   Style style = {}) {
    std::string out;
    const std::string path = "a\x1b.avi";
    appendPage(out, {path, probe::kOk, record, seen, claimedBy}, style);
    return out;
}

MediaRecord film() {
    MediaRecord record;
    record.status = probe::kOk;
    record.containerType = probe::kContainerAvi;
    record.durationSeconds = 61;
    record.audioFormatTag = probe::kAudioMpegLayer3;
    record.audioSampleRate = 44100;
    record.audioChannels = 2;
    record.audioBitRate = 128000;
    record.videoFourCC = fourCc("H264");
    record.videoWidth = 800;
    record.videoHeight = 480;
    record.frameTimeMicroseconds = 40000;
    record.videoBitRate = 1500000;
    return record;
}

const SecondLook kPlainLook{12345678, "", "", 0, 0, 0};

TEST(Page, AFilm) {
    EXPECT_EQ(pageOf(film(), kPlainLook),
              "a\x1b.avi\n"
              "  File     AVI, 12,345,678 bytes, 1:01\n"
              "  Video    H.264 (H264), 800 x 480, 25.000 frames/s, 1,500,000 bit/s\n"
              "  Audio    MPEG layer 3 (0x0055), 44,100 Hz, 2 channels, 128,000 bit/s\n");
}

TEST(Page, WhatIsNotThereIsNotShown) {
    MediaRecord record = film();
    record.durationSeconds = record.audioFormatTag = record.videoFourCC = 0;
    record.videoWidth = record.videoHeight = 0;
    SecondLook seen;
    EXPECT_EQ(pageOf(record, seen), "a\x1b.avi\n  File     AVI, 0 bytes\n");
    seen.fileBytes = 1;
    EXPECT_EQ(pageOf(record, seen), "a\x1b.avi\n  File     AVI, 1 byte\n");
    record.audioFormatTag = probe::kAudioPcm;
    record.audioChannels = 1;
    record.audioBitRate = 0;
    EXPECT_NE(pageOf(record, seen).find("Audio    PCM (0x0001), 44,100 Hz, 1 channel\n"),
              std::string::npos);
}

constexpr char kNote[] = "  * by the player's rule; see THE PLAYER'S RULES in mediaprobe(1)\n";

TEST(Page, FieldsByThePlayersRuleAreMarkedWithOneFootnote) {
    const struct {
        const char* name;
        void (*change)(MediaRecord&, SecondLook&);
        const char* line;
    } cases[] = {
        {"one term of the pixel aspect", [](MediaRecord& r, SecondLook&) { r.pixelAspectX = 11; },
         "1,500,000 bit/s, pixel aspect ?:11*\n"},
        {"an aspect that is not cut to its least terms",
         [](MediaRecord& r, SecondLook&) { r.pixelAspectX = r.pixelAspectY = 960; },
         "pixel aspect 960:960*\n"},
        {"a preroll in the length",
         [](MediaRecord& r, SecondLook&) { r.containerType = probe::kContainerAsf; }, "1:01*\n"},
        {"another codec than the record says",
         [](MediaRecord& r, SecondLook& s) {
             r.containerType = probe::kContainerMp4;
             r.videoFourCC = fourCc("MP4V");
             s.videoEntry = fourCc("hvc1");
         },
         "Video    HEVC, for the player MP4V*, 800"},
        {"MPEG-2 in an entry of MPEG-4",
         [](MediaRecord& r, SecondLook& s) {
             r.containerType = probe::kContainerMp4;
             r.videoFourCC = fourCc("MP4V");
             s.videoEntry = fourCc("mp4v");
             s.videoObjectType = 0x61;
         },
         "Video    MPEG-2, for the player MP4V*, 800"},
        {"sound of another kind",
         [](MediaRecord& r, SecondLook& s) {
             r.containerType = probe::kContainerMp4;
             r.audioFormatTag = probe::kAudioAac;
             s.audioEntry = fourCc("samr");
         },
         "Audio    AMR, for the player AAC (0x00FF)*, 44,100"},
        {"a top-down picture", [](MediaRecord& r, SecondLook&) { r.videoHeight = 0x80000000; },
         "800 x 2147483648*, "},
        {"the bits of a PNG",
         [](MediaRecord& r, SecondLook&) {
             r.containerType = probe::kContainerPng;
             r.imageWidth = 3;
             r.imageBitsPerPixel = 8;
         },
         "Picture  3 x 0, 8 bits*\n"},
        {"the bits of a GIF",
         [](MediaRecord& r, SecondLook&) {
             r.containerType = probe::kContainerGif;
             r.imageHeight = 2;
         },
         "Picture  0 x 2, 0 bits*\n"},
    };
    for (const auto& one : cases) {
        MediaRecord record = film();
        SecondLook seen = kPlainLook;
        one.change(record, seen);
        const std::string page = pageOf(record, seen);
        EXPECT_NE(page.find(one.line), std::string::npos) << one.name << '\n' << page;
        EXPECT_TRUE(page.ends_with(kNote)) << one.name << '\n' << page;
        EXPECT_EQ(std::count(page.begin(), page.end(), '*'), 2) << one.name << '\n' << page;
    }
}

TEST(Page, FieldsThatMisleadNobodyAreNotMarked) {
    const struct {
        const char* name;
        void (*change)(MediaRecord&, SecondLook&);
        const char* line;
    } cases[] = {
        {"an aspect", [](MediaRecord& r, SecondLook&) { r.pixelAspectX = 12, r.pixelAspectY = 11; },
         ", pixel aspect 12:11\n"},
        {"MPEG-4 in its own entry",
         [](MediaRecord& r, SecondLook& s) {
             r.containerType = probe::kContainerMp4;
             r.videoFourCC = fourCc("MP4V");
             s.videoEntry = fourCc("mp4v");
             s.videoObjectType = 0x20;
         },
         "Video    MPEG-4 Visual (MP4V), "},
        {"AAC in its own entry",
         [](MediaRecord& r, SecondLook& s) {
             r.containerType = probe::kContainerMp4;
             r.audioFormatTag = probe::kAudioAac;
             s.audioEntry = fourCc("mp4a");
         },
         "Audio    AAC (0x00FF), "},
        {"letters without a name",
         [](MediaRecord& r, SecondLook&) { r.videoFourCC = fourCc("ABCD"); }, "Video    ABCD, 800"},
        {"no name", [](MediaRecord& r, SecondLook&) { r.videoFourCC = probe::kUnknownVideo; },
         "Video    a codec without a name, 800"},
        {"the largest height", [](MediaRecord& r, SecondLook&) { r.videoHeight = 0x7FFFFFFF; },
         "800 x 2147483647, "},
        {"a BMP",
         [](MediaRecord& r, SecondLook&) {
             r.containerType = probe::kContainerBmp;
             r.imageWidth = 7;
         },
         "Picture  7 x 0, 0 bits\n"},
    };
    for (const auto& one : cases) {
        MediaRecord record = film();
        SecondLook seen = kPlainLook;
        one.change(record, seen);
        const std::string page = pageOf(record, seen);
        EXPECT_NE(page.find(one.line), std::string::npos) << one.name << '\n' << page;
        EXPECT_EQ(page.find('*'), std::string::npos) << one.name << '\n' << page;
    }
}

TEST(Page, TagsStandInTheirOrderAndOnlyWithTheirFlag) {
    MediaRecord record;
    record.status = probe::kOk;
    record.containerType = probe::kContainerFlac;
    record.hasTitle = record.hasArtist = record.hasAlbum = record.hasTrack = 1;
    record.hasGenre = record.hasComposer = record.hasYear = 1;
    record.genreIndex = 0;
    char16_t* const texts[] = {record.title, record.artist,   record.album, record.track,
                               record.genre, record.composer, record.year};
    char16_t letter = u'a';
    for (char16_t* text : texts) {
        text[0] = letter++;
    }
    EXPECT_EQ(pageOf(record, kPlainLook),
              "a\x1b.avi\n  File     FLAC, 12,345,678 bytes\n"
              "  Title    a\n  Artist   b\n  Album    c\n  Track    d\n  Genre    e\n"
              "  Composer f\n  Year     g\n  Genre    number 0\n");
    record.hasTitle = record.hasArtist = record.hasAlbum = record.hasTrack = 0;
    record.hasGenre = record.hasComposer = record.hasYear = 0;
    record.genreIndex = -1;
    EXPECT_EQ(pageOf(record, kPlainLook), "a\x1b.avi\n  File     FLAC, 12,345,678 bytes\n");
}

TEST(Page, FaultsAreSaidBesideWhatTheRecordHolds) {
    SecondLook seen = kPlainLook;
    seen.damage = "cut off";
    seen.note = "the header promises much";
    const std::string page = pageOf(film(), seen);
    EXPECT_TRUE(page.ends_with("  Damage   cut off\n  Note     the header promises much\n"));
    MediaRecord record;
    const struct {
        probe::Result status;
        const char* line;
    } cases[] = {{probe::kNotParsed, "  Status   0x00000001 (not parsed)\n"},
                 {probe::kFail, "  Status   0x80004005 (failed)\n"},
                 {probe::kOutOfMemory, "  Status   0x8007000E (out of memory)\n"}};
    for (const auto& one : cases) {
        record.status = one.status;
        EXPECT_EQ(
            pageOf(record, kPlainLook, nullptr),
            std::string("a\x1b.avi\n  File     not recognised, 12,345,678 bytes\n") + one.line);
        EXPECT_EQ(
            pageOf(record, kPlainLook, "RIFF"),
            std::string("a\x1b.avi\n  File     not read (claimed by RIFF), 12,345,678 bytes\n") +
                one.line);
        SecondLook damaged = kPlainLook;
        damaged.damage = "cut";
        EXPECT_EQ(pageOf(record, damaged, "RIFF"),
                  std::string("a\x1b.avi\n  File     damaged (claimed by RIFF), 12,345,678 bytes\n"
                              "  Damage   cut\n") +
                      one.line);
    }
}

TEST(Page, ATerminalGetsColoursAndNoControlCharacterOfTheFile) {
    MediaRecord record = film();
    record.hasTitle = 1;
    record.title[0] = u'\n';
    SecondLook seen = kPlainLook;
    seen.damage = "cut";
    const std::string page = pageOf(record, seen, "AVI", {.escapes = true, .colours = true});
    EXPECT_TRUE(page.starts_with("\x1b[1ma\\x1b.avi\x1b[0m\n  \x1b[2mFile    \x1b[0m AVI, "));
    EXPECT_NE(page.find("  \x1b[2mTitle   \x1b[0m \\n\n"), std::string::npos);
    EXPECT_TRUE(page.ends_with("  \x1b[2mDamage  \x1b[0m \x1b[31mcut\x1b[0m\n"));
    const std::string plain = pageOf(record, seen, "AVI", {.escapes = true});
    EXPECT_EQ(plain.find('\x1b'), std::string::npos);
}

TEST(Verdict, OneForEachReason) {
    const MediaRecord good = film();
    MediaRecord image = good, nothing, damaged = good, silent = good, unsure = good, hinted = good,
                sound = good;
    image.containerType = probe::kContainerJpeg;
    damaged.status = probe::kFail;
    silent.audioFormatTag = silent.audioSampleRate = silent.audioChannels = silent.audioBitRate = 0;
    unsure = silent;
    unsure.containerType = probe::kContainerFlv;
    hinted = silent;
    hinted.audioChannels = 1;
    sound.videoFourCC = 0;
    const struct {
        probe::Result open;
        const MediaRecord& record;
        const char* verdict;
    } cases[] = {
        {probe::kFail, good, "refuses it: it cannot be opened"},
        {probe::kOk, image,
         "refuses it: a still image has no audio, and a graph without an audio renderer is not "
         "run"},
        {probe::kOk, nothing, "decides by its graph alone, since the probe found nothing"},
        {probe::kOk, damaged, "decides by its graph alone, since the probe found nothing"},
        {probe::kOk, silent,
         "refuses it: without audio there is no audio renderer in the graph, and such a graph is "
         "not run"},
        {probe::kOk, unsure,
         "refuses it unless its graph finds audio that the probe has no tag for"},
        {probe::kOk, hinted,
         "refuses it unless its graph finds audio that the probe has no tag for"},
        {probe::kOk, sound, "plays it if its graph finds an audio decoder"},
        {probe::kOk, good,
         "plays it if the chip decodes H.264; otherwise the null video decoder is in the graph "
         "and the file is refused"},
    };
    for (const auto& one : cases) {
        const std::string view = playersView(one.open, one.record);
        EXPECT_TRUE(view.ends_with(std::string("  Verdict:  the player ") + one.verdict + "\n"))
            << view;
    }
}

TEST(Verdict, TheFieldsThatThePlayerTakes) {
    MediaRecord record = film();
    EXPECT_TRUE(playersView(probe::kOk, record)
                    .starts_with("  Player:   takes videoWidth 800, videoHeight 480, "
                                 "audioFormatTag 0x0055 (picture 5:3)\n"));
    for (std::uint32_t MediaRecord::*side : {&MediaRecord::videoWidth, &MediaRecord::videoHeight}) {
        MediaRecord flat = film();
        flat.*side = 0;
        EXPECT_NE(playersView(probe::kOk, flat)
                      .find("0x0055, stored as 0, for want of a picture (picture 0:0)"),
                  std::string::npos);
        flat.audioFormatTag = 0;
        EXPECT_NE(playersView(probe::kOk, flat).find("audioFormatTag 0x0000 (picture 0:0)"),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace mediaprobe
