// What all recognisers share: results, the cursor over a file, diagnostics, and the reasons why a
// file is declined.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "build_mp4.h"
#include "probe/read/file_cursor.h"
#include "probe/read/head.h"
#include "probe/recognisers.h"
#include "probe/record/diagnostics.h"
#include "probing.h"

namespace probe_test {
namespace {

// Values of the platform's winerror.h.
TEST(Result, HasTheWindowsValues) {
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kOk), 0u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kNotParsed), 1u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kFail), 0x80004005u);
    EXPECT_EQ(static_cast<std::uint32_t>(probe::kOutOfMemory), 0x8007000Eu);
}

TEST(MediaRecord, TheUpperHalfOfTheFileSizeIsAlways0) {
    probe::MediaRecord record;
    record.fileSizeHigh = 7;
    record.setFileSize(std::uint64_t{6} << 32 | 5);
    EXPECT_EQ(record.fileSize, 5u);
    EXPECT_EQ(record.fileSizeHigh, 0u);
}

TEST(FileCursor, DoesNotMoveOutOfItsStretch) {
    const Bytes bytes(100, 1);
    for (const std::uint64_t place : {9u, 10u, 30u, 31u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, 30);
        cursor.skip(5);
        cursor.moveTo(place);
        const bool inside = place == 10 || place == 30;
        EXPECT_EQ(cursor.ok(), inside) << place;
        EXPECT_EQ(cursor.position(), inside ? place : 15) << place;
        EXPECT_FALSE(cursor.readFailed()) << place;
    }
}

TEST(FileCursor, PassesAllOfItsStretchAndNoMore) {
    const Bytes bytes(100, 1);
    for (const std::uint64_t count : {19u, 20u, 21u, 90u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, 30);
        cursor.skip(count);
        EXPECT_EQ(cursor.ok(), count <= 20) << count;
        EXPECT_EQ(cursor.position(), count <= 20 ? 10 + count : 10) << count;
        EXPECT_EQ(cursor.u8(), count < 20 ? 1u : 0u) << count;
        EXPECT_EQ(cursor.remaining(), count > 20 ? 20u : 0u) << count;
    }
}

// What cannot be read is 0 in every width, and a stretch that ends before it begins is empty.
TEST(FileCursor, BehindItsEndStandZeros) {
    const Bytes bytes(100, 0xFF);
    for (const std::uint64_t end : {0u, 9u, 10u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        probe::FileCursor cursor(window, 10, end);
        EXPECT_EQ(cursor.remaining(), 0u) << end;
        EXPECT_EQ(cursor.u8() | cursor.le16() | cursor.le32() | cursor.le64() | cursor.be16() |
                      cursor.be32() | cursor.be64(),
                  0u)
            << end;
        EXPECT_FALSE(cursor.ok()) << end;
        EXPECT_FALSE(cursor.readFailed()) << end;
    }
}

TEST(Head, FewerBytesThanTheMagicDoNotBeginWithIt) {
    const auto bytes = std::to_array<std::uint8_t>({'R', 'I', 'F', 'F'});
    EXPECT_TRUE(probe::beginsWith(bytes, "RIFF"));
    EXPECT_FALSE(probe::beginsWith(std::span(bytes).first(3), "RIFF"));
    EXPECT_FALSE(probe::beginsWith({}, "RIFF"));
}

TEST(Diagnostics, GoToStandardOutputUnlessTheyAreSilenced) {
    const probe::DiagnosticSink standard = probe::setDiagnosticSink(nullptr);
    probe::diagnose("silent %d\n", 1);
    probe::setDiagnosticSink(standard);
    testing::internal::CaptureStdout();
    probe::diagnose("ERROR: %s %d\n", "heard", 2);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR: heard 2\n");
}

TEST(Diagnostics, AreCutAt255Characters) {
    for (const std::size_t length : {254u, 255u, 256u, 1000u}) {
        testing::internal::CaptureStdout();
        probe::diagnose("%s", std::string(length, 'x').c_str());
        EXPECT_EQ(testing::internal::GetCapturedStdout().size(),
                  std::min(length, std::size_t{255}));
    }
}

std::string heardReason;

std::string reasonOf(std::string_view recogniser, TestFile& file) {
    heardReason.clear();
    const auto before = probe::setReasonSink([](const char* why) { heardReason = why; });
    for (const probe::Recogniser& one : probe::recognisers()) {
        if (one.name == recogniser) {
            probe::ReadWindow window(file);
            probe::MediaInfo info;
            EXPECT_EQ(one.recognise(info, window), 0) << recogniser;
        }
    }
    probe::setReasonSink(before);
    return heardReason;
}

TEST(Reasons, SayWhyAFileIsDeclined) {
    struct Case {
        const char* recogniser;
        Bytes bytes;
        const char* why;
    };
    const Bytes plain(300, 'x');
    const Bytes tagged = Builder().text("ID3").u8(3).u8(0).u8(0).be32(10).fill(300, 'x').take();
    for (const Case& one : std::to_array<Case>(
             {{"Still images", plain, "it begins as none of the four kinds"},
              {"Still images", Builder().be32(0xFFD8FFE0).be16(2).fill(300, 0).take(),
               "JPEG without a frame header"},
              {"Still images", Bytes(63), "too short"},
              {"RIFF: AVI and WAVE", plain, "it does not begin with RIFF"},
              {"RIFF: AVI and WAVE", riff("CDXA", plain), "its RIFF form is neither AVI nor WAVE"},
              {"RIFF: AVI and WAVE", riff("WAVE", plain),
               "WAVE below 2048 bytes or without a format chunk"},
              {"MP4 and 3GP", plain, "it does not begin with an ftyp box"},
              {"MP4 and 3GP", join({ftyp("none", "none"), plain}),
               "its ftyp box names none of the accepted brands"},
              {"ASF", plain, "does not begin with the GUID of the Header Object"},
              {"Ogg", plain, "does not begin with OggS"},
              {"MPEG program stream", Bytes(0x40000), "no pack start code in its first 256 bytes"},
              {"MPEG program stream", riff("CDXA", Bytes(0x40000)),
               "a VideoCD without a pack start code in its first 2 MiB"},
              {"MPEG audio", Bytes(2000), "no six frame headers in a row within 2 MiB"},
              {"MPEG audio", Builder().text("ID3").u8(3).u8(0).u8(0).be32(0x7F).fill(1100).take(),
               "ends inside its ID3 tag or less than 1024 bytes behind it"},
              {"FLAC", plain, "does not begin with fLaC"},
              {"FLAC", tagged, "no fLaC behind its ID3 tag"},
              {"FLAC", Bytes(tagged.begin(), tagged.begin() + 270),
               "fewer than 256 bytes follow its ID3 tag"},
              {"Monkey's Audio", plain, "does not begin with MAC"},
              {"FLV", plain, "does not begin with FLV"}})) {
        TestFile file(one.bytes);
        EXPECT_EQ(reasonOf(one.recogniser, file), one.why);
    }
    TestFile unreadable(plain);
    unreadable.failAtRead = 1;
    unreadable.badTo = 300;
    EXPECT_EQ(reasonOf("FLV", unreadable), "its head cannot be read");
    TestFile sizeless(plain);
    sizeless.sizeFails = true;
    EXPECT_EQ(reasonOf("FLV", sizeless), "its size cannot be told");
}

}  // namespace
}  // namespace probe_test
