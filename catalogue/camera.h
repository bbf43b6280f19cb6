// Front and rear recordings of the same moment. The recorder ends the name of each, before the
// extension, with "F" or "R" behind an underscore: 20261121_081500_F.avi, 20261121_081500_R.avi.
#pragma once

#include "catalogue/folder_listing.h"

namespace catalogue {

enum Camera : std::int32_t { kUnknownCamera = -1, kFrontCamera = 0, kRearCamera = 1 };

// Which camera made the recording, by its name; lower-case letters count as well.
[[nodiscard]] Camera cameraOf(const char16_t* path);

// The path of the other camera's recording: 1, or 0 with `sibling` empty when the name tells no
// camera. The file need not exist.
[[nodiscard]] int siblingRecording(const char16_t* path, PathBuffer& sibling);

}  // namespace catalogue
