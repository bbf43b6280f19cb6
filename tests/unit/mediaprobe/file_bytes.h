// Files that a test writes byte by byte, and what the second look says of them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "mediaprobe/second_look.h"
#include "platform/file.h"

namespace mediaprobe {

inline std::string little(std::uint64_t value, int bytes) {
    std::string out;
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>(value >> (8 * i));
    }
    return out;
}
inline std::string big(std::uint64_t value, int bytes) {
    std::string out = little(value, bytes);
    return {out.rbegin(), out.rend()};
}
inline std::string zeros(std::size_t count) {
    return std::string(count, '\0');
}

inline SecondLook look(const std::string& bytes, const probe::MediaRecord& record,
                       Claimed claimed = Claimed::Yes) {
    const auto file =
        platform::openMemory({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    probe::ReadWindow window(*file);
    return lookAgain(window, record, claimed);
}

inline probe::MediaRecord recordOf(std::uint32_t container) {
    probe::MediaRecord record;
    record.status = probe::kOk;
    record.containerType = container;
    return record;
}

inline std::string damageOf(const std::string& bytes, const probe::MediaRecord& record) {
    const SecondLook seen = look(bytes, record);
    EXPECT_EQ(seen.fileBytes, bytes.size());
    return seen.damage;
}

}  // namespace mediaprobe
