// "TCC CDK Demux Filter": takes a recording apart and decodes it. The work is done by Wine's
// splitter, which this filter aggregates and shows as itself, with an input pin of its own, through
// which every read passes, and output pins that stand for the splitter's. The pin of a video that
// the chip cannot decode offers it undecoded instead.
//
// Lifetime: made by the filter mapper inside IGraphBuilder::RenderFile, on a thread of the graph;
// everything but the reads and the samples happens on the application's thread.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/base_filter.h"
#include "simulator/filters/length_watch.h"
#include "simulator/filters/owner_window_face.h"
#include "simulator/filters/reader_pin.h"
#include "simulator/filters/splitter.h"
#include "simulator/filters/stream_pin.h"

namespace filters {

class DemuxFilter final : public BaseFilter,
                          public vendor::DemuxValues,
                          public vendor::DemuxOptions,
                          public vendor::AudioStreams,
                          public vendor::AudioStreamSelection,
                          public vendor::FilterStatus,
                          public OwnerWindowFace,
                          public SeekTarget {
public:
    DemuxFilter();

    // Whether the splitter could be made: without GStreamer there is none. Without a splitter the
    // filter can be stopped and taken out of its graph, but not be started.
    bool usable() const { return splitter_.get() != nullptr; }

    // A file source was asked for: from now on it is another file that is offered. One that was
    // refused is refused at once when the graph builder offers it again, with the next of its media
    // types.
    static void expectFile();

    FILTERS_JOIN_UNKNOWN(BaseFilter)

    HRESULT STDMETHODCALLTYPE Stop() override;
    HRESULT STDMETHODCALLTYPE Pause() override;
    HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME start) override;
    HRESULT STDMETHODCALLTYPE GetState(DWORD milliseconds, FILTER_STATE* state) override;
    HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override;
    HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override;

    // A: the number of video streams, decodable or not. B: the number of audio streams. C: the
    // video codec as four packed letters, 0 when the file's headers do not tell.
    HRESULT STDMETHODCALLTYPE valueA(DWORD* value) override;
    HRESULT STDMETHODCALLTYPE valueB(DWORD* value) override {
        *value = static_cast<DWORD>(streamsOf(MEDIATYPE_Audio).size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE valueC(DWORD* value) override {
        *value = codec_;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE streamCount(DWORD* count) override;
    HRESULT STDMETHODCALLTYPE currentStream(DWORD* index) override;
    // E_INVALIDARG when there is no such stream.
    HRESULT STDMETHODCALLTYPE selectStream(DWORD index) override;

    // 0 no file, 1 a file is connected.
    HRESULT STDMETHODCALLTYPE status(DWORD* value) override {
        *value = open_ ? 1 : 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE setOwnerWindow(HWND) override { return S_OK; }
    // The option of both kOwnerWindow and kDemuxOptions; no value changes anything here.
    HRESULT STDMETHODCALLTYPE setOption(DWORD) override { return S_OK; }

    HRESULT seekPlaying(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                        DWORD stopFlags) override;
    bool mayGoOn() const override;

protected:
    void* findInterface(REFIID iid) override;
    PinList pins() override;

private:
    ~DemuxFilter() override;

    HRESULT openFile(IPin* file, const AM_MEDIA_TYPE& type);
    void closeFile();
    // Hands the result on; when the splitter was lost over it the streams stay alone.
    HRESULT checked(HRESULT result);
    void retireStreams();
    // Has the splitter, which was stopped, go on in that state.
    void resume(FILTER_STATE state);
    // A file that grows was looked at.
    void watchGrowth();
    // The splitter opens the file again, as far as it goes by now, and goes on where it had ended.
    void playOn();
    HRESULT openAgain();
    // The file could not be opened again: its streams end, and the player is told to go on.
    void endHere(FILTER_STATE state);
    void endStreams(FILTER_STATE state);
    void tellOver();
    // Between the splitter's times and the graph's; what comes before `first` is left out. 100 ns.
    void setOffset(LONGLONG offset, LONGLONG first);
    double durationSeconds();
    std::vector<StreamPin*> streamsOf(const GUID& majorType);

    Pin input_;
    Pin undecoded_;  // compressed video that no decoder of the chip takes
    ReaderPin reader_{this};
    Splitter splitter_{this, &reader_};
    std::vector<std::unique_ptr<StreamPin>> streams_, retired_;
    LengthWatch length_{[this] { watchGrowth(); }};
    std::atomic<LONGLONG> openedBytes_ = 0;  // the file's size when the splitter opened it
    LONGLONG offset_ = 0;                    // between the splitter's times and the graph's, 100 ns
    bool watching_ = false;
    bool over_ = false;  // ended before its time, and the player does not know yet
    bool open_ = false;
    bool chipLacksCodec_ = false;
    DWORD codec_ = 0;
    DWORD audioStream_ = 0;
};

}  // namespace filters
