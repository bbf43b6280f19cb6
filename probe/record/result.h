// Result codes of the media probe: the platform's HRESULT values.
#pragma once

#include <cstdint>

namespace probe {

using Result = std::int32_t;

inline constexpr Result kOk = 0;
inline constexpr Result kNotParsed = 1;                                   // S_FALSE
inline constexpr Result kFail = static_cast<Result>(0x80004005u);         // E_FAIL
inline constexpr Result kOutOfMemory = static_cast<Result>(0x8007000Eu);  // E_OUTOFMEMORY

}  // namespace probe
