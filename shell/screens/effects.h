// What the touches of the screens set off in the window, the player and the other processes.
// Windows only.
#pragma once

#include "ui/touch.h"

namespace ui {

class Effects : public TouchHost {
public:
    void invalidate(const Rect& area) override;
    void invalidateAll() override;
    void update() override;
    void capturePointer() override;
    void releasePointer() override;
    void startTimer(ScreenTimer timer) override;
    void stopTimer(ScreenTimer timer) override;
    void click() override;
    void act(Action action, std::int32_t row) override;
    void setVolumeLevel(std::int32_t level) override;
    void setListPage(std::int32_t page) override;
    void showBanner() override;
};

// The file list: what it shows when it is entered, and what its keys do.
void enterFileList();
bool hasParentFolder();
void goToParent();
void leaveListScreen();
void openRow(std::int32_t row);
void deleteRow(std::int32_t row);

}  // namespace ui
