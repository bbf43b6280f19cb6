// A process may end in the middle of playing, with threads of the media library at work and
// waiting: it ends at once and with its own exit value. The test is the exit itself. Argument: that
// value.
#include <objbase.h>

#include <cstdlib>

#include "tests/device/filters/player_window.h"

int main(int count, char** words) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    test::PlayerWindow player;
    test::Graph graph(player);
    const bool plays = graph.render(test::clip(L"h264.avi")) == S_OK && graph.run() &&
                       player.wait(10'000, [&] { return graph.position() > 0; });
    std::exit(!plays ? 1 : count > 1 ? std::atoi(words[1]) : 0);  // the graph is not taken down
}
