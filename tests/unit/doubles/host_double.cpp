// player/host.h as a recorder, for tests of the player alone. Lines begin with "host".
#include "player/host.h"
#include "tests/unit/doubles/record.h"
#include "tests/unit/doubles/unit_double.h"

#include "platform/board.h"

namespace Player::host {

using test::note;

void refreshScreen() {
    note("host refresh screen");
}
void refreshVolume() {
    note("host refresh volume");
}
void refreshFileList() {
    note("host refresh list");
}
void clearProgress() {
    note("host clear progress");
}
void showNotice(const char16_t* text) {
    platform::showMessageBox(test::playerWindow(), text, u"", platform::kOneButton, 1);
}
bool ask(const char16_t* question) {
    return platform::showMessageBox(test::playerWindow(), question, u"", platform::kYesNo, 1) ==
           platform::kAnsweredYes;
}
void showMode(std::int32_t mode) {
    note("host mode %d", mode);
}
void placeVideo() {
    note("host place video");
}
void showVideo() {
    note("host show video");
}
void signalWaitAnimation(Waiting waiting) {
    note("host waiting %d", static_cast<int>(waiting));
}
void postPlayKey() {
    note("host play key");
}
void broadcastMute() {
    note("host broadcast mute");
}

}  // namespace Player::host
