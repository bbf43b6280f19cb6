// Tables of what single fields of a sample's record must be.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/text.h"
#include "probing.h"

namespace probe_test {

struct FieldCase {
    const char* sample;
    std::uint32_t probe::MediaRecord::*field;
    std::uint32_t expected;
};

struct TextCase {
    const char* sample;
    char16_t (probe::MediaRecord::*field)[probe::kTextLength];
    std::u16string_view expected;
};

struct StatusCase {
    const char* sample;
    probe::Result claimed;
    probe::Result status;
};

inline void expectFields(std::span<const FieldCase> cases) {
    int row = 0;
    for (const FieldCase& one : cases) {
        const Outcome outcome = probeBytes(sample(one.sample).build());
        EXPECT_EQ((*outcome.info).*one.field, one.expected) << one.sample << ", row " << row;
        ++row;
    }
}

inline void expectTexts(std::span<const TextCase> cases) {
    for (const TextCase& one : cases) {
        const Outcome outcome = probeBytes(sample(one.sample).build());
        EXPECT_EQ(platform::toUtf8((*outcome.info).*one.field), platform::toUtf8(one.expected))
            << one.sample;
    }
}

inline void expectStatus(std::span<const StatusCase> cases) {
    for (const StatusCase& one : cases) {
        const Outcome outcome = probeBytes(sample(one.sample).build());
        EXPECT_EQ(outcome.claimed, one.claimed) << one.sample;
        EXPECT_EQ(outcome.info->status, one.status) << one.sample;
    }
}

}  // namespace probe_test
