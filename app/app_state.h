// The one global record. Everything that lives longer than one window message is kept here and
// reached directly by every part of the player; there is no other state that changes. (Numbers of
// registered messages and the functions of the board's libraries are looked up once and kept where
// they are used.) It is touched on the window's thread alone.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>

#include "app/driving_check.h"
#include "catalogue/catalogue.h"
#include "graph/filter_control.h"
#include "platform/com_ptr.h"
#include "ui/screen_state.h"

using ui::kScreenHeight;
using ui::kScreenWidth;

// Values of screenMode.
enum ScreenMode : std::int32_t {
    kFullWidth = 0,
    kHalfWidth = 1,
    kFileList = 2,
    kSlideBanner = 3,  // full screen without the control bar
    kHidden = 4,
};

// Values of pendingKeyAction.
enum KeyAction : std::int32_t {
    kNoAction = -1,
    kNextFile = 0,
    kPreviousFile = 1,
    kVolumeDown = 2,
    kVolumeUp = 3,
};

// Values of videoLayerState, handed to the video renderer as they are.
inline constexpr std::int32_t kLayerShown = 10;
inline constexpr std::int32_t kLayerHidden = 12;

using MessageHandler = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct MessageRow {
    UINT message;
    MessageHandler handler;
};

struct MessageTable {
    std::int32_t count = 0;
    std::array<MessageRow, 22> rows{};
};

struct AppState : catalogue::CatalogueFields {
    HWND mainWindow = nullptr;
    HINSTANCE hInstance = nullptr;
    platform::ComPtr<IUnknown> imagingFactory;
    std::array<HFONT, 4> fonts{};  // heights 18, 25, 24, 16

    std::int32_t launchAsPip = 0;
    std::int32_t screenMode = kFullWidth;
    std::int32_t previousScreenMode = kFullWidth;
    std::int32_t exitMessageTimed = 0;  // the exit message closes itself
    std::int32_t exiting = 0;           // the window is being destroyed: an exit is asked for once
    std::int32_t muted = 0;
    std::int32_t audioSuppressed = 0;  // the process manager asks for silence
    std::int32_t pendingKeyAction = kNoAction;

    std::int32_t systemBroadcastValue = -1;  // vehicle speed in km/h, -1 without a signal
    std::int32_t dmbSetting = 0;             // nonzero: the picture may be shown while driving
    std::int32_t drivingBlock = 0;
    app::BlockCounters blockCounters;
    std::int32_t drivingBlockAtLastTick = 0;

    std::int32_t videoLayerState = kLayerShown;
    std::int32_t videoArea = 0;  // 1: the screens leave the video rectangle to the video layer
    RECT outputRectangle = {0, 0, kScreenWidth, kScreenHeight};  // client pixels of mainWindow

    std::uint8_t imageLoaded = 0;
    std::uint8_t playLoaded = 1;      // no play request is unfinished
    std::uint32_t playRequests = 0;   // counts requests and stops, to tell what was overtaken
    std::int32_t loadRestOfSkin = 0;  // the sets that are not showing are still to be loaded
    std::int32_t keyLock = 0;
    std::uint32_t lastSkipTick = 0;  // milliseconds

    std::int32_t liveLength = 0;     // the end time grows while the file is recorded
    std::int32_t resumePending = 0;  // the player was playing when it last ended
    std::uint32_t aspectX = 0, aspectY = 0;
    std::uint32_t audioFormatTag = 0;
    std::int32_t filterSwitch = 0;  // the graph's on/off switch, kept while the graph asks for it

    ui::ScreenState screens;

    CFilterControl filterControl;

    UINT muteNotificationMessage = 0;
    UINT systemBroadcastMessage = 0;
    UINT endPointMessage = 0;
    MessageTable messageTable;
};

extern AppState appState;
