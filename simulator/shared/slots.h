// The unit's storage slots: folders at its root, and the board's message for each. Portable.
#pragma once

#include <string_view>

namespace headunit {

struct Slot {
    const char* name;
    const char* message;
    int index;  // the message's lParam
};
inline constexpr Slot kSlots[] = {
    {"SDMMCDisk", "ZEL_BSP_WMUSER_SDCARD", 0}, {"SDMMCDisk2", "ZEL_BSP_WMUSER_SDCARD", 1},
    {"USB", "ZEL_BSP_WMUSER_MNT_USB", 0},      {"USB2", "ZEL_BSP_WMUSER_MNT_USB", 1},
    {"USB3", "ZEL_BSP_WMUSER_MNT_USB", 2},     {"USB4", "ZEL_BSP_WMUSER_MNT_USB", 3},
};

}  // namespace headunit
