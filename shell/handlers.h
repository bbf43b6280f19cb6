// The window procedure's handlers, one per message or group of messages. Each has the signature of
// MessageHandler.
#pragma once

#include "platform/window.h"

namespace shell {

using platform::Answer;
using platform::LParam;
using platform::Window;
using platform::WParam;

// lifecycle.cpp
Answer onCreate(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onClose(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onDestroy(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onPaint(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// input.cpp
Answer onActivate(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onMouseDown(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onMouseUp(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onMouseMove(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onGesture(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onRemoteKey(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// timers.cpp
Answer onTimer(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// graph_events.cpp
Answer onGraphEvent(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// process_manager.cpp
Answer onProcessManagerCommand(Window window, std::uint32_t message, WParam wParam, LParam lParam);

// unit_events.cpp
Answer onCardOrReadFailure(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onUsbStorage(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onMuteNotification(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onBroadcast(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onRecorderQuery(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onNavigation(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onEndPoint(Window window, std::uint32_t message, WParam wParam, LParam lParam);
Answer onSystemBroadcast(Window window, std::uint32_t message, WParam wParam, LParam lParam);

}  // namespace shell
