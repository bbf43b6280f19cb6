// Writes every sample into a folder: seeds for the fuzz targets, files for the scripts.
#include <cstdio>
#include <memory>

#include "samples.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: probe_samples FOLDER\n");
        return 2;
    }
    for (const probe_test::Sample& one : probe_test::samples()) {
        const std::string path = std::string(argv[1]) + "/" + one.name;
        const probe_test::Bytes bytes = one.build();
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"),
                                                                   std::fclose);
        if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
            std::fprintf(stderr, "%s cannot be written\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
