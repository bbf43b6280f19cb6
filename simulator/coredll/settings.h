// The library's settings, from its own side.
#pragma once

#include "simulator/coredll/unit.h"

namespace coredll {

// When the library is loaded.
void readSettings();

// One less to wait for.
void countDown(Setting setting);

// Whether this is a program of the unit; a test program is not.
bool isProgramOfUnit();

// Makes the window that tells when the caller's thread has taken its messages (messages.cpp).
void createSettledWindow();

// Has the decoders loaded, on a thread of its own.
void readyDecoders();

}  // namespace coredll
