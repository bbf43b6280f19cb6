// Where the runtime hands over to the player.
#include <windows.h>

#include "platform/wide.h"
#include "shell/start.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR commandLine, int show) {
    return shell::run(instance, platform::utf16(commandLine), show);
}
