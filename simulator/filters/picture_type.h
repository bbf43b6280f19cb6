// What a decoded picture looks like in memory, read from its media type.
#pragma once

#include <dshow.h>

#include "simulator/filters/picture/picture_format.h"

namespace filters {

// Whether pictures of this type can be shown; if so, `*format` (may be null) describes them. The
// sizes are limited to 8192 x 8192.
bool readPictureFormat(const AM_MEDIA_TYPE& type, PictureFormat* format);

}  // namespace filters
