// What a process holds. Windows only; run under Wine.
#pragma once

#include <windows.h>

#include <cstddef>

struct Figures {
    unsigned handles = 0;  // kernel handles but for registry keys; Wine leaves one open per graph
    unsigned registryKeys = 0;  // Wine's filter mapper leaves some open at every search
    unsigned gdiObjects = 0;
    unsigned threads = 0;
    std::size_t privateKib = 0;  // memory that the process shares with nobody
};

// False when the process cannot be looked into.
bool measure(DWORD process, Figures& figures);

// Five numbers, in the order above, and a newline.
void print(const Figures& figures);
