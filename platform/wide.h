// The portable code keeps UTF-16 as char16_t; on Windows the same code units are wchar_t. The two
// are handed over here and nowhere else. Windows only.
#pragma once

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "this header is for Windows");

inline const wchar_t* wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* wide(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
inline const char16_t* utf16(const wchar_t* text) {
    return reinterpret_cast<const char16_t*>(text);
}
inline char16_t* utf16(wchar_t* text) {
    return reinterpret_cast<char16_t*>(text);
}

}  // namespace platform
