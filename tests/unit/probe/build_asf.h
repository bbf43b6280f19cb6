// Builds ASF headers out of their objects.
#pragma once

#include <array>
#include <string_view>

#include "bytes_builder.h"

namespace probe_test::asf {

using Guid = std::array<std::uint8_t, 16>;

inline constexpr Guid kHeader = {0x30, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                 0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
inline constexpr Guid kFileProperties = {0xA1, 0xDC, 0xAB, 0x8C, 0x47, 0xA9, 0xCF, 0x11,
                                         0x8E, 0xE4, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
inline constexpr Guid kStreamProperties = {0x91, 0x07, 0xDC, 0xB7, 0xB7, 0xA9, 0xCF, 0x11,
                                           0x8E, 0xE6, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
inline constexpr Guid kHeaderExtension = {0xB5, 0x03, 0xBF, 0x5F, 0x2E, 0xA9, 0xCF, 0x11,
                                          0x8E, 0xE3, 0x00, 0xC0, 0x0C, 0x20, 0x53, 0x65};
inline constexpr Guid kContentDescription = {0x33, 0x26, 0xB2, 0x75, 0x8E, 0x66, 0xCF, 0x11,
                                             0xA6, 0xD9, 0x00, 0xAA, 0x00, 0x62, 0xCE, 0x6C};
inline constexpr Guid kExtendedContent = {0x40, 0xA4, 0xD0, 0xD2, 0x07, 0xE3, 0xD2, 0x11,
                                          0x97, 0xF0, 0x00, 0xA0, 0xC9, 0x5E, 0xA8, 0x50};
inline constexpr Guid kExtendedStream = {0xCB, 0xA5, 0xE6, 0x14, 0x72, 0xC6, 0x32, 0x43,
                                         0x83, 0x99, 0xA9, 0x69, 0x52, 0x06, 0x5B, 0x5A};
inline constexpr Guid kAudioMedia = {0x40, 0x9E, 0x69, 0xF8, 0x4D, 0x5B, 0xCF, 0x11,
                                     0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};
inline constexpr Guid kVideoMedia = {0xC0, 0xEF, 0x19, 0xBC, 0x4D, 0x5B, 0xCF, 0x11,
                                     0xA8, 0xFD, 0x00, 0x80, 0x5F, 0x5C, 0x44, 0x2B};
inline constexpr Guid kUnknown = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

inline Bytes guid(const Guid& g) {
    return {g.begin(), g.end()};
}

inline Bytes object(const Guid& g, const Bytes& data) {
    return Builder().bytes(guid(g)).le64(24 + data.size()).bytes(data).take();
}
// The same with a size of its own.
inline Bytes objectOfSize(const Guid& g, std::uint64_t size, const Bytes& data) {
    return Builder().bytes(guid(g)).le64(size).bytes(data).take();
}

inline Bytes utf16(std::u16string_view text) {
    Builder builder;
    for (const char16_t c : text) {
        builder.le16(c);
    }
    return builder.take();
}

// `milliseconds` of play time.
inline Bytes fileProperties(std::uint64_t milliseconds) {
    return object(kFileProperties, Builder().fill(40).le64(milliseconds * 10000).fill(32).take());
}

inline Bytes streamProperties(const Guid& type, unsigned number, const Bytes& format) {
    return object(kStreamProperties, Builder()
                                         .bytes(guid(type))
                                         .fill(16 + 8)
                                         .le32(format.size())
                                         .le32(0)
                                         .le16(0x8000u | number)
                                         .le32(0)
                                         .bytes(format)
                                         .take());
}

// WAVEFORMATEX of `channels` at 44100 Hz and 16000 bytes a second.
inline Bytes audioStream(unsigned number, unsigned tag = 0x161, unsigned channels = 2) {
    return streamProperties(
        kAudioMedia, number,
        Builder().le16(tag).le16(channels).le32(44100).le32(16000).le16(4).le16(16).le16(0).take());
}

inline Bytes videoStream(unsigned number, std::string_view code = "WMV3", unsigned width = 640,
                         unsigned height = 480) {
    return streamProperties(kVideoMedia, number,
                            Builder()
                                .le32(width)
                                .le32(height)
                                .u8(2)
                                .le16(40)
                                .le32(40)
                                .le32(width)
                                .le32(height)
                                .le16(1)
                                .le16(24)
                                .text(code)
                                .fill(20)
                                .take());
}

inline Bytes extendedStream(unsigned number, std::uint32_t bitRate, std::uint64_t timePerFrame) {
    return object(kExtendedStream, Builder()
                                       .fill(16)
                                       .le32(bitRate)
                                       .fill(28)
                                       .le16(number)
                                       .le16(0)
                                       .le64(timePerFrame)
                                       .fill(4)
                                       .take());
}

inline Bytes headerExtension(const Bytes& inner) {
    return object(kHeaderExtension,
                  Builder().fill(16).le16(6).le32(inner.size()).bytes(inner).take());
}

inline Bytes contentDescription(std::u16string_view title, std::u16string_view author) {
    return object(kContentDescription, Builder()
                                           .le16(title.size() * 2)
                                           .le16(author.size() * 2)
                                           .le16(2)
                                           .le16(0)
                                           .le16(0)
                                           .bytes(utf16(title))
                                           .bytes(utf16(author))
                                           .le16(u'!')
                                           .take());
}

// One attribute of the Extended Content Description; the name gets its terminator.
inline Bytes attribute(std::u16string_view name, unsigned type, const Bytes& value) {
    return Builder()
        .le16(name.size() * 2 + 2)
        .bytes(utf16(name))
        .le16(0)
        .le16(type)
        .le16(value.size())
        .bytes(value)
        .take();
}
inline Bytes attribute(std::u16string_view name, std::u16string_view value) {
    return attribute(name, 0, utf16(value));
}

inline Bytes extendedContent(std::initializer_list<Bytes> attributes) {
    Builder builder;
    builder.le16(attributes.size());
    for (const Bytes& one : attributes) {
        builder.bytes(one);
    }
    return object(kExtendedContent, builder.take());
}

// A whole file: the header of these objects, then a start of the data. `count` and `headerSize`
// replace the real values when they are not 0.
inline Bytes file(std::initializer_list<Bytes> objects, std::uint32_t count = 0,
                  std::uint32_t headerSize = 0) {
    Builder content;
    for (const Bytes& one : objects) {
        content.bytes(one);
    }
    return Builder()
        .bytes(guid(kHeader))
        .le64(headerSize != 0 ? headerSize : 30 + content.size())
        .le32(count != 0 ? count : static_cast<std::uint32_t>(objects.size()))
        .le16(0x0201)
        .bytes(content.view())
        .fill(300, 0xDA)
        .take();
}

}  // namespace probe_test::asf
