// Watches a small area of an X display and tells when it changes: `screen_watch X Y W H SECONDS`.
// Prints one line, all times in milliseconds since the start of the program:
//   first=T   the first change
//   changes=N the number of changes
//   span=T    from the first to the last change
//   gap=T     the longest standstill that began later than a second after the first change
//   gap1=T    the longest standstill within that first second
// The display is asked 250 times a second for the few pixels, which costs it under 1 % of a core.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

double nowMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// FNV-1a over the area's pixels; 0 when the display does not answer.
std::uint64_t areaHash(Display* display, int x, int y, unsigned width, unsigned height) {
    XImage* image =
        XGetImage(display, DefaultRootWindow(display), x, y, width, height, AllPlanes, ZPixmap);
    if (!image) {
        return 0;
    }
    std::uint64_t hash = 14695981039346656037u;
    const int bytes = image->bytes_per_line * image->height;
    for (int i = 0; i < bytes; ++i) {
        hash = (hash ^ static_cast<unsigned char>(image->data[i])) * 1099511628211u;
    }
    XDestroyImage(image);
    return hash;
}

void report(const std::vector<double>& changes) {
    double gap = 0;
    double early = 0;
    for (std::size_t i = 1; i < changes.size(); ++i) {
        const double pause = changes[i] - changes[i - 1];
        double& longest = changes[i - 1] - changes[0] >= 1000 ? gap : early;
        longest = std::max(longest, pause);
    }
    std::printf("first=%.0f changes=%zu span=%.0f gap=%.0f gap1=%.0f\n",
                changes.empty() ? -1.0 : changes.front(), changes.size(),
                changes.empty() ? 0.0 : changes.back() - changes.front(), gap, early);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fprintf(stderr, "usage: screen_watch X Y W H SECONDS\n");
        return 2;
    }
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "screen_watch: no display; set DISPLAY\n");
        return 1;
    }
    const int x = std::atoi(argv[1]);
    const int y = std::atoi(argv[2]);
    const auto width = static_cast<unsigned>(std::atoi(argv[3]));
    const auto height = static_cast<unsigned>(std::atoi(argv[4]));
    const double start = nowMilliseconds();
    const double end = std::atof(argv[5]) * 1000;
    std::vector<double> changes;
    std::uint64_t last = areaHash(display, x, y, width, height);
    for (double now = 0; now < end; now = nowMilliseconds() - start) {
        const std::uint64_t hash = areaHash(display, x, y, width, height);
        if (hash != last) {
            last = hash;
            changes.push_back(nowMilliseconds() - start);
        }
        usleep(4000);
    }
    report(changes);
    XCloseDisplay(display);
    return 0;
}
