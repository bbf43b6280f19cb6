// Waits until one pixel of an X display has a colour: `first_colour X Y RRGGBB SECONDS`. Prints the
// moment in milliseconds by the clock that Wine's tick count follows and by the time of day, or
// "never". The display is asked a thousand times a second.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Of each component: players take an unmarked recording for one standard of colours or the other.
constexpr int kTolerance = 64;

double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

bool alike(unsigned long pixel, unsigned long wanted) {
    for (int shift = 0; shift < 24; shift += 8) {
        const int difference =
            static_cast<int>(pixel >> shift & 255) - static_cast<int>(wanted >> shift & 255);
        if (std::abs(difference) > kTolerance) {
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    Display* display = count == 5 ? XOpenDisplay(nullptr) : nullptr;
    if (!display) {
        std::fputs("usage: first_colour X Y RRGGBB SECONDS, with DISPLAY set\n", stderr);
        return 2;
    }
    const int x = std::atoi(arguments[1]);
    const int y = std::atoi(arguments[2]);
    const unsigned long wanted = std::strtoul(arguments[3], nullptr, 16);
    const double end = milliseconds(CLOCK_MONOTONIC_RAW) + 1e3 * std::atof(arguments[4]);
    while (milliseconds(CLOCK_MONOTONIC_RAW) < end) {
        XImage* image =
            XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
        const bool found = image && alike(XGetPixel(image, 0, 0), wanted);
        if (image) {
            XDestroyImage(image);
        }
        if (found) {
            std::printf("%.1f %.1f\n", milliseconds(CLOCK_MONOTONIC_RAW),
                        milliseconds(CLOCK_REALTIME));
            return 0;
        }
        usleep(1000);
    }
    std::puts("never");
    return 1;
}
