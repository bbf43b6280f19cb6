#include "simulator/filters/demux_filter.h"

#include "simulator/filters/class_ids.h"
#include "simulator/filters/codecs/chip_codecs.h"
#include "simulator/filters/codecs/codec_sniffer.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

std::atomic<bool> fileRefused = false;

}  // namespace

void DemuxFilter::expectFile() {
    fileRefused = false;
}

DemuxFilter::DemuxFilter()
    : BaseFilter(kDemuxClass),
      input_(this, PINDIR_INPUT, L"Input",
             {.takes = ofMajorType(MEDIATYPE_Stream),
              .connected = [this](IPin* file,
                                  const AM_MEDIA_TYPE& type) { return openFile(file, type); },
              .disconnected = [this] { closeFile(); }}),
      undecoded_(this, PINDIR_OUTPUT, L"Video",
                 {.takes = ofMajorType(MEDIATYPE_Video),
                  .offers = [this] { return TypeList{videoType(codec_, 0, 0)}; }}) {
    splitter_.make();
}

DemuxFilter::~DemuxFilter() {
    length_.stop();
    splitter_.release();
}

void* DemuxFilter::findInterface(REFIID iid) {
    if (void* const own = findFace(
            iid, {{vendor::kDemuxValues, static_cast<vendor::DemuxValues*>(this)},
                  {vendor::kDemuxOptions, static_cast<vendor::DemuxOptions*>(this)},
                  {vendor::kAudioStreams, static_cast<vendor::AudioStreams*>(this)},
                  {vendor::kAudioStreamSelection, static_cast<vendor::AudioStreamSelection*>(this)},
                  {vendor::kFilterStatus, static_cast<vendor::FilterStatus*>(this)},
                  {vendor::kOwnerWindow, static_cast<vendor::OwnerWindow*>(this)}})) {
        return own;
    }
    void* const found = splitter_.query(iid);
    if (found) {
        Release();  // the caller counts
    }
    return found;
}

std::vector<StreamPin*> DemuxFilter::streamsOf(const GUID& majorType) {
    std::vector<StreamPin*> found;
    for (const auto& stream : streams_) {
        if (stream->majorType() == majorType) {
            found.push_back(stream.get());
        }
    }
    return found;
}

PinList DemuxFilter::pins() {
    PinList all = {ComPtr<IPin>(&input_)};
    if (!open_) {
        return all;
    }
    if (!tape::fault(L"NoVideoRenderer")) {
        if (chipLacksCodec_) {
            all.push_back(ComPtr<IPin>(&undecoded_));
        } else {
            for (StreamPin* stream : streamsOf(MEDIATYPE_Video)) {
                all.push_back(ComPtr<IPin>(stream));
            }
        }
    }
    if (!tape::fault(L"NoAudioRenderer")) {
        for (StreamPin* stream : streamsOf(MEDIATYPE_Audio)) {
            all.push_back(ComPtr<IPin>(stream));
        }
    }
    return all;
}

HRESULT DemuxFilter::openFile(IPin* file, const AM_MEDIA_TYPE& type) {
    HRESULT result = fileRefused ? VFW_E_INVALID_FILE_FORMAT : reader_.attach(file);
    if (FAILED(result)) {
        return result;
    }
    tape::FilterLine(vendor::kDemuxName, L"opening");
    codec_ = sniffVideoCodec(reader_);
    chipLacksCodec_ = codec_ && (!chipDecodes(codec_) || tape::fault(L"NullDecoder"));
    // GStreamer's demuxer never finishes with a file without its index.
    result = lacksIndex(reader_) ? VFW_E_INVALID_FILE_FORMAT : splitter_.open(type);
    open_ = SUCCEEDED(result);
    fileRefused = !open_;
    tape::FilterLine(vendor::kDemuxName, open_ ? L"opened" : L"refused");
    if (open_) {
        for (const ComPtr<IPin>& pin : splitter_.outputs()) {
            streams_.push_back(std::make_unique<StreamPin>(this, this, pin.Get()));
        }
        selectStream(0);
    } else {
        reader_.detach();
    }
    return result == VFW_E_TIMEOUT ? VFW_E_INVALID_FILE_FORMAT : result;
}

void DemuxFilter::closeFile() {
    splitter_.close();
    reader_.detach();
    open_ = false;
    retireStreams();
}

// Somebody may still hold one of the pins: they live as long as the filter.
void DemuxFilter::retireStreams() {
    for (auto& stream : streams_) {
        stream->stayAlone();
        retired_.push_back(std::move(stream));
    }
    streams_.clear();
}

HRESULT DemuxFilter::valueA(DWORD* value) {
    const auto decoded = static_cast<DWORD>(streamsOf(MEDIATYPE_Video).size());
    *value = chipLacksCodec_ && !decoded ? 1 : decoded;
    return S_OK;
}

HRESULT DemuxFilter::streamCount(DWORD* count) {
    *count = 0;
    if (tape::fault(L"NotConnectedAudio")) {
        return VFW_E_NOT_CONNECTED;
    }
    return tape::fault(L"NoAudioRenderer") ? S_OK : valueB(count);
}

HRESULT DemuxFilter::currentStream(DWORD* index) {
    *index = audioStream_;
    return tape::fault(L"NotConnectedAudio") ? VFW_E_NOT_CONNECTED : S_OK;
}

HRESULT DemuxFilter::selectStream(DWORD index) {
    const std::vector<StreamPin*> audio = streamsOf(MEDIATYPE_Audio);
    if (index >= audio.size()) {
        return E_INVALIDARG;
    }
    for (std::size_t i = 0; i < audio.size(); ++i) {
        audio[i]->setSilent(i != index);
    }
    audioStream_ = index;
    return S_OK;
}

}  // namespace filters
