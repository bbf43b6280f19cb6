// The window procedure's dispatch table: ten fixed rows and, behind them, the registered messages,
// whose numbers are asked for by a static initialiser before the program's entry runs.
#include "shell/message_table.h"

#include <array>

#include "app/app_state.h"
#include "graph/filter_control.h"
#include "shell/handlers.h"

namespace shell {
namespace {

constexpr auto kFixedRows = std::to_array<MessageRow>({
    {platform::kCreateMessage, onCreate},
    {platform::kActivateMessage, onActivate},
    {platform::kCloseMessage, onClose},
    {platform::kDestroyMessage, onDestroy},
    {platform::kButtonDownMessage, onMouseDown},
    {platform::kButtonUpMessage, onMouseUp},
    {platform::kMouseMoveMessage, onMouseMove},
    {platform::kTimerMessage, onTimer},
    {platform::kPaintMessage, onPaint},
    {kGraphEventMessage, onGraphEvent},
});

// A number that is needed elsewhere too is kept in its own field, which is filled first.
struct RegisteredRow {
    const char16_t* name;
    MessageHandler handler;
    std::uint32_t AppState::*keepIn;
};
constexpr auto kRegisteredRows = std::to_array<RegisteredRow>({
    // From the process manager, and from a second start of the player.
    {u"MSG_ProcessManagertoMovie", onProcessManagerCommand, &AppState::commandMessage},
    // From the board: memory card, USB storage, mute, gestures, remote control.
    {u"ZEL_BSP_WMUSER_SDCARD", onCardOrReadFailure, nullptr},
    {u"ZEL_BSP_WMUSER_MNT_USB", onUsbStorage, nullptr},
    {u"BSP_WMUSER_MUTE_NOTIFICATION", onMuteNotification, &AppState::muteNotificationMessage},
    {u"ZEL_BSP_WMUSER_GESTURE", onGesture, nullptr},
    {u"ZEL_BSP_WMUSER_IR_KEY", onRemoteKey, &AppState::remoteKeyMessage},
    // System-wide.
    {u"QUILLMARK_MSG_BROADCAST", onBroadcast, nullptr},
    // From the vendor's demultiplexer. It shares the memory card's handler. Required.
    {u"TCC_CDK_DEMUX_FILTER_READ_FAIL", onCardOrReadFailure, &AppState::readFailureMessage},
    // From the dash camera's recorder, a query.
    {u"MSG_BlackboxToWndStatus", onRecorderQuery, nullptr},
    // From the navigation application.
    {u"MSG_OrviBroadCast", onNavigation, nullptr},
    // From the process manager.
    {u"MSG_ProcessManagerToOrviEndPoint", onEndPoint, &AppState::endPointMessage},
    // From the system: the vehicle's speed.
    {u"MSG_SystemBroadcast", onSystemBroadcast, &AppState::systemBroadcastMessage},
});

static_assert(kFixedRows.size() + kRegisteredRows.size() == 22);

[[maybe_unused]] const bool registered = registerMessages();

}  // namespace

bool registerMessages() {
    appState.toProcessManagerMessage = platform::registerMessage(u"MSG_MovietoProcessManager");
    for (const RegisteredRow& row : kRegisteredRows) {
        if (row.keepIn != nullptr) {
            appState.*row.keepIn = platform::registerMessage(row.name);
        }
    }
    appState.messageTable.count = 0;
    const auto append = [](const MessageRow& row) {
        MessageTable& table = appState.messageTable;
        table.rows[static_cast<std::size_t>(table.count++)] = row;
    };
    for (const MessageRow& row : kFixedRows) {
        append(row);
    }
    for (const RegisteredRow& row : kRegisteredRows) {
        append({row.keepIn != nullptr ? appState.*row.keepIn : platform::registerMessage(row.name),
                row.handler});
    }
    return true;
}

platform::Answer dispatchMessage(platform::Window window, std::uint32_t message,
                                 platform::WParam wParam, platform::LParam lParam) {
    const MessageTable& table = appState.messageTable;
    for (std::int32_t i = 0; i < table.count; ++i) {
        const MessageRow& row = table.rows[static_cast<std::size_t>(i)];
        if (row.message == message) {
            return row.handler(window, message, wParam, lParam);
        }
    }
    return platform::defaultAnswer(window, message, wParam, lParam);
}

}  // namespace shell
