// CFilterControl owns the DirectShow graph of the file being played: it has the graph built from
// the vendor's filters, starts and stops it, reaches the vendor's settings, and takes the graph
// apart without leaving a reference behind. One instance lives as long as the program; a graph
// lives for one file. Everything is called on the window's thread; what happens inside the graph
// arrives there as the message kGraphEventMessage.
//
// This header shows nothing of DirectShow: who uses the graph builds natively as well, on a graph
// that records what it is asked for. Results are the 32-bit HRESULT values.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/window.h"

struct IBaseFilter;
struct IGraphBuilder;
namespace graph {
struct Interfaces;
}
namespace vendor {
struct CaptionStyle;
}

inline constexpr std::uint32_t kGraphEventMessage = 0x8001;  // WM_APP + 1

// Results of CreateFilterForPlaying.
inline constexpr int kGraphBuilt = 1;
inline constexpr int kGraphFailed = -1;
inline constexpr int kGraphPartlyConnected = -3;  // an audio stream is not connected; played too
inline constexpr int kGraphOvertaken = -2;        // taken apart while a message box was open

// Where the video renderer puts its output: client pixels of the owner window (screen pixels until
// an owner is set).
struct VideoPlacement {
    std::int32_t x, y, width, height;
    bool enabled;
    std::uint32_t layer;  // the chip's layer parameter
    bool repaint;         // redraw the current frame at once
};
inline constexpr std::uint32_t kPlayerLayer = 36;  // of a picture that is looked at
inline constexpr std::uint32_t kBackLayer = 10;    // of one that is out of sight

class CFilterControl {
public:
    constexpr CFilterControl() = default;
    CFilterControl(const CFilterControl&) = delete;
    CFilterControl& operator=(const CFilterControl&) = delete;

    // --- building and taking apart -------------------------------------------------------------

    // Builds the graph for the file at `path` and places the picture at (x, y) in client pixels
    // of `window`, which receives kGraphEventMessage. Returns kGraphFailed when a graph exists
    // already or the file cannot be rendered (see lastRenderResult), kGraphPartlyConnected when
    // the audio streams report "not connected", kGraphOvertaken when a message box of the building
    // let in what took the graph apart (another may stand in its place), else the result of placing
    // the picture: 1, or 0 without a video renderer.
    [[nodiscard]] int CreateFilterForPlaying(const char16_t* path, int x, int y, int width,
                                             int height, platform::Window window);

    // Removes every filter from the graph; nothing without a graph.
    void DeleteFilters();

    // Releases every interface and the graph; prints when something still holds it.
    void DestroyFilterGraph();

    // Makes the audio stream in use drive the graph's clock; to be called after the graph was
    // started. Without an audio stream an audio renderer of our own is added for its clock.
    // E_FAIL without a graph, E_ABORT when a message box let in what took the graph apart, else the
    // last call's result.
    std::int32_t SetAudioClock();

    // 1 when the filter is in the graph, else 0.
    int HasNullVideoDecoder();
    int HasAudioRenderer();

    // Why a file could not be rendered, or its graph not be made: of the last that failed.
    [[nodiscard]] std::int32_t lastRenderResult() const { return lastRenderResult_; }

    // Called before a message box opens: what waits for a message that the box may swallow gives
    // up.
    void setBoxOpens(void (*boxOpens)()) { boxOpens_ = boxOpens; }

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
    std::int32_t GetEvent(long& code, std::intptr_t& param1, std::intptr_t& param2);
    std::int32_t FreeEvent(long code, std::intptr_t param1, std::intptr_t param2);

    // --- the video renderer --------------------------------------------------------------------

    // 10 shows the video layer, 12 hides it, any other value leaves it as it is. Prints when the
    // graph has no video renderer or one without the switch; nothing without a graph.
    void SetRender(std::uint32_t value);
    // Colour through which the picture shows: red, green and blue, 0 to 255 each; all 0 is the
    // chip's own. Kept for graphs still to be built. The third value is not passed on: the renderer
    // gets (a, b, a). Required. Prints when the graph has no video renderer.
    void SetRendererChromakeyValue(std::uint32_t a, std::uint32_t b, std::uint32_t c);
    // The same from one colour 0xRRGGBB, kept for graphs still to be built; 0 is the chip's own.
    void SetColourKey(std::uint32_t colour);
    // 1: the picture shows through the key alone; 0: it lies behind everything unkeyed. Nothing
    // without a video renderer.
    void SetChromakeySwitch(std::uint32_t value);
    // Not 0: the renderer switch gets a 0 in graphs still to be built, once they are placed.
    void setChromaKeyFlag(std::uint32_t value) { chromaKeyFlag_ = value; }
    // Gives the renderer the shape of the picture (see setAspect) and the display rectangle, in
    // client pixels of the window that receives the events: 1, or 0 without a renderer (then it
    // prints) or without a graph.
    int SetModeFlag(int x, int y, int width, int height);
    // Gives the renderer a placement as it stands: 1 when it took it, 0 when it did not, without a
    // renderer and without a graph.
    int PlaceOutput(const VideoPlacement& placement);
    // Draws the current frame again at its current size; prints without a renderer, nothing without
    // a graph.
    void CurrentFrameResize();

