// Runs a fuzz target over the files and folders named on the command line: the corpora are
// replayed by every test run, without libFuzzer.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    if (!file) {
        return false;
    }
    std::vector<std::uint8_t> bytes;
    std::uint8_t block[65536];
    std::size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, file.get())) > 0) {
        bytes.insert(bytes.end(), block, block + got);
    }
    // Exactly as large as the file, so that the sanitizers see every read beyond it.
    const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    LLVMFuzzerTestOneInput(copy.get(), bytes.size());
    return true;
}

// Number of files replayed; -1 when the folder cannot be read.
int replayFolder(const std::string& folder) {
    DIR* directory = opendir(folder.c_str());
    if (!directory) {
        return -1;
    }
    int count = 0;
    while (const dirent* entry = readdir(directory)) {
        const std::string path = folder + "/" + entry->d_name;
        struct stat status {};
        if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && replay(path)) {
            ++count;
        }
    }
    closedir(directory);
    return count;
}

}  // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const int files = replayFolder(argv[i]);
        if (files < 0) {
            std::fprintf(stderr, "%s cannot be read\n", argv[i]);
            return 2;
        }
        count += files;
    }
    std::printf("%d files replayed\n", count);
    return count > 0 ? 0 : 1;
}
