#include <string>

#include "simulator/command/describe.h"
#include "simulator/console/hub.h"
#include "simulator/console/panel.h"

namespace hub {
namespace {

constexpr LRESULT kMostLines = 2000;  // older ones leave the list

// What was added to the tape since the last call; whole lines only.
std::string readNew() {
    static LONGLONG offset = 0;
    static std::string rest;
    const HANDLE file = CreateFileW(L"H:\\.unit\\log.jsonl", GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    LARGE_INTEGER place = {};
    place.QuadPart = offset;
    SetFilePointerEx(file, place, nullptr, FILE_BEGIN);
    char bytes[8192];
    DWORD count = 0;
    while (ReadFile(file, bytes, sizeof(bytes), &count, nullptr) && count > 0) {
        rest.append(bytes, count);
        offset += count;
    }
    CloseHandle(file);
    const auto end = rest.rfind('\n');
    std::string whole = end == std::string::npos ? "" : rest.substr(0, end + 1);
    rest.erase(0, whole.size());
    return whole;
}

void addLine(HWND list, const std::string& line) {
    const auto value = json::parse(line);
    if (!value) {
        return;
    }
    const std::wstring text = wide(headunit::describe(*value));
    SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace

void showTape(HWND list) {
    const std::string added = readNew();
    if (added.empty()) {
        return;
    }
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    std::size_t start = 0;
    for (std::size_t end = added.find('\n'); end != std::string::npos;
         end = added.find('\n', start)) {
        addLine(list, added.substr(start, end - start));
        start = end + 1;
    }
    while (SendMessageW(list, LB_GETCOUNT, 0, 0) > kMostLines) {
        SendMessageW(list, LB_DELETESTRING, 0, 0);
    }
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(count - 1), 0);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
}

}  // namespace hub
