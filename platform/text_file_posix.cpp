// Bytes are taken as characters one by one, as the device's runtime does in its "C" locale, so
// that what is read is written back unchanged.
#include <string>

#include "platform/host_path.h"
#include "platform/text_file.h"

namespace platform {

TextReader::TextReader(const char16_t* path) : file_(std::fopen(hostPath(path).c_str(), "r")) {
}

TextReader::~TextReader() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool TextReader::next(char16_t& character) {
    int read = std::fgetc(file_);
    if (read == '\r') {
        const int following = std::fgetc(file_);
        if (following == '\n') {
            read = following;
        } else if (following != EOF) {
            std::ungetc(following, file_);
        }
    }
    character = static_cast<char16_t>(read);
    return read != EOF;
}

bool writeTextFile(const char16_t* path, std::initializer_list<std::u16string_view> parts) {
    std::string bytes;
    for (const std::u16string_view part : parts) {
        for (const char16_t character : part) {
            if (character == u'\n') {
                bytes += '\r';
            }
            bytes += static_cast<char>(character & 0xFF);
        }
    }
    std::FILE* const file = std::fopen(hostPath(path).c_str(), "w");
    if (file == nullptr) {
        return false;
    }
    std::setvbuf(file, nullptr, _IONBF, 0);  // the block goes to the system as it is
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

}  // namespace platform
