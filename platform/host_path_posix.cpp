#include "platform/host_path.h"

#include <algorithm>

#include "platform/text_utf.h"

namespace platform {
namespace {

std::string& unitRoot() {
    static std::string root;
    return root;
}

}  // namespace

void setUnitRoot(std::string_view folder) {
    unitRoot() = folder;
}

std::string hostPath(std::u16string_view path) {
    std::string host = toUtf8(path, Malformed::Keep);
    if (unitRoot().empty()) {
        return host;
    }
    std::replace(host.begin(), host.end(), '\\', '/');
    if (host.empty() || host.front() != '/') {
        host.insert(host.begin(), '/');
    }
    return unitRoot() + host;
}

std::u16string fromHostPath(std::string_view path) {
    return toUtf16(path, Malformed::Keep);
}

}  // namespace platform
