// The steps of CFilterControl that create objects: each failure shows a message box, whose message
// loop may take the graph apart and even build the next one. Windows only.
#pragma once

#include "graph/filter_control.h"
#include "graph/interfaces.h"

struct CFilterControl::Steps {
    explicit Steps(CFilterControl& control) : of(control), graph(control.graphsMade_) {}

    // True once the graph that these steps belong to is gone; nothing may be touched then.
    [[nodiscard]] bool overtaken() const { return of.graphsMade_ != graph || !of.held_; }

    // Both do nothing when `result` holds a failure already. 1 on success, 0 otherwise.
    template <typename Interface>
    int createObject(REFCLSID classId, REFIID iid, platform::ComPtr<Interface>& object,
                     const wchar_t* failure, HRESULT& result) {
        return createObject(classId, iid, object.outVoid(), failure, result);
    }
    int addFilter(IBaseFilter* filter, const wchar_t* name, HRESULT& result);

    HRESULT createGraph();
    void connectExternalSubtitles(const char16_t* path);
    void readDemuxValues();
    HRESULT readAudioStreams();
    HRESULT useClockOf(IBaseFilter& audioRenderer);

    CFilterControl& of;
    const std::uint32_t graph;

private:
    int createObject(REFCLSID classId, REFIID iid, void** object, const wchar_t* failure,
                     HRESULT& result);
    HRESULT buildCaptionChain(const wchar_t* subtitlePath, DWORD type);
    void describeSubtitles(DWORD type);
    HRESULT renderCaptions();
    void removeCaptionChain();
};
