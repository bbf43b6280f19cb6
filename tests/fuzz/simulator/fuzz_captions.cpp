// Fuzz target: the input's first byte is the type of a subtitle file, the rest its text in UTF-16.
#include <cstdlib>
#include <cstring>

#include "simulator/filters/captions/caption_text.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool isBlank(char16_t c) {
    return c <= u' ' || c == 0xA0;
}

void requireSound(const std::vector<filters::Caption>& captions) {
    std::uint32_t earlier = 0;
    for (const filters::Caption& caption : captions) {
        require(caption.start >= earlier && caption.start < caption.end);
        require(!caption.text.empty() && caption.text.size() <= filters::kLongestCaption);
        require(!isBlank(caption.text.front()));
        earlier = caption.start;
        const int shown = filters::captionAt(captions, caption.start);
        require(shown >= 0 && captions[static_cast<std::size_t>(shown)].start == caption.start);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::u16string file((size - 1) / sizeof(char16_t), u'\0');
    std::memcpy(file.data(), data + 1, file.size() * sizeof(char16_t));
    const auto captions =
        filters::readCaptions(static_cast<filters::SubtitleType>(data[0] % 5), file);
    require(captions.size() <= filters::kMostCaptions && captions.size() <= file.size());
    requireSound(captions);
    // No letter of the file is shown twice; a line break takes the place of a tag.
    std::size_t shown = 0;
    for (const filters::Caption& caption : captions) {
        shown += caption.text.size();
    }
    require(shown <= file.size());
    require(captions.empty() || filters::captionAt(captions, captions.front().start - 1) == -1 ||
            captions.front().start == 0);
    return 0;
}
