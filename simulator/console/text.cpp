#include "simulator/console/hub.h"

namespace hub {

std::wstring wide(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int count = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring out(static_cast<std::size_t>(count), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, out.data(), count);
    return out;
}

std::string narrow(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int count =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(count), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, out.data(), count, nullptr, nullptr);
    return out;
}

}  // namespace hub
