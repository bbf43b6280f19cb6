#include "platform/board.h"

#include "platform/library.h"

namespace platform {
namespace {

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

int showMessageBox(HWND owner, const wchar_t* text, const wchar_t* title, UINT style, int topmost) {
    const MessageBoxFunction function = messageBox();
    return function != nullptr ? function(owner, text, title, style, topmost) : IDNO;
}

int showTimedMessageBox(HWND owner, const wchar_t* text, const wchar_t* title, UINT style,
                        int topmost, DWORD milliseconds) {
    const MessageBoxTimerFunction function = messageBoxTimer();
    return function != nullptr ? function(owner, text, title, style, topmost, milliseconds) : IDNO;
}

void playSound(int sound) {
    if (const PlaySoundFunction function = keyClick()) {
        function(sound);
    }
}

}  // namespace platform