    // --- the vendor's other settings -----------------------------------------------------------

    // Hands the window that the filters draw into to every filter that wants one: 1 when there was
    // at least one, else 0.
    int SetOwnerWindow(platform::Window window);
    // Hands a value, whose meaning is the vendor's, to the same filters. Always 0.
    int SetFilterOption(std::uint32_t value);
    // Hands 0 to the two start options of every filter that has them.
    void ClearStartOptions();
    // Hands the option, 0 or 1, to the demultiplexer: its result, or E_FAIL when the graph has no
    // demultiplexer or one without the option.
    std::int32_t SetDemuxOption(std::uint32_t value);
    // The value of the first filter that has a status (2: it wants SetFilterOption's value again);
    // 1 when none has and without a graph.
    std::uint32_t FilterStatus();
    // Asks every filter that can choose for audio stream `index`, counted from 0. Whether there is
    // such a stream does not show here.
    void SelectAudioStream(std::uint32_t index);
    // The stream to be selected in graphs still to be built.
    void setPendingAudioStream(std::uint32_t index) { pendingAudioStream_ = index; }
    // Hands the two parameters of graph event 0x8FFF to the caption parser: 1, or 0 when the file
    // has no captions of its own file or the parser does not take them.
    int SetCaptionPosition(std::uint32_t a, std::uint32_t b);
    // How the captions are written, in the face "arial"; `visible` 0 leaves them out. Nothing
    // without captions.
    void SetCaptionStyle(const vendor::CaptionStyle& style, std::uint32_t visible);

    [[nodiscard]] bool hasGraph() const { return builder() != nullptr; }
    [[nodiscard]] bool isRunning() const { return running_ != 0; }
    [[nodiscard]] bool captionsOn() const { return captionsOn_ != 0; }
    [[nodiscard]] std::uint32_t totalAudioStreams() const { return m_TotalAudioStreamNum; }
    [[nodiscard]] std::uint32_t currentAudioStream() const { return currentAudioStream_; }
    // What the demultiplexer of the file told; the meaning is the vendor's. 0 when it did not tell.
    [[nodiscard]] std::uint32_t demuxValueA() const { return demuxValueA_; }
    [[nodiscard]] std::uint32_t demuxValueB() const { return demuxValueB_; }
    [[nodiscard]] std::uint32_t demuxValueC() const { return demuxValueC_; }
    // 1 when value A is not 0.
    [[nodiscard]] std::uint32_t demuxFlag() const { return demuxFlag_; }
    // The DirectShow graph itself, null without one.
    [[nodiscard]] IGraphBuilder* builder() const;

private:
    enum BuildingState : std::uint32_t { kIdle = 0, kStopping = 1, kBuilding = 2 };

    struct Release {
        void operator()(graph::Interfaces* held) const;
    };
    struct Steps;  // of building, in filter_build.cpp

    // What is held, or nothing but null references.
    [[nodiscard]] const graph::Interfaces& held() const;

    std::unique_ptr<graph::Interfaces, Release> held_;  // while there is a graph
    std::uint32_t graphsMade_ = 0;                      // tells a graph from its successor

    std::uint32_t m_TotalAudioStreamNum = 0;
    std::uint32_t currentAudioStream_ = 0;
    std::uint32_t pendingAudioStream_ = 0;
    std::uint32_t demuxValueA_ = 0, demuxValueB_ = 0, demuxValueC_ = 0;
    std::uint32_t demuxFlag_ = 0;
    std::uint32_t captionsOn_ = 0;
    std::uint32_t running_ = 0;
    std::uint32_t buildingState_ = kIdle;
    std::int32_t lastRenderResult_ = 0;

    void (*boxOpens_)() = nullptr;
    platform::Window window_ = nullptr;  // of the file being played
    std::uint32_t aspectX_ = 0, aspectY_ = 0;
    std::uint32_t chromaKey_[3] = {0xF8, 0x00, 0xF8};
    std::uint32_t chromaKeyFlag_ = 0;
};
