// The window by which the unit's tools reach the graph inside the player
// (simulator/filters/app_window.h).
#pragma once

namespace headunit {

inline constexpr wchar_t kFiltersWindow[] = L"headunit.filters";  // its class; message-only
// Registered messages. An event: wParam its code, lParam its first parameter; the result is 1 when
// a graph took it.
inline constexpr wchar_t kGraphEventMessage[] = L"HEADUNIT_GRAPH_EVENT";
// The volume of the graph that plays: the result is kQuietest more than its hundredths of a decibel
// (1 silent, kQuietest as loud as recorded), 0 without a graph that has sound.
inline constexpr wchar_t kGraphVolumeMessage[] = L"HEADUNIT_GRAPH_VOLUME";
inline constexpr long kQuietest = 10001;

}  // namespace headunit
