#include "settings/hand_over.h"

namespace settings {

int usbSetupFileExists() {
    if (platform::pathKind(u"\\USB\\SETUP.cfg") != 0) {
        return 1;
    }
    for (char16_t digit = u'1'; digit <= u'9'; ++digit) {
        char16_t path[] = u"\\USB%\\SETUP.cfg";
        path[4] = digit;
        if (platform::pathKind(path) != 0) {
            return 1;
        }
    }
    return 0;
}

}  // namespace settings
