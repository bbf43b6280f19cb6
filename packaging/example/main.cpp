// Tells the size and the length of a film.
#include <probe/media_info.h>

#include <cstdio>
#include <filesystem>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: example FILE\n", stderr);
        return 2;
    }
    probe::MediaInfo info;
    if (info.Open(std::filesystem::path(argv[1]).u16string().c_str()) != probe::kOk) {
        std::fprintf(stderr, "%s cannot be opened\n", argv[1]);
        return 1;
    }
    std::printf("%u x %u, %u s\n", info.videoWidth, info.videoHeight, info.durationSeconds);
    return 0;
}
