// CFilterControl owns the DirectShow graph of the file being played: it has the graph built from
// the vendor's filters, starts and stops it, reaches the vendor's settings, and takes the graph
// apart without leaving a reference behind. One instance lives as long as the program; a graph
// lives for one file. Everything is called on the window's thread; what happens inside the graph
// arrives there as the message kGraphEventMessage.
#pragma once

#include <dshow.h>
#include <windows.h>

#include <cstdint>

#include "graph/thread_priority.h"
#include "graph/vendor_interfaces.h"
#include "platform/com_ptr.h"

inline constexpr UINT kGraphEventMessage = WM_APP + 1;

// Results of CreateFilterForPlaying.
inline constexpr int kGraphBuilt = 1;
inline constexpr int kGraphFailed = -1;
inline constexpr int kGraphPartlyConnected = -3;  // an audio stream is not connected; played too

class CFilterControl {
public:
    // --- building and taking apart -------------------------------------------------------------

    // Builds the graph for the file at `path` and places the picture at (x, y) in client pixels
    // of `window`, which receives kGraphEventMessage. Returns kGraphFailed when a graph exists
    // already or the file cannot be rendered (see lastRenderResult), kGraphPartlyConnected when
    // the audio streams report "not connected", else the result of placing the picture: 1, or 0
    // without a video renderer.
    [[nodiscard]] int CreateFilterForPlaying(const wchar_t* path, int x, int y, int width,
                                             int height, HWND window);

    // Removes every filter from the graph; nothing without a graph.
    void DeleteFilters();

    // Releases every interface and the graph; prints when something still holds it.
    void DestroyFilterGraph();

    // Makes the audio stream in use drive the graph's clock; to be called after the graph was
    // started. Without an audio stream an audio renderer of our own is added for its clock.
    // E_FAIL without a graph, else the last call's result.
    HRESULT SetAudioClock();

    // 1 when the filter is in the graph, else 0.
    int HasNullVideoDecoder();
    int HasAudioRenderer();

    // Why the last file could not be rendered; when the graph itself could not be made, that.
    [[nodiscard]] HRESULT lastRenderResult() const { return lastRenderResult_; }

    // Shape of the next file's picture, 0 : 0 when it is not known.
    void setAspect(std::uint32_t aspectX, std::uint32_t aspectY);

    // --- running -------------------------------------------------------------------------------

    // 1 on success, 0 otherwise and without a graph. Stopping a stopped graph is skipped: 0.
    [[nodiscard]] int RunGraph();
    [[nodiscard]] int PauseGraph();
    int StopGraph();

    // Seconds; 0 without a graph or when the graph cannot tell.
    double GetPosition();
    double GetDuration();
    // 1 when the graph took the position.
    int SetPosition(double seconds);
    // Makes positions count in time, whatever the file's own unit; once per graph, when it runs.
    void StartPositionReporting();

    // 0 silence to 10; any other index counts as 10. 1 when the graph has a volume control.
    int SetVolume(int index);

    // The next graph event and its two parameters, each to be handed back to FreeEvent. E_FAIL
    // without a graph, E_ABORT when there is none.
    HRESULT GetEvent(long& code, LONG_PTR& param1, LONG_PTR& param2);
    HRESULT FreeEvent(long code, LONG_PTR param1, LONG_PTR param2);

    // --- the video renderer --------------------------------------------------------------------

    // 10 shows the video layer, 12 hides it, any other value leaves it as it is. Prints when the
    // graph has no video renderer or one without the switch; nothing without a graph.
    void SetRender(DWORD value);
    // Colour through which the picture shows: red, green and blue, 0 to 255 each; all 0 is the
    // chip's own. Kept for graphs still to be built. The third value is not passed on: the renderer
    // gets (a, b, a). Required. Prints when the graph has no video renderer.
    void SetRendererChromakeyValue(DWORD a, DWORD b, DWORD c);
    // The same from one colour 0xRRGGBB, kept for graphs still to be built; 0 is the chip's own.
    void SetColourKey(std::uint32_t colour);
    // 1: the picture shows through the key alone; 0: it lies behind everything unkeyed. Nothing
    // without a video renderer.
    void SetChromakeySwitch(DWORD value);
    // Not 0: the renderer switch gets a 0 in graphs still to be built, once they are placed.
    void setChromaKeyFlag(DWORD value) { chromaKeyFlag_ = value; }
    // Gives the renderer the shape of the picture (see setAspect) and the display rectangle, in
    // client pixels of the window that receives the events: 1, or 0 without a renderer (then it
    // prints) or without a graph.
    int SetModeFlag(int x, int y, int width, int height);
    // Gives the renderer a placement as it stands: 1 when it took it, 0 when it did not, without a
    // renderer and without a graph.
    int PlaceOutput(const vendor::VideoOutput& output);
    // Draws the current frame again at its current size; prints without a renderer, nothing without
    // a graph.
    void CurrentFrameResize();

