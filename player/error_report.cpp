// Why a file could not be rendered, for the developer.
#include <windows.h>

#include <array>

#include "platform/print.h"
#include "player/player.h"

namespace Player {
namespace {

struct ErrorRow {
    std::uint32_t result;
    const char* name;
    const char* text;
    unsigned number;  // printed in place of the result. Required.
};

constexpr std::array<ErrorRow, 9> kErrors = {{
    {0x80070005, "E_ACCESSDENIED", "General access denied error", 1244},
    {0x80070006, "E_HANDLE", "Invalid handle", 1232},
    {0x8007000E, "E_OUTOFMEMORY", "Ran out of memory", 1216},
    {0x80070057, "E_INVALIDARG", "One or more arguments are invalid", 1220},
    {0x80004005, "E_FAIL", "Unspecified error", 1240},
    {0x80004001, "E_NOTIMPL", "Not implemented", 1212},
    {0x80004002, "E_NOINTERFACE", "No such interface supported", 1224},
    {0x80004003, "E_POINTER", "Invalid pointer", 1228},
    {0x80004004, "E_ABORT", "Operation aborted", 1236},
}};

}  // namespace

int reportRenderError(long hr, int) {
    for (const ErrorRow& row : kErrors) {
        if (row.result == static_cast<std::uint32_t>(hr)) {
            platform::debugPrint("[TCMovieManager]Render File Error : [%s]%s(%#x)\n", row.name,
                                 row.text, row.number);
        }
    }
    return 0;
}

}  // namespace Player
