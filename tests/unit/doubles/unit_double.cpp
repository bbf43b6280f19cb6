// The platform as a recorder. Lines:
//   redraw | redraw L,T,R,B | update | place L,W,H | show | hide | front | destroy window | quit N
//   timer ID MS | kill ID | capture | release
//   post WINDOW MESSAGE W,L | send WINDOW MESSAGE W,L | broadcast MESSAGE W,L | values WINDOW ID
//   A,B default MESSAGE W,L | sleep MS | box STYLE TEXT | timed box STYLE MS TEXT | sound N font
//   ... | delete font | enter COM | leave COM | imaging factory | release object program PATH |
//   print TEXT | debug TEXT
#include "tests/unit/doubles/unit_double.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "platform/board.h"
#include "platform/com.h"
#include "platform/font.h"
#include "platform/print.h"
#include "platform/program.h"
#include "settings/hand_over.h"
#include "tests/unit/doubles/record.h"

namespace test {
namespace {

// Handles are never followed: each is a small number.
template <typename Handle>
Handle handle(std::uintptr_t number) {
    return reinterpret_cast<Handle>(number);
}

constexpr std::uintptr_t kPlayerWindow = 0x100;
constexpr std::uintptr_t kFirstPeer = 0x200;
constexpr std::uint32_t kFirstRegistered = 0xC000;

// In the order in which they were asked for; they outlive a test, as in the unit.
std::vector<std::u16string>& names() {
    static std::vector<std::u16string> registered;
    return registered;
}
std::vector<std::u16string>& titles() {
    static std::vector<std::u16string> asked;
    return asked;
}

std::size_t place(std::vector<std::u16string>& list, const std::u16string& text) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == text) {
            return i;
        }
    }
    list.push_back(text);
    return list.size() - 1;
}

std::string nameOf(platform::Window window) {
    const auto number = reinterpret_cast<std::uintptr_t>(window);
    if (number == kPlayerWindow) {
        return "Video";
    }
    return number >= kFirstPeer ? shown(titles()[number - kFirstPeer]) : "null";
}

std::string describe(std::uint32_t message, platform::WParam wParam, platform::LParam lParam) {
    return nameOfMessage(message) + " " + std::to_string(wParam) + "," + std::to_string(lParam);
}

std::string formatted(const char* format, std::va_list arguments) {
    std::array<char, 512> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    return shown(std::string_view(text.data()));
}

void runOnce(std::function<void()>& hook) {
    if (const std::function<void()> run = std::exchange(hook, nullptr)) {
        run();
    }
}

}  // namespace

UnitDouble& unit() {
    static UnitDouble theUnit;
    return theUnit;
}

void freshUnit() {
    unit() = UnitDouble{};
    taken();
}

platform::Window playerWindow() {
    return handle<platform::Window>(kPlayerWindow);
}

platform::Window windowOf(const std::u16string& title) {
    return handle<platform::Window>(kFirstPeer + place(titles(), title));
}

std::string nameOfMessage(std::uint32_t message) {
    if (message >= kFirstRegistered && message - kFirstRegistered < names().size()) {
        return shown(names()[message - kFirstRegistered]);
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%X", message);
    return text.data();
}

}  // namespace test

namespace platform {

using test::describe;
using test::nameOf;
using test::note;
using test::shown;
using test::unit;

void invalidate(Window) {
    note("redraw");
}

void invalidate(Window, const Rect& area) {
    note("redraw %d,%d,%d,%d", area.left, area.top, area.right, area.bottom);
}

void updateWindow(Window) {
    note("update");
}

Rect clientArea(Window) {
    return {0, 0, unit().clientWidth, 480};
}

void placeWindow(Window, int left, int width, int height) {
    unit().clientWidth = width;
    note("place %d,%d,%d", left, width, height);
}

void showWindow(Window, Visible visible) {
    note(visible == Visible::Yes ? "show" : "hide");
}

void bringToFront(Window) {
    note("front");
}

void destroyWindow(Window) {
    note("destroy window");
}

void setTimer(Window, std::uintptr_t id, std::uint32_t milliseconds) {
    note("timer %d %u", static_cast<int>(id), milliseconds);
    unit().timers[id] = {milliseconds, unit().milliseconds + milliseconds};
}

void killTimer(Window, std::uintptr_t id) {
    note("kill %d", static_cast<int>(id));
    unit().timers.erase(id);
}

void capturePointer(Window) {
    note("capture");
}

void releasePointer() {
    note("release");
}

std::uint32_t registerMessage(const char16_t* name) {
    return test::kFirstRegistered +
           static_cast<std::uint32_t>(test::place(test::names(), std::u16string(name)));
}

Window findWindow(const char16_t* title) {
    return unit().windows.contains(title) ? test::windowOf(title) : nullptr;
}

void postMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam) {
    note("post %s %s", nameOf(window).c_str(), describe(message, wParam, lParam).c_str());
    if (window == test::playerWindow()) {
        unit().posted.push_back({message, wParam, lParam});
    }
}

