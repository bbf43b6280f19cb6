// The registered window messages that the player handles, in the order in which they stand in
// the window procedure's table behind its ten fixed rows.
#pragma once

#include <array>
#include <cstddef>

namespace shell {

inline constexpr std::array<const char16_t*, 12> kRegisteredMessages = {
    u"MSG_ProcessManagertoMovie",         // process manager, a second start of the player
    u"ZEL_BSP_WMUSER_SDCARD",             // board: memory card
    u"ZEL_BSP_WMUSER_MNT_USB",            // board: USB storage
    u"BSP_WMUSER_MUTE_NOTIFICATION",      // board
    u"ZEL_BSP_WMUSER_GESTURE",            // board
    u"ZEL_BSP_WMUSER_IR_KEY",             // board: remote control; the player itself
    u"QUILLMARK_MSG_BROADCAST",           // system-wide
    u"TCC_CDK_DEMUX_FILTER_READ_FAIL",    // the vendor's demultiplexer
    u"MSG_BlackboxToWndStatus",           // dash camera recorder, a query
    u"MSG_OrviBroadCast",                 // navigation application
    u"MSG_ProcessManagerToOrviEndPoint",  // process manager
    u"MSG_SystemBroadcast",               // system: vehicle speed
};

// Indexes in the list, for what is looked up by name elsewhere.
inline constexpr std::size_t kCommandRow = 0;
inline constexpr std::size_t kRemoteKeyRow = 5;

// Messages that the player only sends.
inline constexpr char16_t kToProcessManager[] = u"MSG_MovietoProcessManager";
inline constexpr char16_t kToWaitAnimation[] = u"MSG_TO_ANI_WAITING";

}  // namespace shell
