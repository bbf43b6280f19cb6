// UTF-8 decoding shared by the implementations of platform/text.h.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace platform {

// As decodeText with CodePage::Utf8.
std::size_t decodeUtf8(std::string_view text, std::span<char16_t> out);

}  // namespace platform
