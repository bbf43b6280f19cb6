#include "platform/registry.h"

namespace platform {

LONG deleteRegistryTree(HKEY root, const wchar_t* key) {
    return RegDeleteTreeW(root, key);
}

}  // namespace platform
