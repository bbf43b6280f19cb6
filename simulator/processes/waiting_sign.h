// The sign that tells the driver to wait: a ring of eight dots that turns in the middle of the
// picture, between the bars of the player's screen. A window of its own, above all others, that
// takes neither touches nor the focus and that no message of the unit is meant for. The calling
// thread's message loop turns it. Windows only.
#pragma once

namespace sign {

// Makes the window, hidden. False when Windows refuses.
bool create();
// From now on the sign stands and turns, or is gone. Without a player there is nothing to wait for:
// when its window goes, so does the sign.
void show(bool wanted);

}  // namespace sign
