// Fuzz target: a file whose codec is told from its headers. Reads count, not only bytes: a medium
// answers each of them.
#include <cstdlib>

#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/codec_sniffer.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

class Counted final : public platform::ReadOnlyFile {
public:
    explicit Counted(std::span<const std::uint8_t> bytes) : file_(platform::openMemory(bytes)) {}
    bool size(std::uint64_t& bytes) override { return file_->size(bytes); }
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> out, std::size_t& read) override {
        ++reads;
        bytesAsked += out.size();
        return file_->readAt(offset, out, read);
    }

    std::uint64_t reads = 0, bytesAsked = 0;

private:
    std::unique_ptr<platform::ReadOnlyFile> file_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Elements of a container have a limit, and each costs four reads at most; the probe's own
    // limit holds for what the probe reads.
    constexpr std::uint64_t kMostReads = 4 * 4096 + 64;
    constexpr std::uint64_t kLargestRead = 64 << 10;
    Counted file({data, size});
    const std::uint32_t codec = filters::sniffVideoCodec(file);
    require(file.reads <= kMostReads);
    require(file.bytesAsked <= 5 * std::uint64_t{size} + 16 * kLargestRead + 32 * kMostReads);
    // Asked again it says the same, and whatever it says the chip has an answer.
    require(filters::sniffVideoCodec(file) == codec);
    require(codec != 0 || !filters::chipDecodes(codec));
    file.reads = 0;
    const bool lacksIndex = filters::lacksIndex(file);
    require(file.reads <= kMostReads);
    // An index that the file's end cuts off is missing, even where the codec stood before it.
    require(!lacksIndex || size >= 16);
    return 0;
}
