// What other programs of the unit leave for the player: the dash camera's folder in the registry,
// and the recorder's set-up file on a USB volume. Windows only, but for the set-up file.
#pragma once

#include <cstdint>

#include "platform/folder.h"

namespace settings {

// Takes the folder that the dash camera wants to have shown. When the registry names one that
// holds any entry, connectMode becomes 1 and the value is deleted, so that the next start is an
// ordinary one; otherwise connectMode becomes 0 and the value stays. `connectPath` is the text
// as read, empty without one or when it does not fit.
void ReadConnectPath(std::int32_t& connectMode, char16_t (&connectPath)[platform::kPathCapacity]);

// 1 when the recorder's set-up file lies on one of the USB volumes, else 0.
[[nodiscard]] int usbSetupFileExists();

}  // namespace settings