    // --- the vendor's other settings -----------------------------------------------------------

    // Hands the window that the filters draw into to every filter that wants one: 1 when there was
    // at least one, else 0.
    int SetOwnerWindow(HWND window);
    // Hands a value, whose meaning is the vendor's, to the same filters. Always 0.
    int SetFilterOption(DWORD value);
    // Hands 0 to the two start options of every filter that has them.
    void ClearStartOptions();
    // Hands the option, 0 or 1, to the demultiplexer: its result, or E_FAIL when the graph has no
    // demultiplexer or one without the option.
    HRESULT SetDemuxOption(DWORD value);
    // The value of the first filter that has a status (2: it wants SetFilterOption's value again);
    // 1 when none has and without a graph.
    DWORD FilterStatus();
    // Asks every filter that can choose for audio stream `index`, counted from 0. Whether there is
    // such a stream does not show here.
    void SelectAudioStream(DWORD index);
    // The stream to be selected in graphs still to be built.
    void setPendingAudioStream(DWORD index) { pendingAudioStream_ = index; }
    // Hands the two parameters of graph event 0x8FFF to the caption parser: 1, or 0 when the file
    // has no captions of its own file or the parser does not take them.
    int SetCaptionPosition(DWORD a, DWORD b);
    // How the captions are written, in the face "arial"; `visible` 0 leaves them out. Nothing
    // without captions.
    void SetCaptionStyle(const vendor::CaptionStyle& style, DWORD visible);

    [[nodiscard]] bool hasGraph() const { return static_cast<bool>(graph_); }
    [[nodiscard]] bool isRunning() const { return running_ != 0; }
    [[nodiscard]] bool captionsOn() const { return captionsOn_ != 0; }
    [[nodiscard]] DWORD totalAudioStreams() const { return m_TotalAudioStreamNum; }
    [[nodiscard]] DWORD currentAudioStream() const { return currentAudioStream_; }
    // What the demultiplexer of the file told; the meaning is the vendor's. 0 when it did not tell.
    [[nodiscard]] DWORD demuxValueA() const { return demuxValueA_; }
    [[nodiscard]] DWORD demuxValueB() const { return demuxValueB_; }
    [[nodiscard]] DWORD demuxValueC() const { return demuxValueC_; }
    // 1 when value A is not 0.
    [[nodiscard]] DWORD demuxFlag() const { return demuxFlag_; }
    [[nodiscard]] IGraphBuilder* builder() const { return graph_.get(); }

private:
    template <typename Interface>
    using ComPtr = platform::ComPtr<Interface>;

    enum BuildingState : DWORD { kIdle = 0, kStopping = 1, kBuilding = 2 };

    // Each does nothing when `result` holds a failure already. 1 on success, 0 otherwise.
    int createObject(REFCLSID classId, REFIID iid, void** object, const wchar_t* failure,
                     HRESULT& result);
    int addFilter(IBaseFilter* filter, const wchar_t* name, HRESULT& result);

    HRESULT createGraph();
    ComPtr<IBaseFilter> findFilter(const wchar_t* name);
    ComPtr<IBaseFilter> findVideoRenderer();
    void connectExternalSubtitles(const wchar_t* path);
    HRESULT buildCaptionChain(const wchar_t* subtitlePath, DWORD type);
    void describeSubtitles(DWORD type);
    HRESULT renderCaptions();
    void removeCaptionChain();
    void readDemuxValues();
    HRESULT readAudioStreams();
    void removeAllFilters();
    HRESULT useClockOf(IBaseFilter& audioRenderer);

    ComPtr<IGraphBuilder> graph_;
    ComPtr<IMediaControl> mediaControl_;
    ComPtr<IMediaSeeking> mediaSeeking_;
    ComPtr<IMediaEventEx> mediaEvents_;
    ComPtr<IBaseFilter> demux_;
    ComPtr<IBaseFilter> demuxSecond_;
    ComPtr<IBaseFilter> audioRenderer_;  // only one that this class added
    ComPtr<IBaseFilter> captionSource_;
    ComPtr<IBaseFilter> captionParser_;
    ComPtr<IBaseFilter> captionRenderer_;
    ComPtr<IBaseFilter> audioStreamFilter_;

    DWORD m_TotalAudioStreamNum = 0;
    DWORD currentAudioStream_ = 0;
    DWORD pendingAudioStream_ = 0;
    DWORD demuxValueA_ = 0, demuxValueB_ = 0, demuxValueC_ = 0;
    DWORD demuxFlag_ = 0;
    DWORD captionsOn_ = 0;
    DWORD running_ = 0;
    DWORD buildingState_ = kIdle;
    HRESULT lastRenderResult_ = S_OK;

    HWND window_ = nullptr;  // of the file being played
    std::uint32_t aspectX_ = 0, aspectY_ = 0;
    DWORD chromaKey_[3] = {0xF8, 0x00, 0xF8};
    DWORD chromaKeyFlag_ = 0;
};
