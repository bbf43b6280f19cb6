#include "simulator/filters/caption_parser.h"

#include <algorithm>
#include <span>

#include "platform/wide.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr UINT kKoreanCodePage = 949;

std::u16string decode(UINT codePage, DWORD flags, std::span<const std::uint8_t> bytes) {
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    const auto size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, text, size, nullptr, 0);
    std::u16string out(static_cast<std::size_t>(std::max(length, 0)), u'\0');
    MultiByteToWideChar(codePage, flags, text, size, platform::wide(out.data()), length);
    return out;
}

// UTF-16 and UTF-8 by their byte order marks, what is valid UTF-8, else Korean.
std::u16string decodeFile(std::span<const std::uint8_t> file) {
    if (file.size() >= 2 && file[0] == 0xFF && file[1] == 0xFE) {
        std::u16string out;
        for (std::size_t i = 2; i + 1 < file.size(); i += 2) {
            out.push_back(static_cast<char16_t>(file[i] | file[i + 1] << 8));
        }
        return out;
    }
    if (file.size() >= 3 && file[0] == 0xEF && file[1] == 0xBB && file[2] == 0xBF) {
        return decode(CP_UTF8, 0, file.subspan(3));
    }
    std::u16string out = decode(CP_UTF8, MB_ERR_INVALID_CHARS, file);
    return out.empty() ? decode(kKoreanCodePage, 0, file) : out;
}

}  // namespace

CaptionParser::CaptionParser()
    : BaseFilter(vendor::kCaptionParserClass),
      input_(this, PINDIR_INPUT, L"Input",
             {.takes = ofMajorType(MEDIATYPE_Stream),
              .connected = [this](IPin* peer, const AM_MEDIA_TYPE&) { return readFile(peer); },
              .disconnected = [this] { captions_.clear(); }}),
      output_(this, PINDIR_OUTPUT, L"Output",
              {.takes = ofMajorType(MEDIATYPE_Text),
               .offers = [this] { return offeredTypes(); },
               .finds = [this](REFIID iid) -> void* {
                   return iid == kCaptionTrack ? static_cast<CaptionTrack*>(this) : nullptr;
               }}) {
}

void* CaptionParser::findInterface(REFIID iid) {
    return iid == vendor::kCaptionParserControl ? static_cast<vendor::CaptionParserControl*>(this)
                                                : nullptr;
}

HRESULT CaptionParser::setSubtitleType(DWORD type) {
    if (type > static_cast<DWORD>(SubtitleType::Ssa)) {
        return E_INVALIDARG;
    }
    subtitleType_ = static_cast<SubtitleType>(type);
    return S_OK;
}

HRESULT CaptionParser::setPosition(DWORD a, DWORD b) {
    tape::FilterLine(vendor::kCaptionParserName, L"position").number("start", a).number("end", b);
    return S_OK;
}

HRESULT CaptionParser::readFile(IPin* peer) {
    ComPtr<IAsyncReader> reader;
    LONGLONG total = 0;
    LONGLONG available = 0;
    HRESULT result = peer->QueryInterface(IID_PPV_ARGS(&reader));
    if (FAILED(result) || FAILED(result = reader->Length(&total, &available)) || total <= 0 ||
        total > static_cast<LONGLONG>(kLargestSubtitleFile)) {
        return FAILED(result) ? result : S_OK;  // no captions; the output pin will say so
    }
    std::vector<std::uint8_t> file(static_cast<std::size_t>(total));
    result = reader->SyncRead(0, static_cast<LONG>(total), file.data());
    if (FAILED(result)) {
        return result;
    }
    captions_ = readCaptions(subtitleType_, decodeFile(file));
    tape::FilterLine(vendor::kCaptionParserName, L"captions read")
        .number("count", static_cast<std::int64_t>(captions_.size()));
    return S_OK;
}

TypeList CaptionParser::offeredTypes() const {
    return captions_.empty() ? TypeList() : TypeList{MediaType(MEDIATYPE_Text, GUID_NULL)};
}

const Caption* CaptionParser::at(DWORD milliseconds) {
    const int index = captionAt(captions_, milliseconds);
    return index < 0 ? nullptr : &captions_[static_cast<std::size_t>(index)];
}

}  // namespace filters
