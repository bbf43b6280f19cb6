// Registered window messages by number, and how they are put on the tape. Windows only.
#pragma once

#include <windows.h>

#include "simulator/shared/messages.h"

namespace tape {

// Null when `message` is none of the unit's registered messages. The numbers are looked up once per
// process.
const Message* registeredMessage(UINT message);

// Puts one message on the tape; `kind` is "post", "send" or "broadcast", `to` a window's name.
void recordMessage(const char* kind, const char* from, const char* to, const char* name,
                   WPARAM wParam, LPARAM lParam);

// The same for copied data: the identifier and as many 32-bit values as the block holds.
void recordCopyData(const char* from, const char* to, const COPYDATASTRUCT& data);

}  // namespace tape
