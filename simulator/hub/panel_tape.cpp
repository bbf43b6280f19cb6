// The tape on the panel, in columns.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "simulator/hub/panel.h"
#include "simulator/shared/describe.h"
#include "simulator/shared/tape_reader.h"

namespace hub {
namespace {

constexpr int kMostLines = 2000;  // older ones leave the list

struct Column {
    const wchar_t* name;
    int width;  // pixels
    int narrow;
};
// On a narrow panel what happened needs no kind.
constexpr Column kColumns[] = {{L"s", 72, 66}, {L"kind", 76, 0}, {L"what", 2000, 2000}};

void setCell(HWND list, int row, int column, std::wstring text) {
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = text.data();
    SendMessageW(list, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMTEXTW, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
}

// describe() has the columns already: seconds, kind, the rest.
void addLine(HWND list, const std::string& text) {
    const int row = ListView_GetItemCount(list);
    std::size_t at = 0;
    for (int column = 0; column < 3; ++column) {
        at = std::min(text.find_first_not_of(' ', at), text.size());
        const std::size_t end =
            column == 2 ? text.size() : std::min(text.find(' ', at), text.size());
        setCell(list, row, column, wide(text.substr(at, end - at)));
        at = end;
    }
}

}  // namespace

void createTapeList(HWND panel, const RECT& area) {
    const HWND list = CreateWindowExW(
        0, WC_LISTVIEWW, L"",
        WS_CHILD | WS_VISIBLE | WS_BORDER | LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER,
        area.left, area.top, area.right - area.left, area.bottom - area.top, panel,
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(kTapeList)), GetModuleHandleW(nullptr),
        nullptr);
    SendMessageW(list, WM_SETFONT, reinterpret_cast<WPARAM>(panelFont()), FALSE);
    const bool isNarrow = area.right - area.left < kWidePanel;
    for (int i = 0; i < static_cast<int>(std::size(kColumns)); ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = isNarrow ? kColumns[i].narrow : kColumns[i].width;
        column.pszText = const_cast<wchar_t*>(kColumns[i].name);
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i),
                     reinterpret_cast<LPARAM>(&column));
    }
}

void showTape(HWND list) {
    static headunit::TapeReader reader(L"H:\\.unit\\log.jsonl");
    auto line = reader.next();
    if (!line) {
        return;
    }
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    for (; line; line = reader.next()) {
        addLine(list, headunit::describe(line->value));
    }
    while (ListView_GetItemCount(list) > kMostLines) {
        ListView_DeleteItem(list, 0);
    }
    ListView_EnsureVisible(list, ListView_GetItemCount(list) - 1, FALSE);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
}

}  // namespace hub
