// Where a path of the unit lies on the Linux machine that runs the native build. Linux only.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Paths with a leading backslash lie below the root folder set here; the default is none, so that
// mediaprobe's paths are taken as they are. Backslashes become slashes when a root is set.
void setUnitRoot(std::string_view folder);
std::string hostPath(std::u16string_view path);

// A path of this machine as the code units that hostPath makes it of again. Names here may be in
// any encoding: bytes that are no UTF-8 become a code unit each that stands in no text.
std::u16string fromHostPath(std::string_view path);

}  // namespace platform
