#include "simulator/hub/hub.h"

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

std::string runFile(const std::wstring& name) {
    const HANDLE file = CreateFileW((L"H:\\.unit\\" + name).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    char bytes[4200];  // a path of the PC
    DWORD count = 0;
    const BOOL good = ReadFile(file, bytes, sizeof(bytes), &count, nullptr);
    CloseHandle(file);
    const std::string text(bytes, good ? count : 0);
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace hub
