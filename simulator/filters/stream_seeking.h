// Seeking on the demultiplexer's output pins. A graph hands every seek to each of its renderers,
// and each passes it up to the pin it is connected to; only the leading pin passes it on, the
// others agree. While a file plays the splitter must not be asked to seek: its streams then take
// the flush for the end of the file, sound stays away and the graph can never be stopped again
// (Wine 8, its own filters alone do the same). So the demultiplexer restarts the splitter at the
// new place.
#pragma once

#include <dshow.h>

namespace filters {

class SeekTarget {
public:
    // Moves a file that plays, or that is paused; arguments and result as IMediaSeeking's.
    virtual HRESULT seekPlaying(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                DWORD stopFlags) = 0;
    // Whether more may come behind the end of the streams. Called on the splitter's thread.
    virtual bool mayGoOn() const = 0;

protected:
    ~SeekTarget() = default;
};

class StreamSeeking final : public IMediaSeeking {
public:
    // `pin` is the pin that this is an interface of, `inner` the splitter's pin; neither counted.
    void bind(SeekTarget* target, IPin* pin, IPin* inner);
    // The splitter's pin goes away: from now on there is nothing to seek, and every method of
    // IMediaSeeking returns E_NOTIMPL.
    void release() { seeking_ = nullptr; }
    // The splitter's own seeking, not counted; null when its pin has none.
    IMediaSeeking* inner() const { return seeking_; }
    void setLeading(bool leading) { leading_ = leading; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return pin_->QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return pin_->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return pin_->Release(); }

    HRESULT STDMETHODCALLTYPE SetPositions(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                           DWORD stopFlags) override;
    // The others are the splitter's.
#define FILTERS_HAND_ON(Method, Parameters, Arguments)            \
    HRESULT STDMETHODCALLTYPE Method Parameters override {        \
        return seeking_ ? seeking_->Method Arguments : E_NOTIMPL; \
    }
    FILTERS_HAND_ON(GetCapabilities, (DWORD * capabilities), (capabilities))
    FILTERS_HAND_ON(CheckCapabilities, (DWORD * capabilities), (capabilities))
    FILTERS_HAND_ON(IsFormatSupported, (const GUID* format), (format))
    FILTERS_HAND_ON(QueryPreferredFormat, (GUID * format), (format))
    FILTERS_HAND_ON(GetTimeFormat, (GUID * format), (format))
    FILTERS_HAND_ON(IsUsingTimeFormat, (const GUID* format), (format))
    FILTERS_HAND_ON(SetTimeFormat, (const GUID* format), (format))
    FILTERS_HAND_ON(GetDuration, (LONGLONG * duration), (duration))
    FILTERS_HAND_ON(GetStopPosition, (LONGLONG * stop), (stop))
    FILTERS_HAND_ON(GetCurrentPosition, (LONGLONG * current), (current))
    FILTERS_HAND_ON(ConvertTimeFormat,
                    (LONGLONG * to, const GUID* toFormat, LONGLONG from, const GUID* fromFormat),
                    (to, toFormat, from, fromFormat))
    FILTERS_HAND_ON(GetPositions, (LONGLONG * current, LONGLONG* stop), (current, stop))
    FILTERS_HAND_ON(GetAvailable, (LONGLONG * earliest, LONGLONG* latest), (earliest, latest))
    FILTERS_HAND_ON(SetRate, (double rate), (rate))
    FILTERS_HAND_ON(GetRate, (double* rate), (rate))
    FILTERS_HAND_ON(GetPreroll, (LONGLONG * preroll), (preroll))
#undef FILTERS_HAND_ON

private:
    bool playing() const;

    SeekTarget* target_ = nullptr;
    IPin* pin_ = nullptr;
    IMediaSeeking* seeking_ = nullptr;  // the splitter's, not counted
    bool leading_ = true;
};

}  // namespace filters
