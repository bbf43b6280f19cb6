// The file list as the player's record has it: what it shows when it is entered, and what its keys
// do.
#pragma once

#include <cstdint>

namespace screens {

// Lists the folder that is to be shown: that of what is played, else the one that was left.
void enterFileList();

// Whether there is a folder above that may be shown, and going there.
[[nodiscard]] bool hasParentFolder();
void goToParent();

// Back to the screen that the list was opened from.
void leaveListScreen();

// Row 0 to 7 of the page: enters the folder or starts the recording; deletes the recording.
void openRow(std::int32_t row);
void deleteRow(std::int32_t row);

}  // namespace screens
