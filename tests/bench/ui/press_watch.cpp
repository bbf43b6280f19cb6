// How long from the button's press to the pressed face on screen, for two places of one display in
// turn: `press_watch ROUNDS NAME X Y PIXEL_X PIXEL_Y RELEASE_X RELEASE_Y NAME X Y ...`.
// The pointer is the display's own (XTEST, as xdotool uses it). A round presses at X, Y, asks for
// the pixel until it has the pressed colour, moves to RELEASE, lets go and waits until it has its
// old colour again. Prints the medians, the quartiles, and the first place's ratio to the second.
// Exit status 1 when a face did not show within two seconds.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <dlfcn.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr unsigned long kPressedColour = 0xFFB020;
constexpr double kPatience = 2000;  // milliseconds
constexpr useconds_t kPause = 100;  // microseconds between two looks at the pixel

// libXtst comes with xdotool; its header does not.
using FakeMotion = int (*)(Display*, int screen, int x, int y, unsigned long delay);
using FakeButton = int (*)(Display*, unsigned button, int isPress, unsigned long delay);

struct Pointer {
    Display* display;
    FakeMotion motion;
    FakeButton button;
};

struct Place {
    const char* name;
    int x, y, pixelX, pixelY, releaseX, releaseY;
    std::vector<double> took;
};

double nowMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

unsigned long pixelOf(Display* display, const Place& place) {
    XImage* image = XGetImage(display, DefaultRootWindow(display), place.pixelX, place.pixelY, 1, 1,
                              AllPlanes, ZPixmap);
    if (!image) {
        return 0;
    }
    const unsigned long pixel = XGetPixel(image, 0, 0) & 0xFFFFFF;
    XDestroyImage(image);
    return pixel;
}

// Milliseconds until the pixel has that colour, or below 0.
double waitFor(Display* display, const Place& place, unsigned long colour, double start) {
    for (;;) {
        const bool reached = pixelOf(display, place) == colour;
        const double passed = nowMilliseconds() - start;
        if (reached) {
            return passed;
        }
        if (passed > kPatience) {
            return -1;
        }
        usleep(kPause);
    }
}

bool pressOnce(const Pointer& pointer, Place& place, useconds_t rest) {
    pointer.motion(pointer.display, -1, place.x, place.y, 0);
    XSync(pointer.display, False);
    usleep(40000 + rest);
    const unsigned long before = pixelOf(pointer.display, place);
    if (before == kPressedColour) {
        std::fprintf(stderr, "press_watch: %s is held before it is pressed\n", place.name);
        return false;
    }
    const double start = nowMilliseconds();
    pointer.button(pointer.display, 1, True, 0);
    XFlush(pointer.display);
    const double took = waitFor(pointer.display, place, kPressedColour, start);
    usleep(40000);
    pointer.motion(pointer.display, -1, place.releaseX, place.releaseY, 0);
    pointer.button(pointer.display, 1, False, 0);
    XFlush(pointer.display);
    const bool released = waitFor(pointer.display, place, before, nowMilliseconds()) >= 0;
    if (took < 0 || !released) {
        std::fprintf(stderr, "press_watch: %s did not %s\n", place.name,
                     took < 0 ? "show that it is pressed" : "let go");
        return false;
    }
    place.took.push_back(took);
    return true;
}

double quantile(std::vector<double>& values, std::size_t quarters) {
    std::ranges::sort(values);
    return values[values.size() * quarters / 4];
}

int measure(const Pointer& pointer, std::vector<Place>& places, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        // The rest before a press wanders, so that no beat of the picture is always met or missed.
        const auto rest = static_cast<useconds_t>(round * 7919 % 33000);
        for (Place& place : places) {
            if (!pressOnce(pointer, place, rest)) {
                return 1;
            }
        }
    }
    for (Place& place : places) {
        std::printf("%s %.2f ms (%.2f to %.2f), ", place.name, quantile(place.took, 2),
                    quantile(place.took, 1), quantile(place.took, 3));
    }
    std::printf("ratio %.2f\n", quantile(places[0].took, 2) / quantile(places[1].took, 2));
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc == 16 ? std::atoi(argv[1]) : 0;
    if (rounds < 1) {
        std::fputs("usage: press_watch ROUNDS (NAME X Y PIXEL_X PIXEL_Y RELEASE_X RELEASE_Y)*2\n",
                   stderr);
        return 2;
    }
    void* library = dlopen("libXtst.so.6", RTLD_NOW);
    Pointer pointer = {XOpenDisplay(nullptr), nullptr, nullptr};
    if (!library || !pointer.display) {
        std::fputs("press_watch: needs DISPLAY and libXtst, which comes with xdotool\n", stderr);
        return 1;
    }
    pointer.motion = reinterpret_cast<FakeMotion>(dlsym(library, "XTestFakeMotionEvent"));
    pointer.button = reinterpret_cast<FakeButton>(dlsym(library, "XTestFakeButtonEvent"));
    std::vector<Place> places;
    for (char** word = argv + 2; word < argv + 16; word += 7) {
        const auto number = [&](int i) { return std::atoi(word[i]); };
        places.push_back(
            {word[0], number(1), number(2), number(3), number(4), number(5), number(6), {}});
    }
    const int status = measure(pointer, places, rounds);
    XCloseDisplay(pointer.display);
    return status;
}
