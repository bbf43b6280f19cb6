#include "others.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#include <MediaInfo/MediaInfo.h>
#include <fileref.h>
#pragma GCC diagnostic pop

#include <string>

bool openWithLibavformat(const char* path) {
    AVFormatContext* context = nullptr;
    if (avformat_open_input(&context, path, nullptr, nullptr) < 0) {
        return false;
    }
    const bool found = avformat_find_stream_info(context, nullptr) >= 0;
    avformat_close_input(&context);
    return found;
}

bool openWithMediaInfoLib(const char* path) {
    MediaInfoLib::MediaInfo info;
    const std::string name(path);
    const bool opened = info.Open(std::wstring(name.begin(), name.end())) != 0;
    info.Close();
    return opened;
}

bool openWithTagLib(const char* path) {
    const TagLib::FileRef file(path);
    return !file.isNull() && file.audioProperties() != nullptr;
}

void silenceOthers() {
    av_log_set_level(AV_LOG_QUIET);
}
