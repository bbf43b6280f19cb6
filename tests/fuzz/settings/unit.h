// A unit's file system for one fuzz target: a folder of the host that goes away with the process.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "platform/host_path.h"

namespace fuzz {

// What must hold whatever the input.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

class Unit {
public:
    Unit() {
        std::string folder = (std::filesystem::temp_directory_path() / "fuzz.XXXXXX").string();
        require(mkdtemp(folder.data()) != nullptr);
        root_ = folder;
        std::filesystem::create_directories(root_ / "ResidentFlash2" / "Data");
        platform::setUnitRoot(folder);
    }
    ~Unit() { std::filesystem::remove_all(root_); }
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;

    void put(const char* name, std::span<const std::uint8_t> bytes) const {
        const File file(std::fopen((root_ / name).c_str(), "wb"), std::fclose);
        require(file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size());
    }

    std::string contents(const char* name) const {
        const File file(std::fopen((root_ / name).c_str(), "rb"), std::fclose);
        require(file != nullptr);
        std::string bytes;
        char block[4096];
        std::size_t got = 0;
        while ((got = std::fread(block, 1, sizeof block, file.get())) > 0) {
            bytes.append(block, got);
        }
        return bytes;
    }

private:
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    std::filesystem::path root_;
};

}  // namespace fuzz
