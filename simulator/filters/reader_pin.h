// What stands between the file and the splitter: an output pin whose reader hands every read on to
// the file's own, so that reads can be watched and fail as those of a card do. Reads come on the
// splitter's thread, everything else on the application's.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "simulator/filters/base_pin.h"
#include "simulator/filters/codec_sniffer.h"

namespace filters {

class ReaderPin final : public BasePin, public IAsyncReader, public ByteSource {
public:
    explicit ReaderPin(IBaseFilter* owner) : BasePin(owner, PINDIR_OUTPUT, L"Reader") {}

    // `file` is the pin of the file source; E_NOINTERFACE when it cannot be read at will.
    HRESULT attach(IPin* file);
    void detach();
    const std::wstring& path() const { return path_; }
    // Counts the reads.
    const std::atomic<unsigned>& progress() const { return progress_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        return BasePin::QueryInterface(iid, out);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return BasePin::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return BasePin::Release(); }

    HRESULT STDMETHODCALLTYPE RequestAllocator(IMemAllocator* preferred,
                                               ALLOCATOR_PROPERTIES* wanted,
                                               IMemAllocator** actual) override;
    HRESULT STDMETHODCALLTYPE Request(IMediaSample* sample, DWORD_PTR user) override;
    HRESULT STDMETHODCALLTYPE WaitForNext(DWORD milliseconds, IMediaSample** sample,
                                          DWORD_PTR* user) override;
    HRESULT STDMETHODCALLTYPE SyncReadAligned(IMediaSample* sample) override;
    HRESULT STDMETHODCALLTYPE SyncRead(LONGLONG offset, LONG bytes, BYTE* out) override;
    HRESULT STDMETHODCALLTYPE Length(LONGLONG* total, LONGLONG* available) override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override;
    HRESULT STDMETHODCALLTYPE EndFlush() override;

    bool read(std::uint64_t offset, void* out, std::size_t bytes) override;

protected:
    void* findInterface(REFIID iid) override;
    HRESULT checkType(const AM_MEDIA_TYPE&) override { return S_OK; }

private:
    // S_OK, or the failure that this read meets with.
    HRESULT admit(LONGLONG offset, LONG bytes);
    // Whether the file's volume is still there; asked at most every 100 ms.
    bool volumePresent();
    void reportFailure(const char* why, LONGLONG offset);
    // Reads from a window that moves with the reading, so that a splitter which takes one packet
    // at a time costs one read of the file for many.
    HRESULT readThroughWindow(LONGLONG offset, LONG bytes, BYTE* out);

    ComPtr<IAsyncReader> file_;
    std::vector<BYTE> window_;
    LONGLONG windowOffset_ = 0;
    LONG windowBytes_ = 0;  // how many of the window hold what the file holds
    std::wstring path_;
    std::wstring volume_;  // folder of the volume, without a trailing backslash
    DWORD lastLookTick_ = 0;
    bool present_ = true;
    LONG reported_ = 0;
    std::atomic<unsigned> progress_ = 0;
    LONGLONG readBytes_ = 0;
    LONGLONG failAfterBytes_ = 0;
    DWORD delayMilliseconds_ = 0;
};

}  // namespace filters
