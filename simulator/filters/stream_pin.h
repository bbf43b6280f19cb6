// An output pin of the demultiplexer: the face of one of the splitter's pins. The splitter is
// connected to a relay inside, which hands samples and stream events on to the real receiver; so
// the graph sees pins of the demultiplexer only, and an audio stream can be silenced on its way and
// is brought to the rate of the system's mixer.
// Connections are made on the application's thread, samples come on the splitter's.
#pragma once

#include <atomic>
#include <mutex>

#include "simulator/filters/base_pin.h"
#include "simulator/filters/media_type.h"
#include "simulator/filters/sound/rate_converter.h"
#include "simulator/filters/stream_seeking.h"

namespace filters {

class StreamPin final : public BasePin {
public:
    // `inner` is the splitter's pin.
    StreamPin(IBaseFilter* owner, SeekTarget* target, IPin* inner);

    const GUID& majorType() const { return majorType_; }
    // Whether the samples of this (audio) stream are replaced by silence.
    void setSilent(bool silent) { silent_ = silent; }
    // Whether seeks that come this way move the file.
    void setLeading(bool leading) { seeking_.setLeading(leading); }
    // See StreamSeeking::inner.
    IMediaSeeking* innerSeeking() const { return seeking_.inner(); }
    IPin* receiver() const { return receiver_.Get(); }

    // Whether the stream has ended and has kept that to itself.
    bool endKept() const { return endKept_; }
    // Whether the splitter's pin is connected to the relay.
    bool joined() const { return relay_.peer() != nullptr; }
    // Lets go of the splitter's pin, which is about to go away, and takes up another of the same
    // kind; the receiver notices nothing.
    void leave();
    HRESULT rejoin(IPin* inner);
    // The splitter's pin has gone away, or its splitter was left behind, and there is no other to
    // take up: only what ends the stream works from now on, and nothing of the splitter comes
    // through any more.
    void stayAlone();
    // For samples from now on: what is added to their times, and the time before which they are
    // left out (while an offset is set), 100 ns.
    void setOffset(LONGLONG offset, LONGLONG first);
    // Samples will come; no samples will come, and none that waits for a buffer goes on waiting.
    void start() { relay_.start(); }
    void stop() { relay_.stop(); }

    HRESULT STDMETHODCALLTYPE Connect(IPin* receiver, const AM_MEDIA_TYPE* wanted) override;
    HRESULT STDMETHODCALLTYPE Disconnect() override;
    HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** peer) override;
    HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
    HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
    HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
    HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** out) override;

protected:
    // Quality messages go straight to the splitter's pin.
    void* findInterface(REFIID iid) override;
    HRESULT checkType(const AM_MEDIA_TYPE& type) override;

private:
    void setReceiver(IPin* receiver);

    class Relay final : public SamplePin {
    public:
        Relay(IBaseFilter* owner, StreamPin* stream)
            : SamplePin(owner, L"Relay"), stream_(stream) {}

        HRESULT STDMETHODCALLTYPE EndOfStream() override;
        HRESULT STDMETHODCALLTYPE BeginFlush() override;
        HRESULT STDMETHODCALLTYPE EndFlush() override;
        HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME start, REFERENCE_TIME stop,
                                             double rate) override;

        HRESULT STDMETHODCALLTYPE GetAllocator(IMemAllocator** allocator) override;
        HRESULT STDMETHODCALLTYPE NotifyAllocator(IMemAllocator* allocator, BOOL readOnly) override;
        HRESULT STDMETHODCALLTYPE GetAllocatorRequirements(ALLOCATOR_PROPERTIES* wanted) override;
        HRESULT STDMETHODCALLTYPE Receive(IMediaSample* sample) override;
        HRESULT STDMETHODCALLTYPE ReceiveCanBlock() override;

        void start();
        void stop();
        // What the receiver gets: the splitter's type, or the one that its sound is converted to.
        const MediaType& receivedType() const { return receivedType_; }

    protected:
        HRESULT checkType(const AM_MEDIA_TYPE& type) override;
        HRESULT connected(IPin* peer, const AM_MEDIA_TYPE& type) override;
        void disconnected() override;

    private:
        HRESULT receiveConverted(IMediaSample* sample, IMemInputPin* memory);
        // What the splitter's threads work with: while one of them does, the connection may go.
        ComPtr<IPin> receiver();
        ComPtr<IMemInputPin> memory();
        void letGo();

        StreamPin* const stream_;
        ComPtr<IMemInputPin> memory_;  // the receiver's
        MediaType receivedType_;
        RateConverter converter_;
        ComPtr<IMemAllocator> converted_;  // buffers of the converted sound
    };

    std::mutex lock_;  // of receiver_, and of what the relay has of it
    ComPtr<IPin> receiver_;
    SeekTarget* const target_;
    IPin* inner_;            // not counted: its references are this filter's; null when alone
    MediaType innerType_;    // of the connection while there is none
    bool changing_ = false;  // the splitter's pin, not the receiver
    std::atomic<bool> alone_ = false;
    std::atomic<bool> endKept_ = false;
    std::atomic<LONGLONG> offset_ = 0;
    std::atomic<LONGLONG> first_ = 0;
    GUID majorType_ = GUID_NULL;
    std::atomic<bool> silent_ = false;
    Relay relay_;
    StreamSeeking seeking_;
};

}  // namespace filters
