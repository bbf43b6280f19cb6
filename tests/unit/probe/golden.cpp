#include "golden.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace probe_test {

bool updateGolden = false;
std::string goldenFolder = PROBE_GOLDEN_FOLDER;

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

bool readText(const std::string& path, std::string& text) {
    File file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) {
        return false;
    }
    char block[4096];
    std::size_t got = 0;
    while ((got = std::fread(block, 1, sizeof block, file.get())) > 0) {
        text.append(block, got);
    }
    return true;
}

std::string writeText(const std::string& path, const std::string& text) {
    File file(std::fopen(path.c_str(), "wb"), std::fclose);
    const bool written =
        file && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    return written ? std::string() : path + " cannot be written";
}

}  // namespace

std::string compareWithGolden(const std::string& name, const std::string& text) {
    const std::string path = goldenFolder + "/" + name + ".txt";
    if (updateGolden) {
        return writeText(path, text);
    }
    std::string golden;
    if (!readText(path, golden)) {
        return path + " is missing; --update-golden writes it";
    }
    return golden == text ? std::string() : path + " differs. Wanted:\n" + golden + "Got:\n" + text;
}

}  // namespace probe_test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--update-golden") == 0) {
            if (std::getenv("CI")) {
                std::fprintf(stderr, "golden files are not rewritten where CI is set\n");
                return 2;
            }
            probe_test::updateGolden = true;
        } else if (std::strncmp(argv[i], "--golden-folder=", 16) == 0) {
            probe_test::goldenFolder = argv[i] + 16;
        } else {
            std::fprintf(stderr, "%s is not an option; known: --update-golden\n", argv[i]);
            return 2;
        }
    }
    return RUN_ALL_TESTS();
}
