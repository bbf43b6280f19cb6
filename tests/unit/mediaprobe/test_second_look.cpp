// What the second look says of files that are cut, unfinished or coded otherwise than their record
// says. Each file is written here byte by byte, by the standard of its format.
#include <gtest/gtest.h>

#include "file_bytes.h"
#include "probe/read/four_cc.h"

namespace mediaprobe {
namespace {

using probe::fourCc;
using probe::MediaRecord;

TEST(SecondLook, WhatNobodyClaims) {
    const MediaRecord record;
    EXPECT_EQ(look("", record, Claimed::No).damage, "it is empty");
    EXPECT_EQ(look(zeros(1), record, Claimed::No).damage, "it begins with nothing but zeros");
    EXPECT_EQ(look(zeros(5000), record, Claimed::No).damage, "it begins with nothing but zeros");
    EXPECT_EQ(look(zeros(4095) + "x", record, Claimed::No).damage, "");
    EXPECT_EQ(look(zeros(4095) + "x", record, Claimed::No).note, "");
    EXPECT_EQ(look("RIFF" + little(9000, 4) + "WAVE", record, Claimed::No).damage, "");
    EXPECT_EQ(look("tiny", record, Claimed::No).fileBytes, 4u);
}

TEST(SecondLook, AParserThatGivesUp) {
    MediaRecord record;
    EXPECT_EQ(look(zeros(300), record).damage, "the player's parser gives up on its headers");
    record.status = probe::kFail;
    EXPECT_EQ(look(zeros(300), record).damage, "the player's parser gives up on its headers");
    // A JPEG that its recogniser refuses leaves this behind.
    EXPECT_EQ(look(zeros(300), record, Claimed::No).damage,
              "the player's parser gives up on its headers");
    record.status = probe::kOutOfMemory;
    EXPECT_EQ(look(zeros(300), record).damage, "a size in its headers is larger than the file");
}

TEST(SecondLook, APromiseIsSaidFromTwiceTheFilesRateOn) {
    MediaRecord record = recordOf(probe::kContainerMpeg1System);
    record.durationSeconds = 10;
    const std::string bytes = zeros(10000);  // 8,000 bit/s
    record.videoBitRate = 104857200;
    record.audioBitRate = 1000;
    EXPECT_EQ(look(bytes, record).note,
              "the header promises 104,857,200 bit/s, the file holds 8,000");
    record.videoBitRate = 10000;
    record.audioBitRate = 6002;
    EXPECT_EQ(look(bytes, record).note, "the header promises 16,002 bit/s, the file holds 8,000");
    record.audioBitRate = 6001;
    EXPECT_EQ(look(bytes, record).note, "");
    record.videoBitRate = 16001;
    record.audioBitRate = 9;
    EXPECT_EQ(look(bytes, record).note, "the header promises 16,001 bit/s, the file holds 8,000");
    record.durationSeconds = 0;
    EXPECT_EQ(look(bytes, record).note, "");
    record.durationSeconds = 10;
    record.videoBitRate = record.audioBitRate = 0xFFFFFFFF;
    EXPECT_EQ(look(bytes, record).note,
              "the header promises 4,294,967,295 bit/s, the file holds 8,000");
}

std::string riff(const char* form, std::uint64_t length, const std::string& chunks) {
    return "RIFF" + little(length, 4) + form + chunks;
}
std::string chunk(const char* type, const std::string& data) {
    return type + little(data.size(), 4) + data + zeros(data.size() & 1);
}

TEST(SecondLook, RiffByItsLength) {
    const MediaRecord wave = recordOf(probe::kContainerWave);
    const std::string data = chunk("data", zeros(2000));  // the file: 12 + 8 + 2000 = 2020 bytes
    EXPECT_EQ(damageOf(riff("WAVE", 2012, data), wave), "");
    EXPECT_EQ(damageOf(riff("WAVE", 100, data), wave), "");
    EXPECT_EQ(damageOf(riff("WAVE", 2013, data), wave), "");  // a padding byte that is not there
    EXPECT_EQ(damageOf(riff("WAVE", 2014, data), wave), "cut off: 2,020 of 2,021 bytes are there");
    EXPECT_EQ(damageOf(riff("WAVE", 9000000, data), wave), "cut off: 2.0 kB of 9.0 MB are there");
    EXPECT_EQ(damageOf(riff("WAVE", 0xFFFFFFFF, data), wave), "");  // written to a pipe
    EXPECT_EQ(damageOf(riff("WAVE", 0, data), wave), "cut off: its length was never written");
    EXPECT_EQ(damageOf(riff("WAVE", 1, data), wave), "cut off: its length was never written");
    EXPECT_EQ(damageOf("RIFF" + zeros(7), wave), "");
}

TEST(SecondLook, AviWithoutItsIndex) {
    MediaRecord avi = recordOf(probe::kContainerAvi);
    avi.videoFourCC = fourCc("H264");
    const std::string movi = chunk("LIST", "movi" + zeros(301)), idx1 = chunk("idx1", zeros(16));
    const std::uint64_t length = 4 + movi.size();
    EXPECT_EQ(damageOf(riff("AVI ", length, movi), avi), "cut off: the index is missing");
    EXPECT_EQ(damageOf(riff("AVI ", 0, movi), avi),
              "cut off: the index is missing, its length was never written");
    EXPECT_EQ(damageOf(riff("AVI ", 9000, movi), avi),
              "cut off: the index is missing, 326 bytes of 9.0 kB are there");
    EXPECT_EQ(damageOf(riff("AVI ", length, movi + idx1), avi), "its index names no picture");
    EXPECT_EQ(damageOf(riff("AVI ", 0, movi + idx1), avi), "cut off: its length was never written");
    avi.frameTimeMicroseconds = 40000;
    EXPECT_EQ(damageOf(riff("AVI ", length, movi), avi), "");
    avi.frameTimeMicroseconds = 0;
    avi.videoFourCC = 0;
    EXPECT_EQ(damageOf(riff("AVI ", length, movi), avi), "");
}

std::string box(const char* type, const std::string& body) {
    return big(body.size() + 8, 4) + type + body;
}

// A track with one sample entry; `offsets` is the type of its chunk offset table.
std::string track(const char* handler, const std::string& entry, const char* offsets = "stco") {
    const std::string stsd = box("stsd", zeros(4) + big(1, 4) + entry);
    const std::string stbl = box("stbl", stsd + box(offsets, zeros(8)));
    return box("trak", box("tkhd", zeros(20)) +
                           box("mdia", box("mdhd", zeros(20)) +
                                           box("hdlr", zeros(8) + handler + zeros(12)) +
                                           box("minf", box("dinf", "") + stbl)));
}
std::string visualEntry(const char* type, const std::string& boxes = "") {
    return box(type, zeros(78) + boxes);
}
// An elementary stream descriptor whose lengths take `lengthBytes` bytes.
std::string esds(int objectType, int lengthBytes = 1, int flags = 0) {
    const std::string more(static_cast<std::size_t>(lengthBytes - 1), '\x80');
    return box("esds", zeros(4) + '\x03' + more + '\x15' + zeros(2) + static_cast<char>(flags) +
                           '\x04' + more + '\x0D' + static_cast<char>(objectType) + zeros(12));
}

const std::string kFtyp = box("ftyp", "isom" + zeros(4));

TEST(SecondLook, Mp4CutAndWithoutItsIndex) {
    const MediaRecord whole = recordOf(probe::kContainerMp4);
    MediaRecord failed;
    failed.status = probe::kFail;
    const std::string moov = box("moov", track("vide", visualEntry("avc1")));
    const std::string mdat = box("mdat", zeros(1000));
    EXPECT_EQ(damageOf(kFtyp + moov + mdat, whole), "");
    EXPECT_EQ(damageOf(kFtyp + mdat + moov, whole), "");
    EXPECT_EQ(damageOf(kFtyp + moov + big(9000000, 4) + "mdat" + zeros(1000), whole),
              "cut off: 1.2 kB of 9.0 MB are there");
    EXPECT_EQ(damageOf(kFtyp + big(9000000, 4) + "mdat" + zeros(1000), failed),
              "cut off: the index is missing, 1.0 kB of at least 9.0 MB are there");
    EXPECT_EQ(damageOf(kFtyp + big(1, 4) + "mdat" + big(5000000000, 8) + zeros(1000), failed),
              "cut off: the index is missing, 1.0 kB of at least 5.0 GB are there");
    EXPECT_EQ(damageOf(kFtyp + mdat, failed), "the index is missing");
    EXPECT_EQ(damageOf(kFtyp + mdat + moov.substr(0, moov.size() - 1), failed),
              "cut off: the index is missing, 1,277 of at least 1,278 bytes are there");
    EXPECT_EQ(damageOf(kFtyp + moov + big(7, 4) + "mdat", failed),
              "what stands at byte " + std::to_string(16 + moov.size()) + " is no box");
    EXPECT_EQ(damageOf(kFtyp + moov + mdat, failed), "the player's parser gives up on its headers");
}

TEST(SecondLook, Mp4WithLongOffsetsAlone) {
    MediaRecord failed;
    failed.status = probe::kFail;
    const std::string with64 = box("moov", track("soun", box("mp4a", zeros(28)), "co64"));
    EXPECT_EQ(look(kFtyp + with64, failed).note,
              "its chunk offsets have 64 bits, which the player's probe does not read");
    EXPECT_EQ(damageOf(kFtyp + with64, failed), "");
    EXPECT_EQ(damageOf(kFtyp + with64, recordOf(probe::kContainerMp4)), "");
    const std::string hint = box("moov", track("hint", box("rtp ", zeros(28)), "co64"));
    EXPECT_EQ(damageOf(kFtyp + hint, failed), "the player's parser gives up on its headers");
}

TEST(SecondLook, Mp4WithALongBoxInFrontOfItsIndex) {
    MediaRecord failed;
    failed.status = probe::kFail;
    const std::string moov = box("moov", track("vide", visualEntry("avc1")));
    const std::string mdat = big(1, 4) + "mdat" + big(1016, 8) + zeros(1000);
    const SecondLook seen = look(kFtyp + mdat + moov, failed);
    EXPECT_EQ(seen.note,
              "a box in front of its index has a 64-bit size, which the player's probe does not "
              "read");
    EXPECT_EQ(seen.damage, "");
    EXPECT_EQ(look(kFtyp + mdat + moov, recordOf(probe::kContainerMp4)).note, "");
    const SecondLook behind = look(kFtyp + moov + mdat, failed);
    EXPECT_EQ(behind.note, "");
    EXPECT_EQ(behind.damage, "the player's parser gives up on its headers");
    EXPECT_EQ(look(kFtyp + mdat + moov.substr(0, moov.size() - 1), failed).damage,
              "cut off: the index is missing, 1,285 of at least 1,286 bytes are there");
}

TEST(SecondLook, Mp4NamesTheCodecsOfItsFirstTracks) {
    const MediaRecord record = recordOf(probe::kContainerMp4);
    const auto seenIn = [&record](const std::string& tracks) {
        return look(kFtyp + box("moov", box("mvhd", zeros(100)) + tracks), record);
    };
    SecondLook seen =
        seenIn(track("hint", box("rtp ", zeros(28))) + track("soun", box("samr", zeros(28))) +
               track("vide", visualEntry("hvc1")) + track("soun", box("mp4a", zeros(28))) +
               track("vide", visualEntry("avc1")));
    EXPECT_EQ(seen.videoEntry, fourCc("hvc1"));
    EXPECT_EQ(seen.audioEntry, fourCc("samr"));
    EXPECT_EQ(seen.videoObjectType, 0);
    for (const int lengthBytes : {1, 4}) {
        seen = seenIn(
            track("vide", visualEntry("mp4v", box("pasp", zeros(8)) + esds(0x61, lengthBytes))));
        EXPECT_EQ(seen.videoEntry, fourCc("mp4v"));
        EXPECT_EQ(seen.videoObjectType, 0x61) << lengthBytes;
    }
    // An entry of another kind has no object type, and a dependent stream's is not looked for.
    EXPECT_EQ(seenIn(track("vide", visualEntry("s263", esds(0x61)))).videoObjectType, 0);
    EXPECT_EQ(seenIn(track("vide", visualEntry("mp4v", esds(0x61, 1, 0x80)))).videoObjectType, 0);
    EXPECT_EQ(seenIn(track("vide", visualEntry("mp4v"))).videoObjectType, 0);
}

TEST(SecondLook, AsfByItsFileProperties) {
    const MediaRecord record = recordOf(probe::kContainerAsf);
    const std::string properties =
        "\xA1\xDC\xAB\x8C\x47\xA9\xCF\x11\x8E\xE4" + std::string(1, '\0') + "\xC0\x0C\x20\x53\x65";
    const auto file = [&](std::uint64_t declared, std::uint32_t flags) {
        return "\x30\x26\xB2\x75" + zeros(26) + properties + little(104, 8) + zeros(16) +
               little(declared, 8) + zeros(40) + little(flags, 4) + zeros(78);
    };
    EXPECT_EQ(file(200, 2).size(), 200u);
    EXPECT_EQ(damageOf(file(200, 2), record), "");
    EXPECT_EQ(damageOf(file(201, 2), record), "cut off: 200 of 201 bytes are there");
    EXPECT_EQ(damageOf(file(9000000000, 0), record), "cut off: 200 bytes of 9.0 GB are there");
    EXPECT_EQ(damageOf(file(0, 2), record), "cut off: its length was never written");
    EXPECT_EQ(damageOf(file(0, 1), record), "");  // a broadcast has no length
    EXPECT_EQ(damageOf(file(9000, 3), record), "");
    EXPECT_EQ(damageOf(file(9000, 0).substr(0, 30 + 91), record), "");
    EXPECT_EQ(damageOf("\x30\x26\xB2\x75" + zeros(90), record), "");
}

TEST(SecondLook, FlvByItsLastTag) {
    const MediaRecord record = recordOf(probe::kContainerFlv);
    const std::string head = "FLV\x01\x01" + big(9, 4) + zeros(4);
    const auto tag = [](std::size_t data) {
        return '\x09' + big(data, 3) + zeros(7 + data) + big(11 + data, 4);
    };
    EXPECT_EQ(damageOf(head + tag(20) + tag(0), record), "");
    EXPECT_EQ(damageOf(head + tag(20) + tag(30), record), "");
    const char cut[] = "cut off: it does not end with a whole tag";
    const std::string whole = head + tag(20) + tag(30);
    EXPECT_EQ(damageOf(whole.substr(0, whole.size() - 1), record), cut);
    EXPECT_EQ(damageOf(whole + "x", record), cut);
    EXPECT_EQ(damageOf(head + big(10, 4), record), cut);
    EXPECT_EQ(damageOf(head + zeros(11) + big(12, 4), record), cut);
    EXPECT_EQ(damageOf(head, record), "");
    MediaRecord empty;
    EXPECT_EQ(damageOf(whole, empty), "its header announces sound or pictures that do not come");
}

TEST(SecondLook, OggByItsLastPage) {
    const MediaRecord record = recordOf(probe::kContainerOgg);
    const auto page = [](int type, const std::string& data) {
        return "OggS" + zeros(1) + static_cast<char>(type) + zeros(20) + '\x01' +
               static_cast<char>(data.size()) + data;
    };
    const std::string first = page(2, zeros(30)), last = page(4, zeros(200));
    EXPECT_EQ(damageOf(first + last, record), "");
    EXPECT_EQ(damageOf(first + page(5, zeros(200)), record), "");
    EXPECT_EQ(damageOf(first + page(0, zeros(200)), record),
              "cut off: its last page does not end the stream");
    EXPECT_EQ(damageOf(first + last.substr(0, last.size() - 1), record),
              "cut off: its last page is not whole");
    EXPECT_EQ(damageOf(first + last.substr(0, 27), record), "cut off: its last page is not whole");
    // A page whose head is not whole is not seen; the one in front of it is.
    EXPECT_EQ(damageOf(first + last.substr(0, 26), record),
              "cut off: its last page does not end the stream");
    EXPECT_EQ(damageOf(page(0, "") + last, record), "");
    EXPECT_EQ(damageOf(page(4, "") + zeros(8192), record), "");
}

TEST(SecondLook, OggOfAnotherCodecIsNotDamaged) {
    const struct {
        std::string packet;
        const char* name;
    } cases[] = {{"OpusHead", "Opus"},
                 {"\x80theora", "Theora"},
                 {"\x7F"
                  "FLAC",
                  "FLAC"},
                 {"Speex   ", "Speex"},
                 {"fishead" + zeros(1), "a skeleton"}};
    const auto page = [](const std::string& packet) {
        const std::string data = packet + std::string(60 - packet.size(), 'x');
        return "OggS" + zeros(1) + '\x06' + zeros(20) + '\x01' + '\x3C' + data;
    };
    for (const auto& one : cases) {
        const SecondLook seen = look(page(one.packet), {});
        EXPECT_EQ(seen.note, std::string("Ogg that begins with ") + one.name +
                                 "; the player's probe reads Vorbis alone");
        EXPECT_EQ(seen.damage, "");
        std::string cut = one.packet;
        cut.back() = '?';
        EXPECT_EQ(look(page(cut), {}).note, "");
        EXPECT_EQ(look(page(cut), {}).damage, "the player's parser gives up on its headers");
    }
}

TEST(SecondLook, Mp3ByItsXingHeader) {
    const MediaRecord record = recordOf(probe::kContainerMpegAudio);
    // Layer III: MPEG-1 and 2, stereo and mono, and where the header stands behind the frame's
    // four.
    const struct {
        const char* frame;
        std::size_t side;
    } cases[] = {{"\xFF\xFB\x90\x40", 32},
                 {"\xFF\xFB\x90\xC0", 17},
                 {"\xFF\xF3\x90\x40", 17},
                 {"\xFF\xF3\x90\xC0", 9},
                 {"\xFF\xE3\x90\xC0", 9}};
    for (const auto& one : cases) {
        const auto file = [&one](const char* name, std::uint32_t flags, std::uint32_t bytes) {
            return one.frame + zeros(one.side) + name + big(flags, 4) +
                   ((flags & 1) != 0 ? big(7, 4) : "") + big(bytes, 4) + zeros(400);
        };
        const std::size_t size = file("Xing", 3, 0).size();
        EXPECT_EQ(damageOf(file("Xing", 3, static_cast<std::uint32_t>(size)), record), "");
        EXPECT_EQ(damageOf(file("Xing", 3, 90000), record).substr(0, 9), "cut off: ");
        EXPECT_TRUE(damageOf(file("Info", 2, 90000), record).ends_with("of 90.0 kB are there"));
        EXPECT_EQ(damageOf(file("Xing", 1, 90000), record), "");
        EXPECT_EQ(damageOf(file("Ping", 3, 90000), record), "");
        // Behind an ID3 tag: four times seven bits, and a footer of ten more.
        const std::string tag = std::string("ID3\x04") + zeros(1);
        const std::string frames = file("Xing", 3, 90000);
        EXPECT_TRUE(damageOf(tag + zeros(1) + zeros(2) + "\x01\x02" + zeros(130) + frames, record)
                        .ends_with("of 90.1 kB are there"));
        EXPECT_TRUE(damageOf(tag + '\x10' + zeros(3) + "\x05" + zeros(15) + frames, record)
                        .ends_with("of 90.0 kB are there"));
    }
    EXPECT_EQ(
        damageOf("\xFF\xFD\x90\x40" + zeros(32) + "Xing" + big(2, 4) + big(90000, 4) + zeros(400),
                 record),
        "");  // layer II has none
}

TEST(SecondLook, ApeByTheSumOfItsParts) {
    const MediaRecord record = recordOf(probe::kContainerMonkeysAudio);
    const auto file = [](int version, std::uint64_t frames) {
        return "MAC " + little(static_cast<std::uint64_t>(version), 2) + zeros(2) + little(52, 4) +
               little(24, 4) + little(8, 4) + little(4, 4) + little(frames, 8) + little(2, 4) +
               zeros(64);
    };
    EXPECT_EQ(file(3990, 0).size(), 100u);
    EXPECT_EQ(damageOf(file(3980, 10), record), "");
    EXPECT_EQ(damageOf(file(3980, 11), record), "cut off: 100 of 101 bytes are there");
    EXPECT_EQ(damageOf(file(3990, 5000000000), record), "cut off: 100 bytes of 5.0 GB are there");
    EXPECT_EQ(damageOf(file(3979, 5000), record), "");
}

TEST(SecondLook, PicturesByTheirLengthAndEnd) {
    const MediaRecord bmp = recordOf(probe::kContainerBmp), png = recordOf(probe::kContainerPng);
    EXPECT_EQ(damageOf("BM" + little(100, 4) + zeros(94), bmp), "");
    EXPECT_EQ(damageOf("BM" + little(101, 4) + zeros(94), bmp),
              "cut off: 100 of 101 bytes are there");
    const std::string head = "\x89PNG\r\n\x1a\n" + zeros(60);
    EXPECT_EQ(damageOf(head + "IEND" + zeros(4), png), "");
    EXPECT_EQ(damageOf(head + "IEND" + zeros(4092), png), "");
    EXPECT_EQ(damageOf(head + "IEND" + zeros(3), png), "cut off: its end is missing");
    EXPECT_EQ(damageOf(head + "IEN" + zeros(5), png), "cut off: its end is missing");
}

TEST(SecondLook, JpegByTheBytesOfItsCodedEnd) {
    const MediaRecord jpeg = recordOf(probe::kContainerJpeg);
    const std::string cut = "cut off: it ends in the middle of the coded picture";
    const std::string head = "\xFF\xD8\xFF\xE0" + zeros(40) + "\xFF\xDA" + std::string(10, 'h');
    const std::string coded = std::string(60, 'c') + std::string("\xFF\0", 2) +
                              "c\xFF\xD0"
                              "c";
    EXPECT_EQ(damageOf(head + coded, jpeg), cut);
    EXPECT_EQ(damageOf(head + coded + "\xFF\xD7", jpeg), cut);
    EXPECT_EQ(damageOf(head + coded + "\xFF\xFF", jpeg), cut);
    EXPECT_EQ(damageOf(head + coded + "\xFF", jpeg), cut);
    EXPECT_EQ(damageOf(head + coded + "\xFF\xD9", jpeg), "");
    EXPECT_EQ(damageOf(head + coded + "\xFF\xCF" + coded, jpeg), "");
    EXPECT_EQ(damageOf(head + coded + "\xFF\xD8" + coded, jpeg), "");
    EXPECT_EQ(damageOf(head + coded + "\xFF\x01" + coded, jpeg), "");
    EXPECT_EQ(damageOf(head + std::string(100, 'c'), jpeg), "");
    // Only the last 2,048 bytes count.
    EXPECT_EQ(damageOf(head + "\xFF\xD9" + std::string("\xFF\0", 2) + std::string(2046, 'c'), jpeg),
              cut);
    EXPECT_EQ(damageOf(head + "\xFF\xD9" + std::string("\xFF\0", 2) + std::string(2044, 'c'), jpeg),
              "");
}

TEST(SecondLook, GifByItsLastByte) {
    const MediaRecord gif = recordOf(probe::kContainerGif);
    const std::string head = "GIF89a" + zeros(100) + "data";
    EXPECT_EQ(damageOf(head + ";", gif), "");
    EXPECT_EQ(damageOf(head + ";" + zeros(1000), gif), "");
    EXPECT_EQ(damageOf(head, gif), "cut off: its end is missing");
    EXPECT_EQ(damageOf(head + ";x", gif), "cut off: its end is missing");
}

TEST(SecondLook, MpegAudioThatDoesNotBeginWithAFrame) {
    const MediaRecord record = recordOf(probe::kContainerMpegAudio);
    const std::string note =
        "no MPEG audio stands at its start; the player's probe found six frames further on";
    EXPECT_EQ(look("\x7F"
                   "ELF" +
                       zeros(100),
                   record)
                  .note,
              note);
    EXPECT_EQ(look("\xFF\xDB" + zeros(100), record).note, note);
    EXPECT_EQ(look("\xFF\xE3" + zeros(100), record).note, "");
    EXPECT_EQ(look("\xFF\xFD" + zeros(100), record).note, "");
    const std::string tag = std::string("ID3\x04") + zeros(5) + '\x05' + zeros(5);
    EXPECT_EQ(look(tag + "\xFF\xFB" + zeros(100), record).note, "");
    EXPECT_EQ(look(tag + zeros(100), record).note, note);
}

// Of a file that its parser gave up on, by all letters that it begins with.
TEST(SecondLook, OfAKindByItsWholeName) {
    probe::MediaRecord record;
    record.status = probe::kFail;
    const std::string rest = little(1'000'000, 4) + "AVI " + zeros(500);
    EXPECT_NE(look("RIFF" + rest, record).damage.find("cut off"), std::string::npos);
    for (const char* other : {"SIFF", "RJFF", "RIGF", "RIFX"}) {
        EXPECT_EQ(look(other + rest, record).damage, "the player's parser gives up on its headers")
            << other;
    }
}

// A file that cannot be read is not called empty, nor full of zeros.
TEST(SecondLook, OfAFileThatCannotBeRead) {
    struct Unreadable final : platform::ReadOnlyFile {
        bool size(std::uint64_t& bytes) override {
            bytes = 5000;
            return true;
        }
        bool readAt(std::uint64_t, std::span<std::uint8_t>, std::size_t&) override { return false; }
    };
    Unreadable file;
    probe::ReadWindow window(file);
    const SecondLook seen = lookAgain(window, {}, Claimed::No);
    EXPECT_EQ(seen.damage, "");
    EXPECT_EQ(seen.note, "");
}

}  // namespace
}  // namespace mediaprobe
