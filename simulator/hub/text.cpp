#include <filesystem>
#include <fstream>

#include "platform/text.h"
#include "platform/wide.h"
#include "simulator/hub/hub.h"

namespace hub {

std::wstring wide(const std::string& text) {
    const std::u16string units = platform::toUtf16(text);
    return {units.begin(), units.end()};
}

std::string narrow(const std::wstring& text) {
    return platform::toUtf8({platform::utf16(text.data()), text.size()});
}

std::string runFile(const std::wstring& name) {
    std::ifstream file(std::filesystem::path(L"H:\\.unit\\" + name));
    std::string line;
    std::getline(file, line);
    return line;
}

}  // namespace hub
