// Why a file could not be rendered, for the developer.
#include <array>
#include <cstdint>

#include "platform/print.h"
#include "player/player.h"

namespace Player {
namespace {

struct ErrorRow {
    std::uint32_t result;
    // Formatted with the three arguments below; it shows the first alone. Required.
    const char* text;
    unsigned number;  // the source line, which stands where the result is expected
};

constexpr char kFunction[] = "Player::ErrorCodes";
constexpr char kSource[] = ".\\Player";

constexpr std::array<ErrorRow, 9> kErrors = {{
    {0x80070005,
     "[TCMovieManager]Render File Error : [E_ACCESSDENIED]General access denied error(%#x)\n",
     1244},
    {0x80070006, "[TCMovieManager]Render File Error : [E_HANDLE]Invalid handle(%#x)\n", 1232},
    {0x8007000E, "[TCMovieManager]Render File Error : [E_OUTOFMEMORY]Ran out of memory(%#x)\n",
     1216},
    {0x80070057,
     "[TCMovieManager]Render File Error : [E_INVALIDARG]One or more arguments are invalid(%#x)\n",
     1220},
    {0x80004005, "[TCMovieManager]Render File Error : [E_FAIL]Unspecified error(%#x)\n", 1240},
    {0x80004001, "[TCMovieManager]Render File Error : [E_NOTIMPL]Not implemented(%#x)\n", 1212},
    {0x80004002,
     "[TCMovieManager]Render File Error : [E_NOINTERFACE]No such interface supported(%#x)\n", 1224},
    {0x80004003, "[TCMovieManager]Render File Error : [E_POINTER]Invalid pointer(%#x)\n", 1228},
    {0x80004004, "[TCMovieManager]Render File Error : [E_ABORT]Operation aborted(%#x)\n", 1236},
}};

}  // namespace

int reportRenderError(std::int32_t hr, int) {
    for (const ErrorRow& row : kErrors) {
        if (row.result == static_cast<std::uint32_t>(hr)) {
            platform::debugPrint(row.text, row.number, kFunction, kSource);
        }
    }
    return 0;
}

}  // namespace Player
