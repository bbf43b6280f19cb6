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

    HRESULT STDMETHODCALLTYPE GetCapabilities(DWORD* capabilities) override {
        return seeking_ ? seeking_->GetCapabilities(capabilities) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CheckCapabilities(DWORD* capabilities) override {
        return seeking_ ? seeking_->CheckCapabilities(capabilities) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE IsFormatSupported(const GUID* format) override {
        return seeking_ ? seeking_->IsFormatSupported(format) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE QueryPreferredFormat(GUID* format) override {
        return seeking_ ? seeking_->QueryPreferredFormat(format) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetTimeFormat(GUID* format) override {
        return seeking_ ? seeking_->GetTimeFormat(format) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE IsUsingTimeFormat(const GUID* format) override {
        return seeking_ ? seeking_->IsUsingTimeFormat(format) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetTimeFormat(const GUID* format) override {
        return seeking_ ? seeking_->SetTimeFormat(format) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDuration(LONGLONG* duration) override {
        return seeking_ ? seeking_->GetDuration(duration) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetStopPosition(LONGLONG* stop) override {
        return seeking_ ? seeking_->GetStopPosition(stop) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetCurrentPosition(LONGLONG* current) override {
        return seeking_ ? seeking_->GetCurrentPosition(current) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ConvertTimeFormat(LONGLONG* target, const GUID* targetFormat,
                                                LONGLONG source,
                                                const GUID* sourceFormat) override {
        return seeking_ ? seeking_->ConvertTimeFormat(target, targetFormat, source, sourceFormat)
                        : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetPositions(LONGLONG* current, DWORD currentFlags, LONGLONG* stop,
                                           DWORD stopFlags) override;
    HRESULT STDMETHODCALLTYPE GetPositions(LONGLONG* current, LONGLONG* stop) override {
        return seeking_ ? seeking_->GetPositions(current, stop) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetAvailable(LONGLONG* earliest, LONGLONG* latest) override {
        return seeking_ ? seeking_->GetAvailable(earliest, latest) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetRate(double rate) override {
        return seeking_ ? seeking_->SetRate(rate) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetRate(double* rate) override {
        return seeking_ ? seeking_->GetRate(rate) : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetPreroll(LONGLONG* preroll) override {
        return seeking_ ? seeking_->GetPreroll(preroll) : E_NOTIMPL;
    }

private:
    bool playing() const;

    SeekTarget* target_ = nullptr;
    IPin* pin_ = nullptr;
    IMediaSeeking* seeking_ = nullptr;  // the splitter's, not counted
    bool leading_ = true;
};

}  // namespace filters
