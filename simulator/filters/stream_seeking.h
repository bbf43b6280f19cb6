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

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetCapabilities(DWORD* capabilities) override;
    HRESULT STDMETHODCALLTYPE CheckCapabilities(DWORD* capabilities) override;
    HRESULT STDMETHODCALLTYPE IsFormatSupported(const GUID* format) override;
    HRESULT STDMETHODCALLTYPE QueryPreferredFormat(GUID* format) override;
    HRESULT STDMETHODCALLTYPE GetTimeFormat(GUID* format) override;
    HRESULT STDMETHODCALLTYPE IsUsingTimeFormat(const GUID* format) override;
    HRESULT STDMETHODCALLTYPE SetTimeFormat(const GUID* format) override;
    HRESULT STDMETHODCALLTYPE GetDuration(LONGLONG* duration) override;
    HRESULT STDMETHODCALLTYPE GetStopPosition(LONGLONG* stop) override;
    HRESULT STDMETHODCALLTYPE GetCurrentPosition(LONGLONG* current) override;
    HRESULT STDMETHODCALLTYPE ConvertTimeFormat(LONGLONG* target, const GUID* targetFormat,
                                                LONGLONG source, const GUID* sourceFormat) override;
    HRESULT STDMETHODCALLTYPE SetPositions(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                           DWORD stopFlags) override;
    HRESULT STDMETHODCALLTYPE GetPositions(LONGLONG* current, LONGLONG* stop) override;
    HRESULT STDMETHODCALLTYPE GetAvailable(LONGLONG* earliest, LONGLONG* latest) override;
    HRESULT STDMETHODCALLTYPE SetRate(double rate) override;
    HRESULT STDMETHODCALLTYPE GetRate(double* rate) override;
    HRESULT STDMETHODCALLTYPE GetPreroll(LONGLONG* preroll) override;

private:
    bool playing() const;

    SeekTarget* target_ = nullptr;
    IPin* pin_ = nullptr;
    IMediaSeeking* seeking_ = nullptr;  // the splitter's, not counted
    bool leading_ = true;
};

}  // namespace filters
