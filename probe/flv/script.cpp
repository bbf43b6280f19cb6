#include "probe/flv/script.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "probe/record/saturate.h"

namespace probe {
namespace {

enum AmfType : std::uint8_t {
    Number = 0,
    Boolean = 1,
    String = 2,
    Object = 3,
    MovieClip = 4,
    Null = 5,
    Undefined = 6,
    Reference = 7,
    EcmaArray = 8,
    StrictArray = 10,
    Date = 11,
    LongString = 12,
    Unsupported = 13,
    RecordSet = 14,
    XmlDocument = 15,
    TypedObject = 16,
    AvmPlusObject = 17,
};

constexpr std::size_t kKeyBytes = 14;  // keys of this length and longer are passed over

struct KeyRow {
    std::string_view name;
    FlvKey key;
};

constexpr auto kKeys = std::to_array<KeyRow>({
    {"width", FlvKey::Width},
    {"height", FlvKey::Height},
    {"framerate", FlvKey::FrameRate},
    {"audiodatarate", FlvKey::AudioDataRate},
    {"videodatarate", FlvKey::VideoDataRate},
});

// Ends the script for every level around: nothing can be read from the cursor any more.
FlvScript endScript(FileCursor& cursor) {
    cursor.skip(cursor.remaining() + 1);
    return FlvScript::Stop;
}

FlvScript goOnIf(const FileCursor& cursor) {
    return cursor.ok() ? FlvScript::GoOn : FlvScript::Stop;
}

FlvScript parseNumber(FileCursor& cursor, FlvMetadata& metadata) {
    const double value = std::bit_cast<double>(cursor.be64());
    if (!cursor.ok()) {
        return FlvScript::Stop;
    }
    switch (metadata.pendingKey) {
        case FlvKey::Width:
            metadata.width = saturateToU32(value);
            break;
        case FlvKey::Height:
            metadata.height = saturateToU32(value);
            break;
        case FlvKey::AudioDataRate:  // given in units of 1000 bits per second
            metadata.audioDataRate = saturateToU32(std::uint64_t{saturateToU32(value)} * 1000);
            break;
        case FlvKey::VideoDataRate:
            metadata.videoDataRate = saturateToU32(std::uint64_t{saturateToU32(value)} * 1000);
            break;
        case FlvKey::FrameRate:
            metadata.frameRate = value;
            break;
        case FlvKey::None:
            break;
    }
    metadata.pendingKey = FlvKey::None;
    return FlvScript::GoOn;
}

FlvScript parseObject(FileCursor& cursor, FlvMetadata& metadata, int depth) {
    do {
        cursor.skip(cursor.be16());
    } while (cursor.ok() && parseFlvScriptValue(cursor, metadata, depth + 1) == FlvScript::GoOn);
    return FlvScript::GoOn;
}

// The key of one entry of an ECMA array. A long key leaves the pending one as it was.
void parseKey(FileCursor& cursor, FlvMetadata& metadata) {
    const std::size_t length = cursor.be16();
    if (length >= kKeyBytes) {
        cursor.skip(length);
        return;
    }
    std::array<std::uint8_t, kKeyBytes> bytes{};
    if (!cursor.take(std::span(bytes).first(length))) {
        return;
    }
    const std::string_view name(reinterpret_cast<const char*>(bytes.data()), length);
    const auto row = std::ranges::find(kKeys, name, &KeyRow::name);
    metadata.pendingKey = row != kKeys.end() ? row->key : FlvKey::None;
}

FlvScript parseEcmaArray(FileCursor& cursor, FlvMetadata& metadata, int depth) {
    const std::uint32_t count = cursor.be32();
    for (std::uint32_t i = 0; i < count; ++i) {
        parseKey(cursor, metadata);
        if (!cursor.ok() || parseFlvScriptValue(cursor, metadata, depth + 1) == FlvScript::Stop) {
            break;
        }
    }
    return FlvScript::GoOn;
}

FlvScript parseStrictArray(FileCursor& cursor, FlvMetadata& metadata, int depth) {
    const std::uint32_t count = cursor.be32();
    for (std::uint32_t i = 0; i < count; ++i) {
        if (parseFlvScriptValue(cursor, metadata, depth + 1) == FlvScript::Stop) {
            break;
        }
    }
    return FlvScript::GoOn;
}

// Required: the cursor goes to twice (length + 2) bytes behind the type byte, not to the end of
// the text; what follows a long string is read from there.
FlvScript skipLongString(FileCursor& cursor) {
    constexpr std::uint64_t kLengthBytes = 4;
    const std::uint64_t length = cursor.be32();
    cursor.skip((length + 2) * 2 - kLengthBytes);
    return goOnIf(cursor);
}

}  // namespace

FlvScript parseFlvScriptValue(FileCursor& cursor, FlvMetadata& metadata, int depth) {
    if (depth > kFlvScriptDepth) {
        return endScript(cursor);
    }
    if (cursor.remaining() == 0) {
        return FlvScript::Stop;
    }
    switch (cursor.u8()) {
        case Number:
            return parseNumber(cursor, metadata);
        case Boolean:
            cursor.skip(1);
            return goOnIf(cursor);
        case String:
        case MovieClip:
            cursor.skip(cursor.be16());
            return goOnIf(cursor);
        case Object:
        case TypedObject:
            return parseObject(cursor, metadata, depth);
        case Null:
        case Undefined:
        case Reference:  // required: its two bytes are read as the next value
        case Unsupported:
            return goOnIf(cursor);
        case EcmaArray:
            return parseEcmaArray(cursor, metadata, depth);
        case StrictArray:
        case RecordSet:
            return parseStrictArray(cursor, metadata, depth);
        case Date:  // milliseconds as a double, time zone
            cursor.skip(8 + 2);
            return goOnIf(cursor);
        case LongString:
        case XmlDocument:
            return skipLongString(cursor);
        case AvmPlusObject:
            cursor.skip(4);
            return FlvScript::Stop;
        default:
            return FlvScript::Stop;
    }
}

}  // namespace probe
