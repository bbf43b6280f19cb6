// The least that looking at files costs: opens each name that standard input lists, one a line,
// reads its first 4 KiB and closes it again. Prints nothing but the number of bytes.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>

int main() {
    std::ios::sync_with_stdio(false);
    static char block[4096];
    long long bytes = 0;
    for (std::string name; std::getline(std::cin, name);) {
        const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0) {
            std::perror(name.c_str());
            return 1;
        }
        const ssize_t got = pread(file, block, sizeof block, 0);
        bytes += got > 0 ? got : 0;
        close(file);
    }
    std::printf("%lld\n", bytes);
    return 0;
}
