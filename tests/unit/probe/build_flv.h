// Builds Flash Video files out of their tags, and script data out of its values.
#pragma once

#include <bit>
#include <string_view>

#include "bytes_builder.h"

namespace probe_test::flv {

inline constexpr std::uint8_t kVideo = 1, kAudio = 4;

inline Bytes number(double value) {
    return Builder().u8(0).be64(std::bit_cast<std::uint64_t>(value)).take();
}
inline Bytes text(std::string_view value) {
    return Builder().u8(2).be16(value.size()).text(value).take();
}
inline Bytes key(std::string_view name) {
    return Builder().be16(name.size()).text(name).take();
}

struct Entry {
    std::string_view name;
    Bytes value;
};

inline Bytes ecmaArray(std::initializer_list<Entry> entries, std::uint32_t count = 0xFFFF) {
    Builder builder;
    builder.u8(8).be32(count == 0xFFFF ? entries.size() : count);
    for (const Entry& entry : entries) {
        builder.bytes(key(entry.name)).bytes(entry.value);
    }
    return builder.be24(9).take();
}
inline Bytes object(std::initializer_list<Entry> entries) {
    Builder builder;
    builder.u8(3);
    for (const Entry& entry : entries) {
        builder.bytes(key(entry.name)).bytes(entry.value);
    }
    return builder.be24(9).take();
}
inline Bytes strictArray(std::initializer_list<Bytes> values) {
    Builder builder;
    builder.u8(10).be32(values.size());
    for (const Bytes& value : values) {
        builder.bytes(value);
    }
    return builder.take();
}

// A file put together tag by tag.
class File {
public:
    explicit File(std::uint8_t flags, std::uint32_t headerSize = 9) {
        builder_.text("FLV").u8(1).u8(flags).be32(headerSize).padTo(headerSize);
    }
    File& tag(unsigned type, const Bytes& data, std::uint32_t milliseconds = 0) {
        builder_.be32(previous_)
            .u8(type)
            .be24(data.size())
            .be24(milliseconds & 0xFFFFFF)
            .u8(milliseconds >> 24)
            .be24(0)
            .bytes(data);
        previous_ = static_cast<std::uint32_t>(11 + data.size());
        return *this;
    }
    File& script(const Bytes& value) {
        return tag(18, Builder().bytes(text("onMetaData")).bytes(value).take());
    }
    // An AVC picture; `type` 1 is a key frame.
    File& video(std::uint32_t milliseconds = 0, unsigned type = 1, std::size_t size = 40) {
        return tag(9, Builder().u8(type << 4 | 7).fill(size, 0xEE).take(), milliseconds);
    }
    // `head` holds sound format, rate, size and channels.
    File& audio(std::uint32_t milliseconds = 0, std::uint8_t head = 0xAF) {
        return tag(8, Builder().u8(head).fill(20, 0xEE).take(), milliseconds);
    }
    Bytes end() { return builder_.be32(previous_).take(); }
    // Without the size of the last tag behind it.
    Bytes cut() { return builder_.take(); }
    Builder& raw() { return builder_; }

private:
    Builder builder_;
    std::uint32_t previous_ = 0;
};

}  // namespace probe_test::flv
