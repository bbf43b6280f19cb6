#include "recorders.h"

#include <string_view>

#include "platform/text.h"

namespace ui_test {
namespace {

std::string numbers(std::initializer_list<std::int32_t> values) {
    std::string text;
    for (const std::int32_t value : values) {
        text += (text.empty() ? "" : ",") + std::to_string(value);
    }
    return text;
}

std::string place(const ui::Rect& r) {
    return numbers({r.left, r.top, r.right, r.bottom});
}

std::string place(ui::Point p) {
    return numbers({p.x, p.y});
}

std::string nameOf(ui::Bitmap bitmap) {
    return std::string(1, "ABCD"[static_cast<std::size_t>(bitmap.set)]) +
           std::to_string(bitmap.slot);
}

std::string hex(ui::Colour colour) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (int shift = 20; shift >= 0; shift -= 4) {
        text += kDigits[colour >> shift & 15];
    }
    return text;
}

}  // namespace

bool RecordingCanvas::covers(ui::Bitmap bitmap, const ui::Rect&) const {
    return missing.count(nameOf(bitmap)) == 0;
}

void RecordingCanvas::draw(ui::Bitmap bitmap, ui::Point at) {
    lines.push_back("draw " + nameOf(bitmap) + " " + place(at));
}

void RecordingCanvas::drawRegion(ui::Bitmap bitmap, const ui::Rect& area) {
    lines.push_back("region " + nameOf(bitmap) + " " + place(area));
}

void RecordingCanvas::drawInto(ui::Bitmap bitmap, const ui::Rect& area) {
    lines.push_back("into " + nameOf(bitmap) + " " + place(area));
}

void RecordingCanvas::drawTransparent(ui::Bitmap bitmap, ui::Point at) {
    lines.push_back("keyed " + nameOf(bitmap) + " " + place(at));
}

void RecordingCanvas::drawTransparentInto(ui::Bitmap bitmap, const ui::Rect& area) {
    lines.push_back("keyed into " + nameOf(bitmap) + " " + place(area));
}

void RecordingCanvas::fill(const ui::Rect& area, ui::Colour colour) {
    lines.push_back("fill " + hex(colour) + " " + place(area));
}

void RecordingCanvas::text(const char16_t* text, ui::Font font, ui::Colour colour,
                           const ui::Rect& area, ui::TextPlace textPlace) {
    constexpr const char* kHeights[] = {"18", "25", "24", "16"};
    lines.push_back(std::string("text ") + kHeights[static_cast<std::size_t>(font)] + " " +
                    hex(colour) + " " + place(area) + " " + std::to_string(textPlace) + " " +
                    platform::toUtf8(text));
}

std::int32_t RecordingCanvas::textWidth(const char16_t* text, ui::Font) {
    return static_cast<std::int32_t>(std::u16string_view(text).size()) * 10;
}

void RecordingHost::invalidate(const ui::Rect& area) {
    lines.push_back("invalidate " + place(area));
}

void RecordingHost::startTimer(ui::ScreenTimer timer) {
    lines.emplace_back(timer == ui::ScreenTimer::Bar ? "start bar" : "start position");
}

void RecordingHost::stopTimer(ui::ScreenTimer timer) {
    lines.emplace_back(timer == ui::ScreenTimer::Bar ? "stop bar" : "stop position");
}

void RecordingHost::act(ui::Action action, std::int32_t row) {
    const bool hasRow = action == ui::Action::OpenRow || action == ui::Action::DeleteRow;
    lines.push_back("act " + nameOf(action) + (hasRow ? " " + std::to_string(row) : ""));
}

void RecordingHost::setVolumeLevel(std::int32_t level) {
    lines.push_back("level " + std::to_string(level));
}

void RecordingHost::setListPage(std::int32_t page) {
    lines.push_back("page " + std::to_string(page));
}

std::string nameOf(ui::Action action) {
    constexpr const char* kNames[] = {
        "None",         "Refuse",     "GoHome",        "GoNavigation", "Close",
        "PreviousFile", "PlayPause",  "Stop",          "NextFile",     "ShowList",
        "VolumeDown",   "ToggleMute", "VolumeUp",      "Seek",         "SwitchCamera",
        "HideBar",      "StartPopup", "ShowFullWidth", "GoToParent",   "LeaveList",
        "PageUp",       "PageDown",   "Scroll",        "DeleteRow",    "OpenRow"};
    static_assert(std::size(kNames) == static_cast<std::size_t>(ui::Action::OpenRow) + 1);
    return kNames[static_cast<std::size_t>(action)];
}

}  // namespace ui_test
