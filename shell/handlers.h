// The window procedure's handlers, one per message or group of messages. Each has the signature of
// MessageHandler.
#pragma once

#include <windows.h>

namespace shell {

// lifecycle.cpp
LRESULT onCreate(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onClose(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onDestroy(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onPaint(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// input.cpp
LRESULT onActivate(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onMouseDown(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onMouseUp(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onMouseMove(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onGesture(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onRemoteKey(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// timers.cpp
LRESULT onTimer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// graph_events.cpp
LRESULT onGraphEvent(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// process_manager.cpp
LRESULT onProcessManagerCommand(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// unit_events.cpp
LRESULT onCardOrReadFailure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onUsbStorage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onMuteNotification(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onBroadcast(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onRecorderQuery(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onNavigation(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onEndPoint(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT onSystemBroadcast(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace shell
