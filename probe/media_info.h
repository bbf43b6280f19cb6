// The object that owns a file while the probe looks at it, and what was found. Used once: create,
// Open, read the fields, destroy. One thread; blocks while it reads.
#pragma once

#include <memory>

#include "platform/file.h"
#include "probe/record/media_record.h"

namespace probe {

class MediaInfo : public MediaRecord {
public:
    MediaInfo() = default;
    MediaInfo(const MediaInfo&) = delete;
    MediaInfo& operator=(const MediaInfo&) = delete;

    // Closes the file if one is still held.
    virtual ~MediaInfo() = default;

    // Opens `path` (zero-terminated UTF-16), probes it and closes it again. Returns kOk when the
    // file could be opened, whatever was found in it; otherwise the Windows error as a result
    // code (0x80070002 when there is no such file), with the record as it was.
    virtual Result Open(const char16_t* path);

    // Offers an open file to the recognisers in their fixed order. Returns 1 when one claimed it
    // (the outcome of its parser is in `status`), 0 when none did.
    virtual Result Probe(platform::ReadOnlyFile& file);

    std::unique_ptr<platform::ReadOnlyFile> fileHandle;  // held only inside Open
};

}  // namespace probe
