// Windows, processes, libraries and the registry.
#include <array>
#include <cwchar>

#include "platform/unit_api.h"
#include "simulator/coredll/settings.h"
#include "simulator/coredll/unit.h"

extern "C" {

// A window has the parts that its style asks for; the desktop gives one without any style a caption
// and a border.
HWND WINAPI unitCreateWindowExW(DWORD extended, const wchar_t* className, const wchar_t* title,
                                DWORD style, int left, int top, int width, int height, HWND parent,
                                HMENU menu, HINSTANCE program, void* parameter) {
    if ((style & (WS_CHILD | WS_CAPTION)) == 0) {
        style |= WS_POPUP;
    }
    static bool first = true;
    if (first && coredll::isProgramOfUnit()) {
        coredll::readyDecoders();  // a start that only hands over makes no window
    }
    first = false;
    const HWND window = CreateWindowExW(extended, className, title, style, left, top, width, height,
                                        parent, menu, program, parameter);
    const DWORD error = GetLastError();
    if (window != nullptr && coredll::isProgramOfUnit() && title != nullptr &&
        std::wcscmp(title, L"Video") == 0) {
        coredll::createSettledWindow();
    }
    SetLastError(error);
    return window;
}

// Security, inheritance, environment, folder and start-up information do not exist; a call that
// gives any of them fails.
BOOL WINAPI unitCreateProcessW(const wchar_t* program, const wchar_t* commandLine,
                               SECURITY_ATTRIBUTES* process, SECURITY_ATTRIBUTES* thread,
                               BOOL inherit, DWORD flags, void* environment, wchar_t* folder,
                               STARTUPINFOW* start, PROCESS_INFORMATION* created) {
    if (program == nullptr || process != nullptr || thread != nullptr || inherit != FALSE ||
        environment != nullptr || folder != nullptr || start != nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::wstring path = coredll::hostPath(program);
    std::wstring line = L"\"" + path + L"\"";
    if (commandLine != nullptr) {
        line += L' ';
        line += commandLine;
    }
    STARTUPINFOW plain{};
    plain.cb = sizeof plain;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, flags, nullptr, nullptr,
                        &plain, &made)) {
        return FALSE;
    }
    if (created != nullptr) {
        *created = made;
    } else {
        CloseHandle(made.hThread);
        CloseHandle(made.hProcess);
    }
    return TRUE;
}

BOOL WINAPI unitTerminateProcess(HANDLE process, UINT exitValue) {
    return TerminateProcess(process == platform::currentProcess() ? GetCurrentProcess() : process,
                            exitValue);
}

FARPROC WINAPI unitGetProcAddressW(HMODULE library, const wchar_t* name) {
    constexpr int kLongestName = 256;
    std::array<char, kLongestName> narrow{};
    if (WideCharToMultiByte(CP_ACP, 0, name, -1, narrow.data(), kLongestName, nullptr, nullptr) ==
        0) {
        return nullptr;
    }
    return GetProcAddress(library, narrow.data());
}

// Takes the sub-keys along.
LSTATUS WINAPI unitRegDeleteKeyW(HKEY root, const wchar_t* key) {
    if (key == nullptr || key[0] == L'\0') {
        return ERROR_INVALID_PARAMETER;
    }
    return RegDeleteTreeW(root, key);
}

}  // extern "C"
