#include "platform/library.h"

#include <array>

namespace platform {

// The desktop's GetProcAddress takes narrow names, the device's takes wide ones.
FARPROC loadProcedure(const wchar_t* library, const wchar_t* name) {
    const HMODULE module = LoadLibraryW(library);
    constexpr int kLongestName = 64;
    std::array<char, kLongestName> narrow{};
    if (module == nullptr || WideCharToMultiByte(CP_ACP, 0, name, -1, narrow.data(), kLongestName,
                                                 nullptr, nullptr) == 0) {
        return nullptr;
    }
    return GetProcAddress(module, narrow.data());
}

}  // namespace platform
