// The window procedure's dispatch table: ten fixed rows and, behind them, the registered messages,
// whose numbers are asked for by static initialisers before the program's entry runs.
#include "shell/message_table.h"

#include <array>

#include "app/app_state.h"
#include "platform/wide.h"
#include "shell/handlers.h"
#include "shell/registered_messages.h"

namespace shell {
namespace {

constexpr std::array<MessageRow, 10> kFixedRows = {{
    {WM_CREATE, onCreate},
    {WM_ACTIVATE, onActivate},
    {WM_CLOSE, onClose},
    {WM_DESTROY, onDestroy},
    {WM_LBUTTONDOWN, onMouseDown},
    {WM_LBUTTONUP, onMouseUp},
    {WM_MOUSEMOVE, onMouseMove},
    {WM_TIMER, onTimer},
    {WM_PAINT, onPaint},
    {kGraphEventMessage, onGraphEvent},
}};

// In the order of kRegisteredMessages. A number that is needed elsewhere too is kept in its own
// field, which is filled first.
struct RegisteredRow {
    MessageHandler handler;
    UINT AppState::*keepIn;
};
constexpr std::array<RegisteredRow, kRegisteredMessages.size()> kRegisteredRows = {{
    {onProcessManagerCommand, nullptr},
    {onCardOrReadFailure, nullptr},
    {onUsbStorage, nullptr},
    {onMuteNotification, &AppState::muteNotificationMessage},
    {onGesture, nullptr},
    {onRemoteKey, nullptr},
    {onBroadcast, nullptr},
    {onCardOrReadFailure, nullptr},
    {onRecorderQuery, nullptr},
    {onNavigation, nullptr},
    {onEndPoint, &AppState::endPointMessage},
    {onSystemBroadcast, &AppState::systemBroadcastMessage},
}};

UINT registerMessage(std::size_t row) {
    return RegisterWindowMessageW(platform::wide(kRegisteredMessages[row]));
}

bool registerMessages() {
    for (std::size_t row = 0; row < kRegisteredRows.size(); ++row) {
        if (kRegisteredRows[row].keepIn != nullptr) {
            appState.*kRegisteredRows[row].keepIn = registerMessage(row);
        }
    }
    MessageTable& table = appState.messageTable;
    table.count = 0;
    const auto append = [&table](const MessageRow& row) {
        table.rows[static_cast<std::size_t>(table.count++)] = row;
    };
    for (const MessageRow& row : kFixedRows) {
        append(row);
    }
    for (std::size_t row = 0; row < kRegisteredRows.size(); ++row) {
        UINT AppState::*const kept = kRegisteredRows[row].keepIn;
        append({kept != nullptr ? appState.*kept : registerMessage(row),
                kRegisteredRows[row].handler});
    }
    return true;
}

[[maybe_unused]] const bool registered = registerMessages();

}  // namespace

LRESULT CALLBACK dispatchMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const MessageTable& table = appState.messageTable;
    for (std::int32_t i = 0; i < table.count; ++i) {
        const MessageRow& row = table.rows[static_cast<std::size_t>(i)];
        if (row.message == message) {
            return row.handler(window, message, wParam, lParam);
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace shell
