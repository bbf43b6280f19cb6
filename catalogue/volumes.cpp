#include "catalogue/volumes.h"

#include <algorithm>
#include <string_view>

namespace catalogue {

bool isStorageVolume(const char16_t* name) {
    return std::any_of(
        StorageVolumeNames.begin(), StorageVolumeNames.end(),
        [whole = std::u16string_view(name)](const char16_t* volume) { return whole == volume; });
}

const char16_t* volumeName(std::int64_t slot) {
    return slot >= 0 && slot < static_cast<std::int64_t>(StorageVolumeNames.size())
               ? StorageVolumeNames[static_cast<std::size_t>(slot)]
               : nullptr;
}

bool isRecording(const char16_t* name) {
    constexpr std::size_t kTail = 3;
    const std::u16string_view whole(name);
    if (whole.size() < kTail) {
        return false;
    }
    const std::u16string_view tail = whole.substr(whole.size() - kTail);
    return std::any_of(VideoExtensions.begin(), VideoExtensions.end(),
                       [tail](const char16_t* extension) { return tail == extension; });
}

bool liesOnVolume(const char16_t* path, const char16_t* volume) {
    std::u16string_view rest(path);
    if (!rest.empty() && rest.front() == u'\\') {
        rest.remove_prefix(1);
    }
    return rest.substr(0, rest.find(u'\\')) == volume;
}

}  // namespace catalogue
