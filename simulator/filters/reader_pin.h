// What stands between the file and the splitter: an output pin whose reader hands every read on to
// the file's own, so that reads can be watched and fail as those of a card do. Reads come on the
// splitter's thread, everything else on the application's.
#pragma once

#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "platform/file.h"
#include "simulator/filters/base_pin.h"
#include "simulator/filters/watched_call.h"

namespace filters {

class ReaderPin final : public BasePin, public IAsyncReader, public platform::ReadOnlyFile {
public:
    explicit ReaderPin(IBaseFilter* owner) : BasePin(owner, PINDIR_OUTPUT, L"Reader") {}

    // `file` is the pin of the file source; E_NOINTERFACE when it cannot be read at will.
    HRESULT attach(IPin* file);
    // Reads under way are ended by the file itself, later ones fail.
    void detach();
    const std::wstring& path() const { return path_; }
    const Activity& activity() const { return activity_; }

    FILTERS_JOIN_UNKNOWN(BasePin)

    HRESULT STDMETHODCALLTYPE SyncRead(LONGLONG offset, LONG bytes, BYTE* out) override;
    HRESULT STDMETHODCALLTYPE Length(LONGLONG* total, LONGLONG* available) override;
    HRESULT STDMETHODCALLTYPE BeginFlush() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndFlush() override { return S_OK; }
    // The splitter reads by SyncRead alone.
    HRESULT STDMETHODCALLTYPE RequestAllocator(IMemAllocator*, ALLOCATOR_PROPERTIES*,
                                               IMemAllocator**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Request(IMediaSample*, DWORD_PTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE WaitForNext(DWORD, IMediaSample**, DWORD_PTR*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SyncReadAligned(IMediaSample*) override { return E_NOTIMPL; }

    // For a look at the file's headers, past the faults.
    bool size(std::uint64_t& bytes) override;
    bool readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) override;

protected:
    void* findInterface(REFIID iid) override;
    HRESULT checkType(const AM_MEDIA_TYPE&) override { return S_OK; }

private:
    ComPtr<IAsyncReader> file();
    // S_OK, or the failure that this read meets with.
    HRESULT admit(LONGLONG offset, LONG bytes);
    // Whether the file's volume is still there; asked at most every 100 ms.
    bool volumePresent();
    void reportFailure(const char* why, LONGLONG offset);
    // Reads from a window that moves with the reading, so that a splitter which takes one packet
    // at a time costs one read of the file for many.
    HRESULT readThroughWindow(IAsyncReader* file, LONGLONG offset, LONG bytes, BYTE* out);

    std::mutex lock_;  // of file_
    ComPtr<IAsyncReader> file_;
    std::vector<BYTE> window_;
    LONGLONG windowOffset_ = 0;
    LONG windowBytes_ = 0;  // how many of the window hold what the file holds
    std::wstring path_;
    std::wstring volume_;  // folder of the volume, without a trailing backslash
    DWORD lastLookTick_ = 0;
    bool present_ = true;
    LONG reported_ = 0;
    Activity activity_;
    LONGLONG readBytes_ = 0;
    LONGLONG failAfterBytes_ = 0;
    DWORD delayMilliseconds_ = 0;
};

}  // namespace filters