void broadcastMessage(std::uint32_t message, WParam wParam, LParam lParam) {
    note("broadcast %s", describe(message, wParam, lParam).c_str());
}

Answer sendMessage(Window window, std::uint32_t message, WParam wParam, LParam lParam) {
    note("send %s %s", nameOf(window).c_str(), describe(message, wParam, lParam).c_str());
    return 0;
}

void sendValues(Window window, std::uintptr_t identifier, std::span<std::int32_t> values) {
    std::string text;
    for (const std::int32_t value : values) {
        text += (text.empty() ? "" : ",") + std::to_string(value);
    }
    note("values %s %d %s", nameOf(window).c_str(), static_cast<int>(identifier), text.c_str());
}

Answer defaultAnswer(Window, std::uint32_t message, WParam wParam, LParam lParam) {
    note("default %s", describe(message, wParam, lParam).c_str());
    return 77;
}

void postQuit(int exitValue) {
    note("quit %d", exitValue);
}

std::uint32_t tickCount() {
    return unit().milliseconds;
}

LocalTime localTime() {
    return unit().time;
}

void sleep(std::uint32_t milliseconds) {
    note("sleep %u", milliseconds);
    unit().milliseconds += milliseconds;
    test::runOnce(unit().whileSleeping);
}

int showMessageBox(Window owner, const char16_t* text, const char16_t* title, std::uint32_t style,
                   int topmost) {
    note("box %s%u,%d %s%s", owner == test::playerWindow() ? "" : "unowned ", style, topmost,
         *title == u'\0' ? "" : (shown(title) + ": ").c_str(), shown(text).c_str());
    test::runOnce(unit().whileBoxIsOpen);
    return unit().boxAnswer;
}

int showTimedMessageBox(Window owner, const char16_t* text, const char16_t* title,
                        std::uint32_t style, int topmost, std::uint32_t milliseconds) {
    note("timed box %s%u,%d %u ms %s%s", owner == test::playerWindow() ? "" : "unowned ", style,
         topmost, milliseconds, *title == u'\0' ? "" : (shown(title) + ": ").c_str(),
         shown(text).c_str());
    return unit().boxAnswer;
}

void playSound(int sound) {
    note("sound %d", sound);
}

FontHandle createFont(const FontDescription& font) {
    note("font %d weight %d set %d quality %d %s", font.height, font.weight, font.charSet,
         font.quality, shown(font.face).c_str());
    return test::handle<FontHandle>(static_cast<std::uintptr_t>(font.height));
}

void deleteFont(FontHandle font) {
    note("delete font %d", static_cast<int>(reinterpret_cast<std::uintptr_t>(font)));
}

void enterCom() {
    note("enter COM");
}

void leaveCom() {
    note("leave COM");
}

IUnknown* createImagingFactory() {
    note("imaging factory");
    return unit().imagingFactory ? test::handle<IUnknown*>(0x300) : nullptr;
}

void releaseObject(IUnknown* object) {
    note("release %s", object != nullptr ? "object" : "nothing");
}

void startProgram(const char16_t* path) {
    note("program %s", shown(path).c_str());
}

void print(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = test::formatted(format, arguments);
    va_end(arguments);
    if (!unit().quietPrint) {
        note("print %s", text.c_str());
    }
}

void debugPrint(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    note("debug %s", test::formatted(format, arguments).c_str());
    va_end(arguments);
}

}  // namespace platform

namespace settings {

void ReadConnectPath(std::int32_t& connectMode, char16_t (&connectPath)[platform::kPathCapacity]) {
    test::note("read connect path");
    connectMode = test::unit().connectMode;
    connectPath[test::unit().connectPath.copy(connectPath, platform::kPathCapacity - 1)] = u'\0';
}

}  // namespace settings
