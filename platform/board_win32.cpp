#include "platform/board.h"

#include <windows.h>

#include "platform/unit_api.h"
#include "platform/wide.h"

namespace platform {
namespace {

// Names and signatures of what the libraries export.
constexpr wchar_t kMessageBoxLibrary[] = L"Zel_MessageBox.dll";
constexpr wchar_t kCommonLibrary[] = L"BoardCommon.dll";
using MessageBoxFunction = int(WINAPI*)(HWND owner, const wchar_t* text, const wchar_t* title,
                                        UINT style, int topmost);
using MessageBoxTimerFunction = int(WINAPI*)(HWND owner, const wchar_t* text, const wchar_t* title,
                                             UINT style, int topmost, DWORD milliseconds);
using PlaySoundFunction = void(WINAPI*)(int sound);

static_assert(kOneButton == MB_OK && kYesNo == MB_YESNO && kAnsweredYes == IDYES);

// The library stays loaded.
template <typename Function>
Function loadFunction(const wchar_t* library, const wchar_t* name) {
    const HMODULE module = LoadLibraryW(library);
    if (module == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddressW(module, name)));
}

MessageBoxFunction messageBox() {
    static const auto function =
        loadFunction<MessageBoxFunction>(kMessageBoxLibrary, L"ZEL_MessageBox");
    return function;
}

MessageBoxTimerFunction messageBoxTimer() {
    static const auto function =
        loadFunction<MessageBoxTimerFunction>(kMessageBoxLibrary, L"ZEL_MessageBoxTimer");
    return function;
}

PlaySoundFunction keyClick() {
    static const auto function = loadFunction<PlaySoundFunction>(kCommonLibrary, L"StartPlaySound");
    return function;
}

}  // namespace

int showMessageBox(Window owner, const char16_t* text, const char16_t* title, std::uint32_t style,
                   int topmost) {
    const MessageBoxFunction function = messageBox();
    return function != nullptr ? function(owner, wide(text), wide(title), style, topmost) : IDNO;
}

int showTimedMessageBox(Window owner, const char16_t* text, const char16_t* title,
                        std::uint32_t style, int topmost, std::uint32_t milliseconds) {
    const MessageBoxTimerFunction function = messageBoxTimer();
    return function != nullptr
               ? function(owner, wide(text), wide(title), style, topmost, milliseconds)
               : IDNO;
}

void playSound(int sound) {
    if (const PlaySoundFunction function = keyClick()) {
        function(sound);
    }
}

}  // namespace platform
