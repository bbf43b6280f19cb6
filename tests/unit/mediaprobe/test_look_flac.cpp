// What the second look says of a FLAC file's end. Frames are written here by RFC 9639; the
// checksums are counted bit by bit, as the standard has them, and held against its own example.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "file_bytes.h"
#include "mediaprobe/format_text.h"

namespace mediaprobe {
namespace {

constexpr char kNoSound[] = "its end holds no sound";
constexpr char kNotWhole[] = "its last frame is not whole, or something else stands behind it";

std::string checksum(const std::string& bytes, unsigned polynomial, int width) {
    unsigned check = 0;
    for (const char c : bytes) {
        for (int bit = 7; bit >= 0; --bit) {
            const unsigned top = check >> (width - 1) & 1, next = static_cast<unsigned char>(c);
            check = check << 1 ^ ((top ^ (next >> bit & 1)) != 0 ? polynomial : 0);
        }
    }
    return big(check & ((1u << width) - 1), width / 8);
}

struct Stream {
    std::uint64_t samples = 0;
    std::uint64_t rate = 8000, channels = 2, bits = 16;
    std::uint64_t block = 4096, leastFrame = 0, mostFrame = 0;
};

std::string head(const Stream& stream) {
    return "fLaC\x80" + big(34, 3) + big(16, 2) + big(stream.block, 2) + big(stream.leastFrame, 3) +
           big(stream.mostFrame, 3) +
           big(stream.rate << 44 | (stream.channels - 1) << 41 | (stream.bits - 1) << 36 |
                   stream.samples,
               8) +
           zeros(16);
}

struct Codes {
    unsigned sync = 0xFFF8;  // FFF9: the number is that of the first sample
    unsigned block = 12, rate = 4, channels = 1, bits = 4, reserved = 0;
    std::string number = zeros(1);
    std::string rest = "";  // block and rate that the codes leave to the header's end
};

std::string header(const Codes& codes) {
    const std::string bytes = big(codes.sync, 2) + big(codes.block << 4 | codes.rate, 1) +
                              big(codes.channels << 4 | codes.bits << 1 | codes.reserved, 1) +
                              codes.number + codes.rest;
    return bytes + checksum(bytes, 0x07, 8);
}

// 200 bytes of sound, in which a sync code stands that begins no frame.
std::string frame(const Codes& codes) {
    const std::string bytes =
        header(codes) + std::string(100, '\x55') + "\xFF\xF8\xC4\x18" + std::string(96, '\x55');
    return bytes + checksum(bytes, 0x8005, 16);
}

// As many frames of 4096 samples, the first of which is number 0.
std::string frames(int count) {
    std::string out;
    for (int i = 0; i < count; ++i) {
        out += frame({.number = std::string(1, static_cast<char>(i))});
    }
    return out;
}

std::string damage(const std::string& bytes) {
    return damageOf(bytes, recordOf(probe::kContainerFlac));
}

// A stream of one frame that holds fewer samples than its stream.
std::string damageOfOne(const Stream& stream, const Codes& codes) {
    return damage(head(stream) + frame(codes));
}

TEST(FlacEnd, TheStandardsOwnExample) {
    const std::string file(
        "fLaC\x80\0\0\x22\x10\0\x10\0\0\0\x0f\0\0\x0f\x0a\xc4\x42\xf0\0\0\0\x01\x3e\x84\xb4\x18"
        "\x07\xdc\x69\x03\x07\x58\x6a\x3d\xad\x1a\x2e\x0f\xff\xf8\x69\x18\0\0\xbf\x03\x58\xfd\x03"
        "\x12\x8b\xaa\x9a",
        57);
    EXPECT_EQ(damage(file), "");
    EXPECT_EQ(damage(file.substr(0, 56)), kNotWhole);
    EXPECT_EQ(damage(file.substr(0, 49)), kNotWhole);
    EXPECT_EQ(damage(file.substr(0, 48)), kNoSound);  // its header's checksum is not there
    EXPECT_EQ(damage(file.substr(0, 42)), kNoSound);
}

TEST(FlacEnd, WhatIsThereOfWhatShouldBe) {
    const std::string ten = head({.samples = 40960});  // 5.12 s
    EXPECT_EQ(damage(ten + frames(10)), "");
    EXPECT_EQ(damage(ten + frames(9)), "cut off: 0:04 of 0:05 are there");
    const std::size_t sixth = frames(5).size() + 100;
    EXPECT_EQ(damage(ten + frames(6)), "cut off: 0:03 of 0:05 are there");
    EXPECT_EQ(damage(ten + frames(6).substr(0, sixth)), "cut off: 0:02 of 0:05 are there");
    EXPECT_EQ(damage(ten + frames(10).substr(0, frames(10).size() - 1)), kNotWhole);
    EXPECT_EQ(damage(head({.samples = 45056}) + frames(10)),
              "cut off: 40,960 of 45,056 samples are there");
    EXPECT_EQ(damage(head({.samples = 40961}) + frames(10)),
              "cut off: 40,960 of 40,961 samples are there");
    // A stream of unknown length.
    EXPECT_EQ(damage(head({}) + frames(10)), "");
    EXPECT_EQ(damage(head({}) + frames(6).substr(0, sixth)), kNotWhole);
    // A rate of 0 gives no times.
    EXPECT_EQ(damageOfOne({.samples = 40960, .rate = 0}, {.rate = 0}), "");
    probe::MediaRecord failed = recordOf(probe::kContainerFlac);
    failed.status = probe::kFail;
    EXPECT_EQ(damageOf(ten + frames(6), failed), "the player's parser gives up on its headers");
}

TEST(FlacEnd, BlocksOfManySizesAreNumberedBySamples) {
    const Stream stream{.samples = 40960};
    EXPECT_EQ(damageOfOne(stream, {.sync = 0xFFF9, .number = "\xE9\x80\x80"}), "");  // 36864
    EXPECT_EQ(damageOfOne(stream, {.sync = 0xFFF8, .number = "\x09"}), "");
    EXPECT_EQ(damageOfOne(stream, {.sync = 0xFFF9, .number = "\x09"}),
              "cut off: 0:00 of 0:05 are there");
}

TEST(FlacEnd, CodesOfTheBlock) {
    const struct {
        unsigned code;
        std::string rest;
        std::uint64_t samples;
    } cases[] = {{1, "", 192},   {2, "", 576},     {3, "", 1152},           {4, "", 2304},
                 {5, "", 4608},  {6, "\xFE", 255}, {7, "\x12\x33", 0x1234}, {8, "", 256},
                 {9, "", 512},   {10, "", 1024},   {11, "", 2048},          {12, "", 4096},
                 {13, "", 8192}, {14, "", 16384},  {15, "", 32768}};
    for (const auto& one : cases) {
        const Stream stream{.samples = 600000, .rate = 700000, .block = 65535};
        EXPECT_EQ(damageOfOne(stream, {.block = one.code, .rate = 0, .rest = one.rest}),
                  "cut off: " + grouped(one.samples) + " of 600,000 samples are there")
            << one.code;
    }
    EXPECT_EQ(damageOfOne({.samples = 600000}, {.block = 0}), kNoSound);
}

// Whether a frame with these codes counts as one of this stream.
bool fits(const Stream& stream, const Codes& codes) {
    const std::string said = damageOfOne(stream, codes);
    EXPECT_TRUE(said.empty() || said == kNoSound) << said;
    return said.empty();
}

TEST(FlacEnd, CodesOfTheRate) {
    const std::uint64_t rates[] = {0,     88200, 176400, 192000, 8000,  16000,
                                   22050, 24000, 32000,  44100,  48000, 96000};
    for (unsigned code = 1; code < 12; ++code) {
        for (unsigned other = 1; other < 12; ++other) {
            EXPECT_EQ(fits({.samples = 4096, .rate = rates[other]}, {.rate = code}), code == other);
        }
    }
    EXPECT_TRUE(fits({.samples = 4096, .rate = 12345}, {.rate = 0}));
    EXPECT_TRUE(fits({.samples = 4096, .rate = 12000}, {.rate = 12, .rest = "\x0C"}));
    EXPECT_TRUE(fits({.samples = 4096, .rate = 12345}, {.rate = 13, .rest = "\x30\x39"}));
    EXPECT_TRUE(fits({.samples = 4096, .rate = 12340}, {.rate = 14, .rest = "\x04\xD2"}));
    EXPECT_FALSE(fits({.samples = 4096}, {.rate = 15}));
    // Their bytes belong to the header, behind those of the block.
    EXPECT_TRUE(fits({.samples = 256, .rate = 12340},
                     {.block = 7, .rate = 14, .rest = std::string("\0\xFF\x04\xD2", 4)}));
    EXPECT_FALSE(fits({.samples = 4096, .rate = 12000}, {.rate = 12}));
    EXPECT_FALSE(fits({.samples = 4096, .rate = 12345}, {.rate = 13, .rest = "\x30"}));
}

TEST(FlacEnd, CodesOfChannelsAndBits) {
    const unsigned stereo[] = {1, 8, 9, 10};
    for (unsigned channels = 1; channels <= 8; ++channels) {
        for (unsigned code = 0; code < 16; ++code) {
            const bool isStereo = std::find(stereo, stereo + 4, code) != stereo + 4;
            EXPECT_EQ(fits({.samples = 4096, .channels = channels}, {.channels = code}),
                      channels == 2 ? isStereo : code == channels - 1);
        }
    }
    const unsigned bits[] = {0, 8, 12, 0, 16, 20, 24, 32};
    for (unsigned stored = 4; stored <= 32; ++stored) {
        for (unsigned code = 0; code < 8; ++code) {
            EXPECT_EQ(fits({.samples = 4096, .bits = stored}, {.bits = code}),
                      code == 0 || bits[code] == stored);
        }
    }
    EXPECT_FALSE(fits({.samples = 4096}, {.reserved = 1}));
    EXPECT_FALSE(fits({.samples = 4096}, {.sync = 0xFFFA}));
    EXPECT_FALSE(fits({.samples = 4096}, {.sync = 0xFEF8}));
}

TEST(FlacEnd, CodedNumbers) {
    const struct {
        std::string coded;
        std::uint64_t number;
    } cases[] = {{"\x7F", 0x7F},
                 {"\xC2\x80", 0x80},
                 {"\xDF\xBF", 0x7FF},
                 {"\xE0\xA0\x80", 0x800},
                 {"\xEF\xBF\xBF", 0xFFFF},
                 {"\xF0\x90\x80\x80", 0x10000},
                 {"\xF7\xBF\xBF\xBF", 0x1FFFFF},
                 {"\xF8\x88\x80\x80\x80", 0x200000},
                 {"\xFB\xBF\xBF\xBF\xBF", 0x3FFFFFF},
                 {"\xFC\x84\x80\x80\x80\x80", 0x4000000},
                 {"\xFD\xBF\xBF\xBF\xBF\xBF", 0x7FFFFFFF},
                 {"\xFE\x82\x80\x80\x80\x80\x80", 0x80000000},
                 {"\xFE\xBE\x80\x80\x80\x80\x80", 0xF80000000}};
    for (const auto& one : cases) {
        const Stream stream{.samples = 0xFFFFFFFFF, .rate = 16};
        const auto seconds = static_cast<std::uint32_t>((one.number + 4096) / 16);
        EXPECT_EQ(damageOfOne(stream, {.sync = 0xFFF9, .rate = 0, .number = one.coded}),
                  "cut off: " + playTime(seconds) + " of 1193046:28:15 are there");
    }
    for (const char* const wrong :
         {"\x80", "\xBF\x80", "\xFF\xBF\xBF\xBF\xBF\xBF\xBF", "\xFF\xBF\xBF\xBF\xBF\xBF\xBF\xBF",
          "\xC2\x40", "\xC2\xC0", "\xE0\xA0\x7F", "\xE0\xA0\xFF"}) {
        EXPECT_FALSE(fits({.samples = 4096}, {.number = wrong}));
    }
}

TEST(FlacEnd, AHeaderThatIsNotWhatItsChecksumSays) {
    const std::string whole = head({.samples = 4096}) + frame({});
    for (int bit = 0; bit < 48; ++bit) {
        std::string bent = whole;
        bent[42 + static_cast<std::size_t>(bit / 8)] ^= static_cast<char>(1 << bit % 8);
        EXPECT_EQ(damage(bent), kNoSound) << bit;
    }
    for (std::size_t at = 48; at < whole.size(); ++at) {
        std::string bent = whole;
        bent[at] ^= 1;
        EXPECT_EQ(damage(bent), kNotWhole) << at;
    }
}

TEST(FlacEnd, TagsAndZerosBehindTheSound) {
    const std::string whole = head({.samples = 40960}) + frames(10);
    const std::string id3 = "TAG" + std::string(125, 'x');
    const auto ape = [](std::uint64_t flags, std::size_t itemBytes, const std::string& before) {
        return before + std::string(itemBytes, 'i') + "APETAGEX" + little(2000, 4) +
               little(itemBytes + 32, 4) + little(1, 4) + little(flags, 4) + zeros(8);
    };
    EXPECT_EQ(damage(whole + id3), "");
    EXPECT_EQ(damage(whole + ape(0, 3000, "")), "");
    EXPECT_EQ(damage(whole + ape(0x7FFFFFFF, 3000, "")), "");
    EXPECT_EQ(damage(whole + ape(0x80000000, 3000, std::string(32, 'h'))), "");
    EXPECT_EQ(damage(whole + ape(0, 3000, "") + id3), "");
    EXPECT_EQ(damage(whole + zeros(1000)), "");
    EXPECT_EQ(damage(whole + "more"), kNotWhole);
    EXPECT_EQ(damage(whole + std::string(127, 'x') + "TAG"), kNotWhole);
    EXPECT_EQ(damage(whole + ape(0x80000000, 3000, "")), kNotWhole);  // takes 32 bytes of the sound
    // A tag that claims to be larger than the file.
    EXPECT_EQ(
        damage(head({.samples = 1}) + "APETAGEX" + little(2000, 4) + little(5000, 4) + zeros(16)),
        kNoSound);
    const std::string front = "ID3\x04" + zeros(4) + "\x02\x2C" + zeros(300);
    EXPECT_EQ(damage(front + whole), "");
    EXPECT_EQ(damage(front + head({.samples = 40960}) + frames(9)),
              "cut off: 0:04 of 0:05 are there");
}

TEST(FlacEnd, AFrameBeginsNoFurtherFromTheEndThanTheLargestOneIs) {
    const auto streamOf = [](std::uint64_t most) {
        return Stream{.samples = 16, .block = 16, .mostFrame = most};
    };
    // Stored plainly 16 samples of 17 bits, twice, and the headers: 2 x (34 + 8) + 18 bytes.
    const auto plain = [](std::size_t bytes) {
        const std::string start = header({.block = 6, .rest = "\x0F"});
        const std::string body = start + std::string(bytes - start.size() - 2, '\x55');
        return body + checksum(body, 0x8005, 16);
    };
    EXPECT_EQ(damage(head(streamOf(90)) + zeros(50) + plain(90)), "");
    EXPECT_EQ(damage(head(streamOf(90)) + zeros(50) + plain(91)), kNoSound);
    EXPECT_EQ(damage(head(streamOf(0)) + zeros(50) + plain(102)), "");
    EXPECT_EQ(damage(head(streamOf(0)) + zeros(50) + plain(103)), kNoSound);
    EXPECT_EQ(damage(head(streamOf(5000)) + zeros(50) + plain(103)), kNoSound);
    // Ends that are too large to be looked at say nothing.
    const Stream large{.samples = 65535, .channels = 8, .bits = 32, .block = 65535};
    EXPECT_EQ(damage(head(large) + zeros(1024 * 1024)), kNoSound);
    EXPECT_EQ(damage(head(large) + zeros(1024 * 1024 + 1)), "");
}

TEST(FlacEnd, TheLeastFramesNeedRoom) {
    const auto file = [](std::uint64_t frameBytes, std::uint64_t samples) {
        return head({.samples = samples, .leastFrame = frameBytes}) + zeros(958);
    };
    EXPECT_EQ(file(1, 1).size(), 1000u);
    EXPECT_EQ(damage(file(100, 40960)), kNoSound);
    EXPECT_EQ(damage(file(101, 40960)), "cut off: 1,000 of at least 1,010 bytes are there");
    EXPECT_EQ(damage(file(2000, 4096)), "cut off: 1.0 kB of at least 2.0 kB are there");
    EXPECT_EQ(damage(file(2000, 4095)), kNoSound);
    EXPECT_EQ(damage(head({.samples = 40960, .block = 0}) + zeros(958)), "");
}

}  // namespace
}  // namespace mediaprobe
