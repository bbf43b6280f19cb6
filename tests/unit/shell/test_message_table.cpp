// The window procedure's table: names, order, the fields that keep numbers, and the dispatch.
#include <array>
#include <utility>

#include "shell/handlers.h"
#include "shell/message_table.h"
#include "tests/unit/shell/shell_unit.h"

namespace {

using test::taken;

class MessageTable : public test::ShellUnit {};

TEST_F(MessageTable, NamesAndHandlersInOrder) {
    const std::array<std::pair<const char*, MessageHandler>, 22> expected = {{
        {"0x1", shell::onCreate},
        {"0x6", shell::onActivate},
        {"0x10", shell::onClose},
        {"0x2", shell::onDestroy},
        {"0x201", shell::onMouseDown},
        {"0x202", shell::onMouseUp},
        {"0x200", shell::onMouseMove},
        {"0x113", shell::onTimer},
        {"0xF", shell::onPaint},
        {"0x8001", shell::onGraphEvent},
        {"MSG_ProcessManagertoMovie", shell::onProcessManagerCommand},
        {"ZEL_BSP_WMUSER_SDCARD", shell::onCardOrReadFailure},
        {"ZEL_BSP_WMUSER_MNT_USB", shell::onUsbStorage},
        {"BSP_WMUSER_MUTE_NOTIFICATION", shell::onMuteNotification},
        {"ZEL_BSP_WMUSER_GESTURE", shell::onGesture},
        {"ZEL_BSP_WMUSER_IR_KEY", shell::onRemoteKey},
        {"QUILLMARK_MSG_BROADCAST", shell::onBroadcast},
        {"TCC_CDK_DEMUX_FILTER_READ_FAIL", shell::onCardOrReadFailure},
        {"MSG_BlackboxToWndStatus", shell::onRecorderQuery},
        {"MSG_OrviBroadCast", shell::onNavigation},
        {"MSG_ProcessManagerToOrviEndPoint", shell::onEndPoint},
        {"MSG_SystemBroadcast", shell::onSystemBroadcast},
    }};
    ASSERT_EQ(appState.messageTable.count, 22);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const MessageRow& row = appState.messageTable.rows[i];
        EXPECT_EQ(test::nameOfMessage(row.message), expected[i].first) << i;
        EXPECT_TRUE(row.handler == expected[i].second) << expected[i].first;
    }
}

TEST_F(MessageTable, NumbersThatAreNeededLaterAreKept) {
    const std::pair<std::uint32_t, const char*> kept[] = {
        {appState.commandMessage, "MSG_ProcessManagertoMovie"},
        {appState.muteNotificationMessage, "BSP_WMUSER_MUTE_NOTIFICATION"},
        {appState.remoteKeyMessage, "ZEL_BSP_WMUSER_IR_KEY"},
        {appState.readFailureMessage, "TCC_CDK_DEMUX_FILTER_READ_FAIL"},
        {appState.endPointMessage, "MSG_ProcessManagerToOrviEndPoint"},
        {appState.systemBroadcastMessage, "MSG_SystemBroadcast"},
        {appState.toProcessManagerMessage, "MSG_MovietoProcessManager"},
    };
    for (const auto& [number, name] : kept) {
        EXPECT_EQ(test::nameOfMessage(number), name);
    }
}

TEST_F(MessageTable, RegisteringAgainBeginsItAnew) {
    EXPECT_TRUE(shell::registerMessages());
    EXPECT_EQ(appState.messageTable.count, 22);
    EXPECT_EQ(appState.messageTable.rows[0].message, platform::kCreateMessage);
    EXPECT_EQ(appState.connectMode, 0) << "rows that keep no number write none";
}

TEST_F(MessageTable, WhatIsHandledIsAnsweredWithZero) {
    for (const std::uint32_t message : std::to_array<std::uint32_t>(
             {platform::kCreateMessage, platform::kPaintMessage, platform::kTimerMessage, 0x8001,
              platform::kCloseMessage, platform::kDestroyMessage})) {
        EXPECT_EQ(send(message), 0) << message;
    }
    for (const char16_t* name :
         {u"MSG_ProcessManagertoMovie", u"ZEL_BSP_WMUSER_SDCARD", u"ZEL_BSP_WMUSER_MNT_USB",
          u"BSP_WMUSER_MUTE_NOTIFICATION", u"QUILLMARK_MSG_BROADCAST",
          u"TCC_CDK_DEMUX_FILTER_READ_FAIL", u"MSG_OrviBroadCast",
          u"MSG_ProcessManagerToOrviEndPoint", u"MSG_SystemBroadcast"}) {
        EXPECT_EQ(send(name, 99), 0) << test::shown(name);
    }
}

TEST_F(MessageTable, WhatHasNoRowIsTheSystems) {
    EXPECT_EQ(send(0x0014, 3, 4), 77);
    EXPECT_LINES(taken(), "\ndefault 0x14 3,4\n");
}

TEST_F(MessageTable, TheFirstRowWins) {
    appState.messageTable.rows[20].message = platform::kCloseMessage;
    EXPECT_EQ(send(platform::kCloseMessage), 0);
    EXPECT_LINES(taken(), "\ndestroy window\n");
}

TEST_F(MessageTable, RowsBehindTheCountAreNotSearched) {
    appState.messageTable.count = 2;
    EXPECT_EQ(send(platform::kCloseMessage), 77);
}

}  // namespace
