// The unit's screen as its user has it: what it shows, the pointer, the keyboard. Over X's own
// protocol and its XTEST extension.
#pragma once

#include <string>

#include "simulator/command/picture.h"
#include "simulator/command/unit.h"

struct xcb_connection_t;

namespace headunit {

enum class Button { Down, Up, Same };

class Screen {
public:
    Screen() = default;
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Finds the screen of a running unit. False with the reason. To be called before the others.
    bool open(const Unit& unit, std::string& why);

    // The 800 x 480 pixels of the screen.
    bool grab(Picture& picture, std::string& why);
    // Moves the pointer to a point of the screen, or of the panel beside it.
    bool point(int x, int y, std::string& why);
    bool press(Button button, std::string& why);
    // Touches go through the window of that title from now on, as X sees it. Nothing when there is
    // none.
    void letThrough(const std::string& title);
    // Presses and releases a key, by its name or as the letter that it types.
    bool key(const std::string& name, std::string& why);

    // The X window, its own display's root included, and where it stands on its display.
    [[nodiscard]] unsigned window() const { return window_; }
    [[nodiscard]] bool isOwn() const { return own_; }
    [[nodiscard]] int left() const { return left_; }
    [[nodiscard]] int top() const { return top_; }

private:
    bool send(int type, int detail, int x, int y);
    // Gives the panel the keyboard, if it is open and nothing of it has it.
    void focusPanel();
    // Until the server has taken everything. False when it is gone.
    bool sync(std::string& why);

    xcb_connection_t* server_ = nullptr;
    unsigned root_ = 0;
    unsigned window_ = 0;
    bool own_ = false;
    int left_ = 0;
    int top_ = 0;
};

// "F2", "Return", "shift+Home", "a", "alt+b"
bool isKeyName(const std::string& name);
std::string keyNames();

// Takes a picture of the screen (800 x 480, PNG). False with the reason.
bool takePicture(const Unit& unit, const fs::path& file, std::string& why);

}  // namespace headunit
