// The one global record. Everything that lives longer than one window message is kept here and
// reached directly by every part of the player; there is no other state that changes. (The
// functions of the board's libraries are looked up once and kept where they are used.) It is
// touched on the window's thread alone.
#pragma once

#include <array>
#include <cstdint>

#include "app/driving_check.h"
#include "catalogue/catalogue.h"
#include "graph/filter_control.h"
#include "platform/font.h"
#include "platform/window.h"
#include "ui/screen_state.h"

struct IUnknown;

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

using MessageHandler = platform::Answer (*)(platform::Window window, std::uint32_t message,
                                            platform::WParam wParam, platform::LParam lParam);

struct MessageRow {
    std::uint32_t message;
    MessageHandler handler;
};

struct MessageTable {
    std::int32_t count = 0;
    std::array<MessageRow, 22> rows{};
};

struct AppState : catalogue::CatalogueFields {
    platform::Window mainWindow = nullptr;
    platform::Instance hInstance = nullptr;
    IUnknown* imagingFactory = nullptr;              // one reference, from creation to destruction
    std::array<platform::FontHandle, 4> fonts = {};  // heights 18, 25, 24, 16

    std::int32_t launchAsPip = 0;
    std::int32_t screenMode = kFullWidth;
    std::int32_t previousScreenMode = kFullWidth;
    std::int32_t exitMessageTimed = 0;  // the exit message closes itself
    bool exiting = false;               // the window is being destroyed: an exit is asked for once
    std::int32_t muted = 0;
    std::int32_t audioSuppressed = 0;  // the process manager asks for silence
    std::int32_t pendingKeyAction = kNoAction;

    std::int32_t systemBroadcastValue = -1;  // vehicle speed in km/h, -1 without a signal
    std::int32_t dmbSetting = 0;             // nonzero: the picture may be shown while driving
    std::int32_t drivingBlock = 0;
    app::BlockCounters blockCounters;
    std::int32_t drivingBlockAtLastTick = 0;

    std::int32_t videoLayerState = kLayerShown;
    bool videoArea = false;  // the screens leave the video rectangle to the video layer
    platform::Rect outputRectangle = {0, 0, ui::kScreenWidth, ui::kScreenHeight};  // client pixels

    std::uint8_t imageLoaded = 0;
    std::uint8_t playLoaded = 1;       // no play request is unfinished
    std::uint32_t playRequests = 1;    // counts requests and stops, to tell what was overtaken
    std::uint32_t startedRequest = 0;  // whose graph runs or is paused
    bool loadRestOfSkin = false;       // the sets that are not showing are still to be loaded
    std::int32_t keyLock = 0;
    std::uint32_t lastSkipTick = 0;  // milliseconds

    std::int32_t liveLength = 0;     // the end time grows while the file is recorded
    std::int32_t resumePending = 0;  // the player was playing when it last ended
    std::uint32_t aspectX = 0, aspectY = 0;
    std::uint32_t audioFormatTag = 0;
    std::int32_t filterSwitch = 0;  // the graph's on/off switch, kept while the graph asks for it

    ui::ScreenState screens;

    CFilterControl filterControl;

    // Numbers of registered messages that are needed outside of messageTable. 0 until registered.
    std::uint32_t commandMessage = 0;           // process manager to player
    std::uint32_t muteNotificationMessage = 0;  // board
    std::uint32_t remoteKeyMessage = 0;         // board; the player posts it to itself
    std::uint32_t readFailureMessage = 0;       // the vendor's demultiplexer
    std::uint32_t endPointMessage = 0;          // process manager
    std::uint32_t systemBroadcastMessage = 0;   // system
    std::uint32_t toProcessManagerMessage = 0;  // only sent
    MessageTable messageTable;
};

extern AppState appState;
