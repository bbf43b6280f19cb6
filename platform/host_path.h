// Where a path of the unit lies on the Linux machine that runs the native build. Linux only.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Paths with a leading backslash lie below the root folder set here; the default is none, so that
// mediaprobe's paths are taken as they are. Backslashes become slashes when a root is set.
void setUnitRoot(std::string_view folder);
std::string hostPath(std::u16string_view path);

}  // namespace platform
