#include "simulator/command/screen.h"

#include <xcb/shape.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "simulator/command/display.h"

namespace headunit {
namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;
template <typename Reply>
Owned<Reply> own(Reply* reply) {
    return {reply, &std::free};
}

struct KeyName {
    const char* name;
    unsigned symbol;  // X11's keysymdef.h
};
constexpr KeyName kKeys[] = {
    {"Tab", 0xFF09},    {"Return", 0xFF0D}, {"Escape", 0xFF1B}, {"BackSpace", 0xFF08},
    {"Delete", 0xFFFF}, {"Insert", 0xFF63}, {"Home", 0xFF50},   {"End", 0xFF57},
    {"Left", 0xFF51},   {"Up", 0xFF52},     {"Right", 0xFF53},  {"Down", 0xFF54},
    {"Prior", 0xFF55},  {"Next", 0xFF56},   {"space", 0x20},    {"F1", 0xFFBE},
    {"F2", 0xFFBF},     {"F3", 0xFFC0},     {"F4", 0xFFC1},     {"F5", 0xFFC2},
    {"F6", 0xFFC3},     {"F7", 0xFFC4},     {"F8", 0xFFC5},     {"F9", 0xFFC6},
    {"F10", 0xFFC7},    {"F11", 0xFFC8},    {"F12", 0xFFC9},
};
constexpr KeyName kModifiers[] = {{"shift", 0xFFE1}, {"ctrl", 0xFFE3}, {"alt", 0xFFE9}};

// The symbols of "alt+b", the key's own last; empty when it is no key.
std::vector<unsigned> symbolsOf(const std::string& name) {
    std::vector<unsigned> symbols;
    std::string rest = name;
    for (auto plus = rest.find('+'); plus != std::string::npos && rest.size() > 1;
         plus = rest.find('+')) {
        for (const KeyName& modifier : kModifiers) {
            if (rest.substr(0, plus) == modifier.name) {
                symbols.push_back(modifier.symbol);
            }
        }
        if (symbols.empty()) {
            return {};
        }
        rest.erase(0, plus + 1);
    }
    for (const KeyName& key : kKeys) {
        if (rest == key.name) {
            symbols.push_back(key.symbol);
            return symbols;
        }
    }
    if (rest.size() == 1 && rest[0] > ' ' && rest[0] <= '~') {
        symbols.push_back(static_cast<unsigned char>(rest[0]));
        return symbols;
    }
    return {};
}

struct KeyPlace {
    xcb_keycode_t code = 0;
    bool shifted = false;
};

KeyPlace placeOf(xcb_connection_t* server, unsigned symbol) {
    const xcb_setup_t* setup = xcb_get_setup(server);
    const int first = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
    const auto mapping = own(xcb_get_keyboard_mapping_reply(
        server, xcb_get_keyboard_mapping(server, setup->min_keycode, count), nullptr));
    if (!mapping) {
        return {};
    }
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int column = 0; column < 2; ++column) {
        for (int i = 0; i < count; ++i) {
            if (symbols[i * mapping->keysyms_per_keycode + column] == symbol) {
                return {static_cast<xcb_keycode_t>(first + i), column == 1};
            }
        }
    }
    return {};
}

// The window of that title, or one below it that has it; 0 when there is none.
unsigned findTitled(xcb_connection_t* server, unsigned window, const std::string& title) {
    const auto name = own(xcb_get_property_reply(
        server,
        xcb_get_property(server, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 64),
        nullptr));
    if (name) {
        const std::string text(static_cast<const char*>(xcb_get_property_value(name.get())),
                               static_cast<std::size_t>(xcb_get_property_value_length(name.get())));
        if (text.find(title) != std::string::npos) {
            return window;
        }
    }
    const auto tree = own(xcb_query_tree_reply(server, xcb_query_tree(server, window), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const unsigned found = findTitled(server, xcb_query_tree_children(tree.get())[i], title);
        if (found != 0) {
            return found;
        }
    }
    return 0;
}

}  // namespace

Screen::~Screen() {
    if (server_ != nullptr) {
        xcb_disconnect(server_);
    }
}

