// Single rules of Flash Video: which tags are read, script values, the search for the last tag.
#include <functional>

#include "build_flv.h"
#include "build_riff.h"
#include "expectations.h"
#include "probe/flv/script.h"
#include "probe/flv/timestamp.h"

namespace probe_test {
namespace {

using R = probe::MediaRecord;
using flv::File;
using flv::kAudio;
using flv::kVideo;

std::uint32_t secondsOf(const Bytes& bytes) {
    return probeBytes(bytes).info->durationSeconds;
}

// Pictures at 1, 3 and 5 s of 41 bytes each; the last tag begins 56 bytes before the end.
Bytes threePictures() {
    return File(kVideo).video(1000).video(3000).video(5000).end();
}
constexpr std::size_t kTagBytes = 11 + 41;    // with its header
constexpr std::size_t kStep = 4 + kTagBytes;  // from tag to tag
constexpr std::size_t kFirstTag = 9 + 4;

TEST(FlvRules, TheLastTagIsConfirmedByTheOneBefore) {
    EXPECT_EQ(secondsOf(threePictures()), 5u);
    for (std::size_t at = 1; at <= 3; ++at) {
        Bytes bytes = threePictures();
        bytes[kFirstTag + kStep + at] ^= 1;  // the data size of the tag at 3 s
        EXPECT_EQ(secondsOf(bytes), 3u) << at;
    }
    for (std::size_t at = 0; at < 4; ++at) {
        Bytes bytes = threePictures();
        bytes[kFirstTag + 2 * kStep - 4 + at] ^= 1;  // its size told again behind it
        EXPECT_EQ(secondsOf(bytes), 3u) << at;
    }
}

TEST(FlvRules, OnlyTagsOfKnownTypesAndOfStream0AreTheLast) {
    for (unsigned type = 0; type < 256; ++type) {
        const Bytes bytes = File(kVideo).video(1000).video(3000).tag(type, Bytes(41), 5000).end();
        const bool known = type == 8 || type == 9 || type == 18;
        EXPECT_EQ(secondsOf(bytes), known ? 5u : 3u) << type;
    }
    for (std::size_t at = 8; at < 11; ++at) {
        Bytes bytes = threePictures();
        bytes[kFirstTag + 2 * kStep + at] = 1;
        EXPECT_EQ(secondsOf(bytes), 3u) << at;
    }
}

// A search that cannot read what it needs, or meets an end before the one it was told, has no
// answer.
TEST(FlvRules, ASearchThatCannotBeFinishedHasNoAnswer) {
    const Bytes bytes = File(kVideo).video(0).video(3000, 2, 10'000).video(5000).end();
    const std::size_t large = kFirstTag + kStep;
    for (const std::size_t bad : {std::size_t{0}, large}) {
        TestFile file(bytes);
        file.badFrom = bad;
        file.badTo = bad + 1;
        probe::ReadWindow window(file);
        std::uint32_t milliseconds = 0;
        EXPECT_EQ(
            probe::findLastFlvTimestamp(window, 9, bytes.size(), probe::FlvTags::Any, milliseconds),
            bad == 0)
            << bad;
    }
    for (const std::size_t missing : {0u, 1u, 30u}) {
        TestFile file(bytes);
        probe::ReadWindow window(file);
        std::uint32_t milliseconds = 0;
        EXPECT_EQ(probe::findLastFlvTimestamp(window, 9, bytes.size() + missing,
                                              probe::FlvTags::Any, milliseconds),
                  missing == 0)
            << missing;
    }
}

// The upper four bits of a picture's first byte: 1 is a key frame.
TEST(FlvRules, OfKeyFramesTheLastIsOneOfType1) {
    for (unsigned type = 0; type < 16; ++type) {
        const Bytes bytes = File(kVideo).video(1000).video(3000).video(5000, type).end();
        TestFile file(bytes);
        probe::ReadWindow window(file);
        std::uint32_t milliseconds = 0;
        EXPECT_TRUE(probe::findLastFlvTimestamp(window, 9, bytes.size(), probe::FlvTags::KeyFrames,
                                                milliseconds));
        EXPECT_EQ(milliseconds, type == 1 ? 5000u : 3000u) << type;
    }
}

TEST(FlvRules, EveryByteOfTheTimeStampCounts) {
    for (const std::uint32_t stamp : {0x00000FA0u, 0x0000FF00u, 0x00FF0000u, 0xFF000000u}) {
        EXPECT_EQ(secondsOf(File(kVideo).video(0).video(stamp).end()), stamp / 1000) << stamp;
    }
}

TEST(FlvRules, NoTagBeginsBeforeTheData) {
    const Bytes bytes = File(kVideo).video(1000).video(3000).end();
    TestFile file(bytes);
    probe::ReadWindow window(file);
    const auto found = [&](std::uint64_t dataStart) {
        std::uint32_t milliseconds = 0;
        return probe::findLastFlvTimestamp(window, dataStart, bytes.size(), probe::FlvTags::Any,
                                           milliseconds);
    };
    EXPECT_TRUE(found(kFirstTag));
    EXPECT_FALSE(found(kFirstTag + 1));
    // A tag of nothing but its header is the smallest: 11 bytes.
    const auto behind = [](const Bytes& data, std::uint32_t told) {
        Bytes made = File(kVideo).video(0).tag(9, data, 4000).tag(9, Bytes(41), 7000).end();
        const std::size_t place = made.size() - 4 - kTagBytes - 4;
        made[place + 3] = static_cast<std::uint8_t>(told);
        return secondsOf(made);
    };
    EXPECT_EQ(behind({}, 11), 7u);
    EXPECT_EQ(behind({}, 10), 4u);
}

TEST(FlvRules, ALastTagAtEveryPlaceOfABlockIsFound) {
    for (std::size_t size = 4000; size < 4130; ++size) {
        const Bytes bytes = File(kVideo).video(0).video(2000).video(9000, 2, size).end();
        ASSERT_EQ(secondsOf(bytes), 9u) << size;
    }
}

TEST(FlvRules, TheFirstTagOfAKindIsTheOneThatIsRead) {
    const Bytes sorenson = Builder().u8(0x12).fill(20).take();
    EXPECT_EQ(
        probeBytes(File(kVideo | kAudio).video().tag(9, sorenson).audio().end()).info->videoFourCC,
        0x48323634u)
        << "a second picture before the sound";
    const Outcome sound =
        probeBytes(File(kVideo | kAudio).audio(0, 0x2E).audio(0, 0xAF).video().end());
    EXPECT_EQ(sound.info->audioFormatTag, 0x55u) << "a second sound before the picture";
    EXPECT_EQ(sound.info->audioSampleRate, 44100u);
}

TEST(FlvRules, ATagThatNoFlagAnnouncesIsPassedOver) {
    const Bytes sorenson = Builder().u8(0x22).u8(0).u8(0).u8(0x84).u8(1).fill(20).take();
    const Outcome sound = probeBytes(File(kAudio).tag(9, sorenson).audio().end());
    EXPECT_EQ(sound.info->status, probe::kOk);
    EXPECT_EQ(sound.info->videoFourCC, 0xFFFFFFFFu);
    EXPECT_EQ(sound.info->videoWidth, 0u);
    const Outcome picture = probeBytes(File(kVideo).audio(0, 0x2E).video().end());
    EXPECT_EQ(picture.info->videoFourCC, 0x48323634u);
    EXPECT_EQ(picture.info->audioSampleRate, 0u);
    for (unsigned flags = 0; flags < 256; ++flags) {
        const Outcome both =
            probeBytes(File(static_cast<std::uint8_t>(flags)).video().audio().end());
        EXPECT_EQ(both.info->videoFourCC == 0x48323634u, (flags & 1) != 0) << flags;
        EXPECT_EQ(both.info->audioSampleRate != 0, (flags & 4) != 0) << flags;
    }
}

// What stands behind a tag of no bytes is its size, which a damaged file may have wrong.
TEST(FlvRules, ATagOfNoBytesTellsNothing) {
    File file(kVideo | kAudio);
    file.tag(8, {});
    Bytes bytes = file.tag(9, {}).video().end();
    bytes[9 + 15] = 0x2F;       // as sound: layer III, 44,100 Hz
    bytes[9 + 15 + 15] = 0x17;  // as a picture: AVC
    const Outcome outcome = probeBytes(bytes);
    EXPECT_EQ(outcome.info->status, probe::kOk);
    EXPECT_EQ(outcome.info->videoFourCC, 0xFFFFFFFFu);
    EXPECT_NE(outcome.info->audioFormatTag, 0x55u);
    EXPECT_NE(outcome.info->audioSampleRate, 44'100u);
    EXPECT_EQ(outcome.info->audioChannels, 1u);
}

TEST(FlvRules, OnlyAScriptTagIsReadAsAScript) {
    const Bytes script =
        join({flv::text("onMetaData"), flv::ecmaArray({{"width", flv::number(480)}})});
    for (unsigned type = 0; type < 256; ++type) {
        const Bytes bytes = File(kVideo).tag(type, script).video().end();
        EXPECT_EQ(probeBytes(bytes).info->videoWidth, type == 18 ? 480u : 0u) << type;
    }
}

TEST(FlvRules, OnePictureASecondLastsASecond) {
    for (const double rate : {0.0, 1.0, 2.0, 1000000.0}) {
        const Bytes bytes =
            File(kVideo).script(flv::ecmaArray({{"framerate", flv::number(rate)}})).video().end();
        EXPECT_EQ(probeBytes(bytes).info->frameTimeMicroseconds,
                  rate > 0 ? static_cast<std::uint32_t>(1000000 / rate) : 0u)
            << rate;
    }
}

// A sector that cannot be read lies within the numbers of a script, or begins with the data of a
// picture: what is needed of it fails the file, and what is passed over does not.
TEST(FlvRules, ATagThatCannotBeReadFails) {
    constexpr std::size_t kSector = 512, kBad = 8 * kSector;
    struct Case {
        const char* name;
        Bytes script;
        std::uint32_t containerType;
    };
    std::initializer_list<Bytes> none = {};
    Builder numbers, names;
    numbers.bytes(flv::strictArray(none)).patchBe32(1, 1000);
    for (int i = 0; i < 1000; ++i) {
        numbers.bytes(flv::number(i));
    }
    names.bytes(flv::text(std::string(9000, 'x')));
    for (const Case& one : {Case{"numbers", numbers.take(), 0}, Case{"a text", names.take(), 11}}) {
        const Bytes bytes = File(kVideo).script(one.script).video(0, 1, 20'000).end();
        EXPECT_EQ(probeWithBad(bytes, kBad, kSector).info->containerType, one.containerType)
            << one.name;
    }
    for (const std::size_t front : {0u, 9u, 10u}) {
        // Of the picture's data, which begin there, ten bytes are read.
        const Bytes text = flv::text(std::string(kBad - front - 9 - 15 - 3 - 15, 'x'));
        const Bytes bytes = File(kVideo).tag(18, text).video(0, 1, 20'000).end();
        ASSERT_EQ(bytes[kBad - front], 0x17);
        EXPECT_EQ(probeWithBad(bytes, kBad, kSector).info->containerType, front < 10 ? 0u : 11u)
            << front;
    }
}

TEST(FlvRules, OfASoundTagOneByteIsNeeded) {
    constexpr std::size_t kSector = 512, kBad = 10 * kSector;
    for (const std::size_t front : {0u, 1u}) {
        // Sound whose data begin that many bytes in front of a sector that cannot be read.
        const std::size_t picture = kBad - front - (9 + 15 + 15);
        const Bytes bytes = File(kVideo | kAudio)
                                .video(0, 1, picture - 1)
                                .tag(8, Bytes(2000, 0xAF))
                                .video(0, 1, 20'000)
                                .end();
        ASSERT_EQ(bytes[kBad - front], 0xAF);
        ASSERT_EQ(bytes[kBad - front - 11], 8);
        const Outcome outcome = probeWithBad(bytes, kBad, kSector);
        EXPECT_EQ(outcome.info->containerType, front == 1 ? 11u : 0u);
        EXPECT_EQ(outcome.info->audioSampleRate, front == 1 ? 44'100u : 0u);
    }
}

TEST(FlvRules, ATagThatTheFileCutsFails) {
    for (const unsigned type : {8u, 9u, 18u}) {
        const std::uint8_t flags = type == 8 ? kAudio : kVideo;
        const Bytes data = type == 18 ? flv::text("name") : Bytes(30, 0x17);
        const Bytes whole = File(flags).tag(type, data).video().audio().end();
        EXPECT_EQ(probeBytes(whole).info->status, probe::kOk) << type;
        const Bytes cut(whole.begin(),
                        whole.begin() + static_cast<std::ptrdiff_t>(9 + 15 + data.size() - 1));
        const Outcome outcome = probeBytes(cut);
        EXPECT_EQ(outcome.claimed, 1) << type;
        EXPECT_EQ(outcome.info->status, probe::kNotParsed) << type;
        EXPECT_EQ(outcome.info->containerType, 0u) << type;
        EXPECT_EQ(outcome.info->fileSize, cut.size()) << type;
    }
    // The data of a single tag that ends with the file.
    const Bytes whole = File(kVideo).video().cut();
    EXPECT_EQ(probeBytes(whole).info->status, probe::kOk);
    EXPECT_EQ(probeBytes(withoutLast(whole, 1)).info->status, probe::kNotParsed);
}

std::uint32_t widthOf(const Bytes& script) {
    return probeBytes(File(kVideo).tag(18, script).video().end()).info->videoWidth;
}

TEST(FlvRules, AValueIsPassedOverToItsLastByte) {
    struct Case {
        const char* name;
        Bytes value;
    };
    for (const Case& one : std::vector<Case>{
             {"number", flv::number(5)},
             {"boolean", {1, 1}},
             {"string", flv::text("abc")},
             {"movie clip", {4, 0, 2, 'a', 'b'}},
             {"null", {5}},
             {"undefined", {6}},
             {"date", Builder().u8(11).fill(10, 0x3F).take()},
             {"unsupported", {13}},
             {"object", flv::object({{"a", flv::text("b")}})},
             {"strict array", flv::strictArray({flv::text("a"), flv::number(1)})},
             {"ECMA array", flv::ecmaArray({{"a", flv::text("b")}})},
         }) {
        const Bytes array = flv::ecmaArray({{"other", one.value}, {"width", flv::number(480)}});
        // An array inside an array is ended by its count; its end mark is then the next key.
        const bool leavesMark = one.name == std::string_view("ECMA array");
        EXPECT_EQ(widthOf(join({flv::text("onMetaData"), array})), leavesMark ? 0u : 480u)
            << one.name;
        EXPECT_EQ(widthOf(join({one.value, flv::ecmaArray({{"width", flv::number(480)}})})),
                  leavesMark ? 0u : 480u)
            << one.name << " as the first value";
    }
    // Type 17 has four bytes and stops; as the first value it does not hide the second.
    const Bytes array = flv::ecmaArray({{"width", flv::number(480)}});
    EXPECT_EQ(widthOf(join({{17, 8, 8, 8, 8}, array})), 480u);
    for (const unsigned type : {9u, 18u, 255u}) {
        EXPECT_EQ(widthOf(join({{static_cast<std::uint8_t>(type)}, array})), 480u) << type;
    }
}

// A value of no known type ends its array; what follows is read as the next key, here one that
// leads beyond the script.
TEST(FlvRules, AValueOfNoTypeEndsItsArray) {
    for (const unsigned type : {5u, 9u, 18u}) {
        const Bytes inner = flv::strictArray({{static_cast<std::uint8_t>(type)}, flv::number(480)});
        EXPECT_EQ(widthOf(join({flv::text("onMetaData"), flv::ecmaArray({{"width", inner}})})),
                  type == 5 ? 480u : 0u)
            << type;
    }
}

TEST(FlvRules, ANumberThatIsCutLeavesTheOneBefore) {
    const Bytes array = flv::ecmaArray({{"width", flv::number(480)}, {"width", flv::number(320)}});
    for (const std::size_t missing : {3u, 4u, 11u}) {
        EXPECT_EQ(widthOf(join({flv::text("onMetaData"), withoutLast(array, missing)})),
                  missing == 3 ? 320u : 480u)
            << missing;
    }
}

TEST(FlvRules, ANumberGoesToTheKeyBeforeIt) {
    struct Case {
        std::string_view key;
        std::uint32_t R::*field;
        std::uint32_t wanted;
    };
    for (const Case& one : std::to_array<Case>({{"width", &R::videoWidth, 25},
                                                {"height", &R::videoHeight, 25},
                                                {"videodatarate", &R::videoBitRate, 25000},
                                                {"audiodatarate", &R::audioBitRate, 25000},
                                                {"framerate", &R::frameTimeMicroseconds, 40000}})) {
        const auto with = [&](std::string_view key) {
            const Bytes bytes =
                File(kVideo | kAudio)
                    .script(flv::ecmaArray({{key, flv::number(25)}, {"", flv::number(3)}}))
                    .video()
                    .audio()
                    .end();
            return (*probeBytes(bytes).info).*one.field;
        };
        EXPECT_EQ(with(one.key), one.wanted) << one.key;
        const std::string key(one.key);
        for (const std::string& other :
             {key.substr(1), key.substr(0, key.size() - 1), "W" + key.substr(1),
              key.substr(0, key.size() - 1) + "x"}) {
            EXPECT_EQ(with(other), 0u) << other;
        }
    }
}

// Values inside each other, `depth` of them around a width.
TEST(FlvRules, ValuesNestedDeeperThan64EndTheScript) {
    const std::vector<std::function<Bytes(const Bytes&)>> kinds = {
        [](const Bytes& inner) {
            return flv::ecmaArray({{"width", inner}});
        },
        [](const Bytes& inner) {
            return flv::object({{"a", inner}});
        },
        [](const Bytes& inner) { return flv::strictArray({inner}); }};
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        for (const int depth : {1, 63, 64, 65}) {
            Bytes value = flv::number(480);
            for (int i = 1; i < depth; ++i) {
                value = kinds[kind](value);
            }
            // The key of the outermost array goes down to the number.
            EXPECT_EQ(widthOf(join({flv::text("onMetaData"), flv::ecmaArray({{"width", value}})})),
                      depth <= 64 ? 480u : 0u)
                << kind << ' ' << depth;
        }
    }
}

TEST(FlvRules, SorensonSizesBitByBit) {
    const auto picture = [](std::initializer_list<unsigned> bytes) {
        Builder builder;
        builder.u8(0x22).u8(0).u8(0);
        for (const unsigned byte : bytes) {
            builder.u8(byte);
        }
        const Outcome outcome =
            probeBytes(File(kVideo).tag(9, builder.padTo(12, 0).take()).video(1000).end());
        return std::pair{outcome.info->videoWidth, outcome.info->videoHeight};
    };
    using Size = std::pair<std::uint32_t, std::uint32_t>;
    // Byte 3 version, byte 4 low bits and byte 5 top bit the size code.
    EXPECT_EQ(picture({0x84, 0, 0x7F, 0x80, 0, 0, 0}), (Size{255, 0}));
    EXPECT_EQ(picture({0x84, 0, 0x00, 0x7F, 0x80, 0, 0}), (Size{0, 255}));
    EXPECT_EQ(picture({0x84, 0, 0xFF, 0xFF, 0x80, 0, 0}), (Size{0xFFFF, 0}));
    EXPECT_EQ(picture({0x84, 0, 0x80, 0, 0x7F, 0xFF, 0x80}), (Size{0, 0xFFFF}));
    EXPECT_EQ(picture({0x80, 1, 0, 0, 0, 0, 0}), (Size{352, 288}));
    EXPECT_EQ(picture({0x80, 1, 0x80, 0, 0, 0, 0}), (Size{176, 144}));
    EXPECT_EQ(picture({0x80, 0xFD, 0, 0, 0, 0, 0}), (Size{352, 288})) << "two bits of byte 4";
    // The version's five bits stand between the start code's last and the first of the next field.
    for (unsigned byte = 0; byte < 256; ++byte) {
        const bool isKnown = (byte >> 2 & 0x1F) <= 1;
        EXPECT_EQ(picture({byte, 1, 0, 0, 0, 0, 0}), isKnown ? Size(352, 288) : Size(0, 0)) << byte;
    }
}

TEST(FlvRules, OnlyASorensonPictureOf10BytesHasASize) {
    const auto widthOf = [](unsigned codec, std::size_t bytes) {
        const Bytes picture = Builder().u8(0x20 | codec).be16(0).u8(0x84).u8(1).padTo(bytes).take();
        return probeBytes(File(kVideo).tag(9, picture).video(1000).end()).info->videoWidth;
    };
    for (unsigned codec = 0; codec < 16; ++codec) {
        EXPECT_EQ(widthOf(codec, 12), codec == 2 ? 352u : 0u) << codec;
    }
    EXPECT_EQ(widthOf(2, 10), 352u);
    EXPECT_EQ(widthOf(2, 9), 0u);
}

}  // namespace
}  // namespace probe_test
