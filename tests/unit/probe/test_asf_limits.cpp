// ASF headers whose sizes and counts contradict each other: how far each part of the walk may go.
#include <gtest/gtest.h>

#include <array>

#include "build_asf.h"
#include "probing.h"

namespace probe_test {
namespace {

std::uint32_t rateOf(std::initializer_list<Bytes> objects) {
    return probeBytes(asf::file(objects)).info->videoBitRate;
}

// A Header Extension with data of another size than the objects in it.
Bytes extensionOf(std::uint32_t dataBytes, const Bytes& inner) {
    return asf::objectOfSize(asf::kHeaderExtension, 24 + 22 + dataBytes,
                             Builder().fill(16).le16(6).le32(dataBytes).bytes(inner).take());
}

TEST(AsfLimits, TimingStandsInTheHeaderExtensionAlone) {
    const Bytes video = asf::videoStream(2);
    const Bytes timing = asf::extendedStream(2, 500'000, 400'000);
    const Bytes other = asf::object(asf::kUnknown, {});
    EXPECT_EQ(rateOf({video, asf::headerExtension(other), timing}), 0u);
    // The object in the extension is larger than this: what it leads to is no part of it.
    const Bytes larger = asf::objectOfSize(asf::kUnknown, 24 + other.size(), {});
    EXPECT_EQ(rateOf({video, asf::headerExtension(larger), other, timing}), 0u);
    EXPECT_EQ(rateOf({video, extensionOf(24 + 24, larger), other, timing}), 0u);
}

// An object of 24 bytes is a header alone; it is acted on before its size is.
TEST(AsfLimits, AnExtensionHolds24BytesAtLeast) {
    const Bytes video = asf::videoStream(2);
    const Bytes timing = asf::extendedStream(2, 500'000, 400'000);
    Bytes small = timing;
    small[16] = 24;
    for (const std::uint32_t bytes : {0u, 23u, 24u, 25u}) {
        EXPECT_EQ(rateOf({video, extensionOf(bytes, small)}), bytes < 24 ? 0u : 500'000u) << bytes;
    }
    // Behind another object as well.
    const Bytes two = Builder().bytes(asf::object(asf::kUnknown, {})).bytes(small).take();
    for (const std::uint32_t bytes : {47u, 48u, 49u}) {
        EXPECT_EQ(rateOf({video, extensionOf(bytes, two)}), bytes < 48 ? 0u : 500'000u) << bytes;
    }
}

TEST(AsfLimits, TimingOfStreamsBeyond127IsPassedOver) {
    const Bytes inner = Builder()
                            .bytes(asf::extendedStream(128, 1, 1))
                            .bytes(asf::extendedStream(0xFFFF, 1, 1))
                            .bytes(asf::extendedStream(127, 500'000, 400'000))
                            .take();
    EXPECT_EQ(rateOf({asf::videoStream(127), asf::headerExtension(inner)}), 500'000u);
    EXPECT_EQ(rateOf({asf::audioStream(1), asf::headerExtension(inner)}), 0u);
}

TEST(AsfLimits, APlayTimeThatIsCutLeavesTheOneBefore) {
    const Bytes whole = asf::file({asf::fileProperties(5000), asf::fileProperties(7000)});
    const auto durationOf = [&whole](std::size_t missing) {
        const auto size = static_cast<std::uint32_t>(whole.size() - 300 - missing);
        return probeBytes(
                   asf::file({asf::fileProperties(5000), asf::fileProperties(7000)}, 0, size))
            .info->durationSeconds;
    };
    // Of the object 32 bytes are behind its play time.
    EXPECT_EQ(durationOf(32), 7u);
    EXPECT_EQ(durationOf(33), 5u);
}

// A size so large that its sum with the place wraps leads back into what was passed over.
TEST(AsfLimits, NoSizeLeadsBack) {
    const Bytes hidden = asf::fileProperties(5000);
    const Bytes holder = asf::object(asf::kUnknown, hidden);
    for (const std::uint64_t back : {holder.size() - 24, std::size_t{1}}) {
        const Bytes wrapped = asf::objectOfSize(asf::kUnknown, std::uint64_t{0} - back, {});
        const Outcome outcome = probeBytes(asf::file({holder, wrapped, asf::audioStream(1)}, 100));
        EXPECT_EQ(outcome.info->durationSeconds, 0u);
        EXPECT_EQ(outcome.info->audioFormatTag, 0u);
        EXPECT_EQ(outcome.info->containerType, probe::kContainerAsf);
    }
}

// A walk of N bytes may look at N / 6 + 1 objects and attributes, as an attribute has six bytes.
// What an object reads beyond its own end counts as one more for each six bytes begun.
TEST(AsfLimits, TheStepsOfAWalkAreAsManyAsFitSideBySide) {
    const auto isLastRead = [](std::size_t first, std::size_t second) {
        const Bytes carrier =
            Builder().bytes(asf::guid(asf::kExtendedContent)).le64(26).le16(1).take();
        // An attribute of six bytes with a value; as an object, one of 24 bytes that is unknown.
        const auto reaching = [](std::size_t bytes) {
            return Builder().le16(0).le16(1).le16(bytes).fill(10).le64(24).take();
        };
        const Bytes bytes = asf::file(
            {carrier, reaching(first), carrier, reaching(second), asf::fileProperties(5000)});
        EXPECT_EQ(bytes.size() - 300, 234u);
        return probeBytes(bytes).info->durationSeconds == 5;
    };
    // 234 bytes are 40 steps: four objects and two attributes, 16 for 90 bytes, and 17 for 101.
    EXPECT_TRUE(isLastRead(84, 90));
    EXPECT_TRUE(isLastRead(84, 95));
    EXPECT_FALSE(isLastRead(84, 96));
    EXPECT_TRUE(isLastRead(95, 84));
    EXPECT_FALSE(isLastRead(96, 84));
}

TEST(AsfLimits, AHeaderOfAGigabyteCannotBeHad) {
    for (const std::uint32_t size : {0x3FFFFFFFu, 0x40000000u, 0x40000001u, 0xFFFFFFFFu}) {
        const Bytes bytes = asf::file({asf::audioStream(1)}, 0, size);
        TestFile file(bytes);
        file.claimedSize = 0x1'0000'0000;
        EXPECT_EQ(probeFile(file).info->audioFormatTag, size < 0x40000000u ? 0x161u : 0u) << size;
    }
}

// A text or number that the header's end cuts is none, and nothing behind it is looked at.
TEST(AsfLimits, WhatTheHeadersEndCutsIsNotTaken) {
    const auto description = [](std::size_t title, std::size_t author, std::size_t rights) {
        return asf::object(
            asf::kContentDescription,
            Builder().le16(title).le16(author).le16(rights).le32(0).fill(300, 0x41).take());
    };
    const auto infoOf = [](const Bytes& object) {
        return probeBytes(asf::file({object, asf::fileProperties(5000)}, 0, 30 + 24 + 10 + 300))
            .info;
    };
    struct Case {
        std::size_t title, author, rights;
        bool hasTitle, hasArtist;
    };
    for (const Case& one :
         {Case{300, 0, 0, true, false}, Case{301, 2, 0, false, false}, Case{0, 300, 0, false, true},
          Case{2, 299, 0, true, false}, Case{2, 298, 0, true, true}, Case{2, 2, 297, true, true}}) {
        const auto info = infoOf(description(one.title, one.author, one.rights));
        EXPECT_EQ(info->hasTitle, one.hasTitle ? 1u : 0u) << one.title;
        EXPECT_EQ(info->hasArtist, one.hasArtist ? 1u : 0u) << one.author;
    }
}

TEST(AsfLimits, TextsBeyondTheHeaderEndTheWalk) {
    for (const std::size_t length : {8u, 400u}) {
        for (const std::size_t place : {0u, 1u, 2u}) {
            std::array<std::size_t, 3> lengths{};  // rights, description, rating
            lengths[place] = length;
            const Bytes texts = Builder()
                                    .le16(2)
                                    .le16(0)
                                    .le16(lengths[0])
                                    .le16(lengths[1])
                                    .le16(lengths[2])
                                    .bytes(asf::utf16(u"T"))
                                    .fill(8)
                                    .take();
            const Bytes object = asf::object(asf::kContentDescription, texts);
            const Outcome outcome = probeBytes(asf::file({object, asf::fileProperties(5000)}));
            EXPECT_EQ(outcome.info->hasTitle, 1u);
            EXPECT_EQ(outcome.info->durationSeconds, length == 8 ? 5u : 0u) << place;
        }
    }
}

TEST(AsfLimits, ANumberWhoseValueIsCutIsNone) {
    for (const std::size_t length : {4u, 5u, 1000u}) {
        const Bytes number = Builder()
                                 .le16(28)
                                 .bytes(asf::utf16(u"WM/TrackNumber"))
                                 .le16(3)
                                 .le16(length)
                                 .le32(7)
                                 .take();
        const Bytes bytes = asf::file({asf::audioStream(1), asf::extendedContent({number})});
        EXPECT_EQ(probeBytes(bytes).info->hasTrack, length == 4 ? 1u : 0u) << length;
    }
}

}  // namespace
}  // namespace probe_test