bool Screen::open(const Unit& unit, std::string& why) {
    if (!isRunning(unit)) {
        why = noUnit(unit);
        return false;
    }
    server_ = xcb_connect(readRunFile(unit, "display").c_str(), nullptr);
    if (xcb_connection_has_error(server_) != 0) {
        why = "the unit's display does not answer; is the display still there?";
        return false;
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
    own_ = !readRunFile(unit, "xvfb.pid").empty();
    window_ = own_ ? root_ : findTitled(server_, root_, unit.desktopName());
    if (window_ == 0) {
        why = noUnit(unit);
        return false;
    }
    const auto place = own(xcb_translate_coordinates_reply(
        server_, xcb_translate_coordinates(server_, window_, root_, 0, 0), nullptr));
    left_ = place ? place->dst_x : 0;
    top_ = place ? place->dst_y : 0;
    return true;
}

bool Screen::sync(std::string& why) {
    const bool good =
        own(xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr)) != nullptr;
    if (!good) {
        why = "the unit's display has gone; is the display still there?";
    }
    return good;
}

bool Screen::send(int type, int detail, int x, int y) {
    return xcb_test_fake_input(server_, static_cast<std::uint8_t>(type),
                               static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, root_,
                               static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0)
               .sequence != 0;
}

bool Screen::point(int x, int y, std::string& why) {
    return send(XCB_MOTION_NOTIFY, 0, left_ + x, top_ + y) && sync(why);
}

bool Screen::press(Button button, std::string& why) {
    return button == Button::Same ||
           (send(button == Button::Down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1, 0, 0) &&
            sync(why));
}

// An input shape without a rectangle.
void Screen::letThrough(const std::string& title) {
    if (const unsigned window = findTitled(server_, window_, title); window != 0) {
        xcb_shape_rectangles(server_, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0, nullptr);
        std::string unused;
        sync(unused);
    }
}

// As if the panel had been clicked: the player's windows take the display's focus with them
// whenever they come to the front, and a key that is on its way to them while they do may get lost.
void Screen::focusPanel() {
    constexpr char kPanelTitle[] = "Head unit";
    const unsigned panel = findTitled(server_, window_, kPanelTitle);
    const auto now = own(xcb_get_input_focus_reply(server_, xcb_get_input_focus(server_), nullptr));
    // The upper bits tell whose a window is: a box of the panel's keeps the focus.
    const unsigned owner = ~xcb_get_setup(server_)->resource_id_mask;
    if (panel != 0 && now && (now->focus & owner) != (panel & owner)) {
        xcb_set_input_focus(server_, XCB_INPUT_FOCUS_PARENT, panel, XCB_CURRENT_TIME);
    }
}

bool Screen::key(const std::string& name, std::string& why) {
    focusPanel();
    std::vector<KeyPlace> held;
    for (const unsigned symbol : symbolsOf(name == " " ? "space" : name)) {
        const KeyPlace place = placeOf(server_, symbol);
        if (place.code == 0) {
            why = "the keyboard of the display has no key \"" + name + "\"";
            return false;
        }
        if (place.shifted) {
            held.push_back(placeOf(server_, kModifiers[0].symbol));
        }
        held.push_back(place);
    }
    for (const KeyPlace& place : held) {
        send(XCB_KEY_PRESS, place.code, 0, 0);
    }
    for (auto place = held.rbegin(); place != held.rend(); ++place) {
        send(XCB_KEY_RELEASE, place->code, 0, 0);
    }
    return sync(why);
}

bool Screen::grab(Picture& picture, std::string& why) {
    const auto image =
        own(xcb_get_image_reply(server_,
                                xcb_get_image(server_, XCB_IMAGE_FORMAT_Z_PIXMAP, window_, 0, 0,
                                              kScreenWidth, kScreenHeight, ~0U),
                                nullptr));
    constexpr int kPixels = kScreenWidth * kScreenHeight;
    if (!image || xcb_get_image_data_length(image.get()) != 4 * kPixels) {
        why = "there is no picture of the screen; is its window covered or the display gone?";
        return false;
    }
    const std::uint8_t* from = xcb_get_image_data(image.get());  // blue, green, red, nothing
    picture = {kScreenWidth, kScreenHeight, std::vector<std::uint8_t>(3 * kPixels)};
    for (std::size_t i = 0; i < kPixels; ++i) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            picture.bytes[3 * i + channel] = from[4 * i + 2 - channel];
        }
    }
    return true;
}

bool isKeyName(const std::string& name) {
    return !symbolsOf(name).empty();
}

std::string keyNames() {
    std::string names;
    for (const KeyName& key : kKeys) {
        names += std::string(key.name) + ", ";
    }
    return names + "a letter, or one of these behind shift+, ctrl+ or alt+";
}

bool takePicture(const Unit& unit, const fs::path& file, std::string& why) {
    Screen screen;
    Picture picture;
    if (!screen.open(unit, why) || !screen.grab(picture, why)) {
        return false;
    }
    why = "the picture could not be written to " + file.string();
    return writePicture(picture, {0, 0, kScreenWidth, kScreenHeight}, file);
}

}  // namespace headunit
