#include "simulator/shared/messages.h"

#include <array>

#include "simulator/shared/named.h"

namespace tape {
namespace {

constexpr auto kCommands = std::to_array<Meaning>({
    {0, kAny, "show full width"},
    {1, kAny, "show half width"},
    {2, kAny, "hide"},
    {3, 3, "prepare to exit"},
    {3, kAny, "exit"},
    {15007, kAny, "silence"},
    {15008, kAny, "sound again"},
    {20502, kAny, "previous file"},
    {20503, kAny, "next file"},
    {20506, kAny, "stop"},
    {20507, kAny, "play"},
    {20511, kAny, "show the file list"},
    {20512, kAny, "ask for the navigation"},
});
constexpr auto kReports = std::to_array<Meaning>({
    {0, 0, "home wanted"},
    {1, 0, "navigation wanted"},
    {3, 0, "mute toggled"},
    {4, 0, "wants to be closed"},
    {5, 0, "started, skins loaded"},
    {6, 0, "half width shown"},
    {7, 0, "not yet ready to exit"},
    {7, 1, "ready to exit"},
});
constexpr auto kStorage = std::to_array<Meaning>({{0, kAny, "gone"}, {1, kAny, "arrived"}});
constexpr auto kMute = std::to_array<Meaning>({{0, kAny, "sound on"}, {1, kAny, "muted"}});
constexpr auto kGesture = std::to_array<Meaning>({{1, kAny, "previous"}, {2, kAny, "next"}});
constexpr auto kKeys =
    std::to_array<Meaning>({{5, kAny, "previous"}, {6, kAny, "next"}, {7, kAny, "play/pause"}});
constexpr auto kWait = std::to_array<Meaning>({{0, kAny, "hide"}, {1, kAny, "show"}});
constexpr auto kOrvi = std::to_array<Meaning>({{2, kAny, "hide the picture"}});
constexpr auto kSpeed =
    std::to_array<Meaning>({{1, kAny, "vehicle speed in lParam"}, {0, kAny, "no signal"}});

constexpr auto kMessages = std::to_array<Message>({
    {"MSG_ProcessManagertoMovie", kProcessManager, kCommands},
    {"ZEL_BSP_WMUSER_SDCARD", kBoard, kStorage},
    {"ZEL_BSP_WMUSER_MNT_USB", kBoard, kStorage},
    {"BSP_WMUSER_MUTE_NOTIFICATION", kBoard, kMute},
    {"ZEL_BSP_WMUSER_GESTURE", kBoard, kGesture},
    {"ZEL_BSP_WMUSER_IR_KEY", kBoard, kKeys},
    {"QUILLMARK_MSG_BROADCAST", kSystem, {}},
    {"TCC_CDK_DEMUX_FILTER_READ_FAIL", "demultiplexer", {}},
    {"MSG_BlackboxToWndStatus", kRecorder, {}},
    {"MSG_OrviBroadCast", kNavigation, kOrvi},
    {"MSG_ProcessManagerToOrviEndPoint", kProcessManager, {}},
    {"MSG_SystemBroadcast", kSystem, kSpeed},
    {"MSG_MovietoProcessManager", kPlayer, kReports},
    {"MSG_TO_ANI_WAITING", kPlayer, kWait},
});

}  // namespace

std::span<const Message> messages() {
    return kMessages;
}

const Message* findMessage(std::string_view name) {
    return headunit::findNamed(kMessages, name);
}

const char* meaningOf(const Message& message, long long wParam, long long lParam) {
    for (const Meaning& meaning : message.meanings) {
        if (meaning.wParam == wParam && (meaning.lParam == kAny || meaning.lParam == lParam)) {
            return meaning.text;
        }
    }
    return "";
}

}  // namespace tape
