#include "simulator/filters/null_decoder.h"

#include <algorithm>

#include "simulator/filters/class_ids.h"
#include "simulator/filters/codecs/chip_codecs.h"

namespace filters {

namespace {

constexpr DWORD kPictures = packFourcc('I', '4', '2', '0');

// What is decoded already needs no decoder.
bool isCompressedVideo(const AM_MEDIA_TYPE& type) {
    const GUID decoded[] = {GUID_NULL,
                            MEDIASUBTYPE_RGB32,
                            MEDIASUBTYPE_RGB24,
                            MEDIASUBTYPE_RGB565,
                            MEDIASUBTYPE_RGB555,
                            MEDIASUBTYPE_ARGB32,
                            subtypeOfFourcc(kPictures),
                            subtypeOfFourcc(packFourcc('Y', 'V', '1', '2')),
                            subtypeOfFourcc(packFourcc('N', 'V', '1', '2'))};
    return type.majortype == MEDIATYPE_Video &&
           std::ranges::find(decoded, type.subtype) == std::end(decoded);
}

}  // namespace

NullDecoder::NullDecoder()
    : BaseFilter(kNullVideoDecoderClass),
      input_(this, PINDIR_INPUT, L"Input",
             {.takes = &isCompressedVideo,
              .endOfStream =
                  [this] { return output_.peer() ? output_.peer()->EndOfStream() : S_OK; }}),
      output_(
          this, PINDIR_OUTPUT, L"Output",
          {.takes =
               [](const AM_MEDIA_TYPE& type) { return type.subtype == subtypeOfFourcc(kPictures); },
           .offers = [] { return TypeList{videoType(kPictures, 320, 240)}; }}) {
}

}  // namespace filters
