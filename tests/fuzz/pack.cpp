// pack FROM TO: writes every file of the folder FROM into the folder TO, packed.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/packed.h"

namespace fs = std::filesystem;

namespace {

// False when it cannot be read or written, or would be another file when it is unpacked.
bool packFile(const fs::path& from, const fs::path& to) {
    std::ifstream in(from, std::ios::binary);
    const std::vector<char> text{std::istreambuf_iterator<char>(in), {}};
    const std::vector<std::uint8_t> file(text.begin(), text.end());
    const auto packed = fuzz::pack(file);
    std::vector<std::uint8_t> again;
    fuzz::unpack(packed, file.size() + 1, again);
    const std::vector<char> bytes(packed.begin(), packed.end());
    std::ofstream out(to, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return in.good() && out.flush().good() && again == file;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: pack FROM TO\n");
        return 2;
    }
    std::error_code error;
    fs::create_directories(argv[2], error);
    for (const auto& entry : fs::directory_iterator(argv[1], error)) {
        if (!packFile(entry.path(), argv[2] / entry.path().filename())) {
            std::fprintf(stderr, "%s cannot be packed\n", entry.path().c_str());
            return 1;
        }
    }
    return error ? 1 : 0;
}
