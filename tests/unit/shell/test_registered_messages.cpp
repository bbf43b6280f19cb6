// The registered messages are a contract with the other processes of the unit: names and order.
#include <gtest/gtest.h>

#include <string_view>

#include "shell/registered_messages.h"

namespace {

TEST(RegisteredMessages, NamesAndOrder) {
    constexpr std::u16string_view kExpected[] = {
        u"MSG_ProcessManagertoMovie",        u"ZEL_BSP_WMUSER_SDCARD",
        u"ZEL_BSP_WMUSER_MNT_USB",           u"BSP_WMUSER_MUTE_NOTIFICATION",
        u"ZEL_BSP_WMUSER_GESTURE",           u"ZEL_BSP_WMUSER_IR_KEY",
        u"QUILLMARK_MSG_BROADCAST",          u"TCC_CDK_DEMUX_FILTER_READ_FAIL",
        u"MSG_BlackboxToWndStatus",          u"MSG_OrviBroadCast",
        u"MSG_ProcessManagerToOrviEndPoint", u"MSG_SystemBroadcast",
    };
    ASSERT_EQ(shell::kRegisteredMessages.size(), std::size(kExpected));
    for (std::size_t row = 0; row < std::size(kExpected); ++row) {
        EXPECT_TRUE(shell::kRegisteredMessages[row] == kExpected[row]) << row;
    }
    EXPECT_TRUE(shell::kRegisteredMessages[shell::kCommandRow] == kExpected[0]);
    EXPECT_TRUE(shell::kRegisteredMessages[shell::kRemoteKeyRow] == kExpected[5]);
    EXPECT_TRUE(std::u16string_view(shell::kToProcessManager) == u"MSG_MovietoProcessManager");
    EXPECT_TRUE(std::u16string_view(shell::kToWaitAnimation) == u"MSG_TO_ANI_WAITING");
}

}  // namespace
