#include "catalogue/camera.h"

#include <string_view>

namespace catalogue {
namespace {

constexpr std::size_t kNoLetter = std::u16string_view::npos;

// Where the letter of the camera stands: the last character before the extension, behind "_".
std::size_t letterPosition(std::u16string_view path) {
    const std::size_t dot = path.rfind(u'.');
    const bool hasMark = dot != kNoLetter && dot >= 2 && path[dot - 2] == u'_';
    return hasMark ? dot - 1 : kNoLetter;
}

// The other camera's letter in the same case, 0 when it is no camera's letter.
char16_t otherLetter(char16_t letter) {
    switch (letter) {
        case u'F':
            return u'R';
        case u'R':
            return u'F';
        case u'f':
            return u'r';
        case u'r':
            return u'f';
        default:
            return 0;
    }
}

}  // namespace

Camera cameraOf(const char16_t* path) {
    const std::size_t position = letterPosition(path);
    if (position == kNoLetter) {
        return kUnknownCamera;
    }
    switch (path[position]) {
        case u'F':
        case u'f':
            return kFrontCamera;
        case u'R':
        case u'r':
            return kRearCamera;
        default:
            return kUnknownCamera;
    }
}

int siblingRecording(const char16_t* path, PathBuffer& sibling) {
    if (cameraOf(path) == kUnknownCamera) {
        copyPath(sibling, u"");
        return 0;
    }
    copyPath(sibling, path);
    char16_t& letter = sibling[letterPosition(path)];
    letter = otherLetter(letter);
    return 1;
}

}  // namespace catalogue
