// Files that more than one part names.
#pragma once

namespace app {

// Shared by the unit's applications.
inline constexpr char16_t kConfigFile[] = u"ResidentFlash2\\Data\\Config.ini";

}  // namespace app
