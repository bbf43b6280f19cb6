// The interfaces of the chip vendor's DirectShow filters, as far as the player calls them. Class
// and interface identifiers are the contract; of each interface only the leading methods are known,
// and they are declared here in slot order behind the three of IUnknown. Methods that the player
// never calls are named after their slot. All methods are called on the player's window thread.
//
// The player and the simulated filters both build against this header.
#pragma once

#include <unknwn.h>
#include <windows.h>

namespace vendor {

// Classes.
inline constexpr CLSID kCaptionParserClass = {
    0xF52BDB25, 0xE177, 0x4F29, {0x9D, 0x7A, 0x3D, 0x9F, 0x54, 0xBC, 0x91, 0x66}};
inline constexpr CLSID kCaptionRendererClass = {
    0x61C4E71C, 0x8BC4, 0x40D1, {0xB2, 0xB1, 0x18, 0xFF, 0xA7, 0xF8, 0xBF, 0x94}};

// Names under which the filters stand in a graph.
inline constexpr wchar_t kDemuxName[] = L"TCC CDK Demux Filter";
inline constexpr wchar_t kVideoRendererName[] = L"TCC Video Renderer";
inline constexpr wchar_t kVideoRendererSecondName[] = L"TCVideoRenderer";
inline constexpr wchar_t kNullVideoDecoderName[] = L"TCC NullVideoDec Filter";
inline constexpr wchar_t kCaptionParserName[] = L"TCC Caption Parser";
inline constexpr wchar_t kCaptionRendererName[] = L"TCC Caption Renderer";
inline constexpr wchar_t kAudioRendererName[] = L"Audio Renderer";
inline constexpr wchar_t kCaptionSourceName[] = L"ASYNC Reader";

// Registered message that the demultiplexer broadcasts to the window titled "Video" when it cannot
// read its file any more; wParam and lParam are 0.
inline constexpr wchar_t kReadFailMessage[] = L"TCC_CDK_DEMUX_FILTER_READ_FAIL";

// On the caption parser.
inline constexpr IID kCaptionParserControl = {
    0x6A95946D, 0x2B73, 0x40DA, {0x99, 0xA8, 0xBB, 0xB6, 0x0D, 0x03, 0xB8, 0x67}};
struct CaptionParserControl : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE method1() = 0;
    // 0 "smi", 1 "srt", 2 "sub", 3 "ssa"; called before the parser is connected.
    virtual HRESULT STDMETHODCALLTYPE setSubtitleType(DWORD type) = 0;
    // Play time of the movie in seconds.
    virtual HRESULT STDMETHODCALLTYPE setDuration(double seconds) = 0;
    // The two parameters of graph event 0x8FFF.
    virtual HRESULT STDMETHODCALLTYPE setPosition(DWORD a, DWORD b) = 0;
};

// On the caption renderer. Text style: a zero-terminated face name and seven values.
inline constexpr IID kCaptionRendererStyle = {
    0x6A95946D, 0x2B75, 0x40DA, {0x99, 0xA8, 0xBB, 0xB6, 0x0D, 0x03, 0xB8, 0x67}};
struct CaptionStyle {
    DWORD height;         // pixels
    DWORD weight;         // 400 normal, 700 bold
    DWORD textColour;     // COLORREF
    DWORD outlineColour;  // COLORREF
    DWORD outlineWidth;   // pixels, 0 none
    DWORD bottomMargin;   // pixels between the last line and the lower edge of the picture
    DWORD alignment;      // 0 left, 1 centre, 2 right
};
struct CaptionRendererStyle : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE setStyle(const wchar_t* face, const CaptionStyle* style,
                                               DWORD visible) = 0;
};

// On the demultiplexer: two values whose meaning is the vendor's own.
inline constexpr IID kDemuxValues = {
    0x6A95946E, 0x2B74, 0x40DB, {0x99, 0xA8, 0xBB, 0xB6, 0x0D, 0x03, 0xB8, 0x67}};
struct DemuxValues : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE valueA(DWORD* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE valueB(DWORD* value) = 0;
};

// On the demultiplexer: a third value and an option.
inline constexpr IID kDemuxOptions = {
    0xFBB49F63, 0xA7F0, 0x4217, {0x9B, 0x42, 0x02, 0xEE, 0x0F, 0x8F, 0x55, 0xC3}};
struct DemuxOptions : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE valueC(DWORD* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setOption(DWORD value) = 0;
};

