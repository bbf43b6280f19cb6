// Other programs of the unit.
#pragma once

namespace platform {

// Starts the program at `path` and does not wait for it; nothing when there is none.
void startProgram(const char16_t* path);

}  // namespace platform