// On the filter that splits off the audio streams. Indexes count from 0.
inline constexpr IID kAudioStreams = {
    0xFF980A97, 0x909A, 0x41A9, {0x8D, 0xAB, 0x69, 0xC8, 0xEF, 0xC9, 0xEB, 0x5A}};
struct AudioStreams : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE streamCount(DWORD* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE currentStream(DWORD* index) = 0;
};
inline constexpr IID kAudioStreamSelection = {
    0xAAF38D48, 0xDC53, 0x4029, {0xA5, 0x64, 0x39, 0x53, 0x99, 0xA4, 0x57, 0x25}};
struct AudioStreamSelection : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE selectStream(DWORD index) = 0;
};

// On the video renderer: the output on the chip's video layer. The rectangle counts in client
// pixels of the owner window (screen pixels until an owner is set).
struct VideoOutput {
    RECT rectangle;
    DWORD colourKeyMask;  // bits of the 24-bit colour that are compared with the key
    DWORD enabled;        // 1 shown, 0 not
    DWORD layer;          // the chip's layer parameter
    DWORD repaint;        // 1: redraw the current frame at once
};
inline constexpr DWORD kWholeColour = 0xFFFFFF;  // colourKeyMask: every bit of the key counts
inline constexpr DWORD kKeepAspectRatio = 1;     // mode flag: bars instead of distortion
inline constexpr IID kVideoRenderSwitch = {
    0x183143B9, 0x2E52, 0x4518, {0xB4, 0xC5, 0x75, 0x22, 0xA3, 0xFB, 0x65, 0x3D}};
struct VideoRenderSwitch : IUnknown {
    // 10 video layer shown, 12 hidden; other values leave it as it is.
    virtual HRESULT STDMETHODCALLTYPE setRender(DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE setOutput(const VideoOutput* output) = 0;
    // aspectX : aspectY is the picture's shape; 0 : 0 when it is not known.
    virtual HRESULT STDMETHODCALLTYPE setModeFlags(DWORD flags, DWORD aspectX, DWORD aspectY) = 0;
    virtual HRESULT STDMETHODCALLTYPE redrawFrame() = 0;
};

// On the video renderer: the colour of the graphics layer through which the picture shows.
inline constexpr IID kChromaKey = {
    0x19A24A28, 0x53FD, 0x4BBA, {0xA2, 0x99, 0xBD, 0x43, 0x4A, 0x9C, 0x33, 0x0A}};
struct ChromaKey : IUnknown {
    // Red, green and blue, 0 to 255 each; all 0 selects the chip's own key 0xF8, 0, 0xF8.
    virtual HRESULT STDMETHODCALLTYPE setKey(DWORD red, DWORD green, DWORD blue) = 0;
    // 1 keyed, 0 the layer lies behind everything unkeyed.
    virtual HRESULT STDMETHODCALLTYPE enableKey(DWORD enable) = 0;
};

// On any filter that needs the application's window.
inline constexpr IID kOwnerWindow = {
    0xCFE5E520, 0x6D4C, 0x433B, {0xB5, 0xCA, 0xEC, 0x0C, 0x77, 0xF1, 0xC1, 0x68}};
struct OwnerWindow : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE method1() = 0;
    virtual HRESULT STDMETHODCALLTYPE setOwnerWindow(HWND window) = 0;
    virtual HRESULT STDMETHODCALLTYPE method3() = 0;
    virtual HRESULT STDMETHODCALLTYPE method4() = 0;
    virtual HRESULT STDMETHODCALLTYPE method5() = 0;
    virtual HRESULT STDMETHODCALLTYPE setOption(DWORD value) = 0;
};

// On any filter.
inline constexpr IID kFilterStatus = {
    0x2AD3855F, 0x0D2B, 0x4E05, {0x92, 0xB4, 0x8C, 0x6C, 0xFD, 0xC4, 0x65, 0xAE}};
struct FilterStatus : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE status(DWORD* value) = 0;
};

// Two more that are given the value 0 before a graph with sound is started.
inline constexpr IID kStartOption1 = {
    0x9DDBB940, 0x5809, 0x4F0F, {0xAB, 0xF7, 0x5C, 0x64, 0x89, 0xB4, 0x1B, 0xBD}};
inline constexpr IID kStartOption2 = {
    0xE0680D5D, 0x1D15, 0x4ECC, {0x9A, 0x11, 0x9A, 0xB7, 0x2C, 0x48, 0xBB, 0xFD}};
struct StartOption : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE setValue(DWORD value) = 0;
};

}  // namespace vendor
