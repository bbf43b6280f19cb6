#include "simulator/filters/reader_pin.h"

#include <algorithm>
#include <cstring>

#include "graph/vendor_interfaces.h"
#include "simulator/tape/faults.h"
#include "simulator/tape/tape.h"

namespace filters {

namespace {

constexpr DWORD kLookMilliseconds = 100;
constexpr LONG kWindowBytes = 256 * 1024;

// The full path of the file that the pin's filter reads; empty when it does not say.
std::wstring pathOf(IPin* pin) {
    PIN_INFO info{};
    if (FAILED(pin->QueryPinInfo(&info)) || !info.pFilter) {
        return {};
    }
    ComPtr<IFileSourceFilter> source;
    info.pFilter->QueryInterface(IID_PPV_ARGS(&source));
    info.pFilter->Release();
    LPOLESTR name = nullptr;
    if (!source || FAILED(source->GetCurFile(&name, nullptr)) || !name) {
        return {};
    }
    wchar_t full[1024];
    const DWORD length = GetFullPathNameW(name, 1024, full, nullptr);
    CoTaskMemFree(name);
    return length && length < 1024 ? std::wstring(full, length) : std::wstring();
}

// "H:\SDMMCDisk\Record\a.avi" lies on the volume "H:\SDMMCDisk"; a file of the root on none.
std::wstring volumeOf(const std::wstring& path) {
    const std::size_t first = path.find(L'\\');
    const std::size_t second = first == std::wstring::npos ? first : path.find(L'\\', first + 1);
    return second == std::wstring::npos ? std::wstring() : path.substr(0, second);
}

}  // namespace

HRESULT ReaderPin::attach(IPin* file) {
    ComPtr<IAsyncReader> reader;
    const HRESULT result = file->QueryInterface(IID_PPV_ARGS(&reader));
    if (FAILED(result)) {
        return result;
    }
    {
        const std::lock_guard guard(lock_);
        file_ = reader;
    }
    activity_.failed = false;
    path_ = pathOf(file);
    volume_ = volumeOf(path_);
    present_ = true;
    reported_ = 0;
    readBytes_ = 0;
    windowBytes_ = 0;
    lastLookTick_ = GetTickCount();
    failAfterBytes_ = tape::fault(L"ReadFailAfterBytes");
    delayMilliseconds_ = tape::fault(L"ReadDelayMilliseconds");
    return S_OK;
}

void ReaderPin::detach() {
    const std::lock_guard guard(lock_);
    file_.Reset();
}

ComPtr<IAsyncReader> ReaderPin::file() {
    const std::lock_guard guard(lock_);
    return file_;
}

void* ReaderPin::findInterface(REFIID iid) {
    return iid == IID_IAsyncReader ? static_cast<IAsyncReader*>(this) : nullptr;
}

bool ReaderPin::volumePresent() {
    const DWORD now = GetTickCount();
    if (present_ && !volume_.empty() && now - lastLookTick_ >= kLookMilliseconds) {
        lastLookTick_ = now;
        present_ = GetFileAttributesW(volume_.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    return present_;
}

void ReaderPin::reportFailure(const char* why, LONGLONG offset) {
    activity_.failed = true;
    if (InterlockedExchange(&reported_, 1)) {
        return;
    }
    const HWND player = FindWindowW(nullptr, L"Video");
    if (player) {
        PostMessageW(player, RegisterWindowMessageW(vendor::kReadFailMessage), 0, 0);
    }
    tape::FilterLine(vendor::kDemuxName, L"read failed").text("why", why).number("offset", offset);
}

HRESULT ReaderPin::admit(LONGLONG offset, LONG bytes) {
    if (delayMilliseconds_) {
        Sleep(delayMilliseconds_);
    }
    if (!volumePresent()) {
        reportFailure("card gone", offset);
        return E_FAIL;
    }
    readBytes_ += bytes;
    if (failAfterBytes_ && readBytes_ > failAfterBytes_) {
        reportFailure("fault", offset);
        return E_FAIL;
    }
    return S_OK;
}

HRESULT ReaderPin::SyncRead(LONGLONG offset, LONG bytes, BYTE* out) {
    const ComPtr<IAsyncReader> file = this->file();
    if (!file) {
        return E_FAIL;  // a splitter that was left behind
    }
    ++activity_.steps;
    ++activity_.reading;
    HRESULT result = admit(offset, bytes);
    if (SUCCEEDED(result)) {
        result = readThroughWindow(file.Get(), offset, bytes, out);
        if (FAILED(result)) {
            reportFailure("file", offset);
        }
    }
    --activity_.reading;
    ++activity_.steps;
    return result;
}

HRESULT ReaderPin::readThroughWindow(IAsyncReader* file, LONGLONG offset, LONG bytes, BYTE* out) {
    const LONGLONG skipped = offset - windowOffset_;
    if (skipped < 0 || skipped + bytes > windowBytes_) {
        LONGLONG total = 0;
        LONGLONG available = 0;
        if (bytes >= kWindowBytes || FAILED(Length(&total, &available)) || offset < 0 ||
            offset + bytes > total) {
            return file->SyncRead(offset, bytes, out);
        }
        const auto wanted = static_cast<LONG>(std::min<LONGLONG>(kWindowBytes, total - offset));
        window_.resize(kWindowBytes);
        windowBytes_ = 0;
        const HRESULT result = file->SyncRead(offset, wanted, window_.data());
        if (result != S_OK) {
            return file->SyncRead(offset, bytes, out);
        }
        windowOffset_ = offset;
        windowBytes_ = wanted;
    }
    std::memcpy(out, window_.data() + (offset - windowOffset_), static_cast<std::size_t>(bytes));
    return S_OK;
}

// Wine's file source keeps the size that the file had when it was opened; one that is being
// recorded is longer by now.
HRESULT ReaderPin::Length(LONGLONG* total, LONGLONG* available) {
    const ComPtr<IAsyncReader> file = this->file();
    const HRESULT result = file ? file.Get()->Length(total, available) : E_FAIL;
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (SUCCEEDED(result) && !path_.empty() &&
        GetFileAttributesExW(path_.c_str(), GetFileExInfoStandard, &data)) {
        const auto bytes = static_cast<LONGLONG>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
        *total = std::max(*total, bytes);
        *available = std::max(*available, bytes);
    }
    return result;
}

bool ReaderPin::size(std::uint64_t& bytes) {
    LONGLONG total = 0;
    LONGLONG available = 0;
    const HRESULT result = Length(&total, &available);
    bytes = static_cast<std::uint64_t>(total);
    return SUCCEEDED(result);
}

bool ReaderPin::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer, std::size_t& read) {
    std::uint64_t total = 0;
    const ComPtr<IAsyncReader> file = this->file();
    if (!file || !size(total)) {
        return false;
    }
    read = static_cast<std::size_t>(
        std::min<std::uint64_t>(buffer.size(), total - std::min(total, offset)));
    return read == 0 || file.Get()->SyncRead(static_cast<LONGLONG>(offset), static_cast<LONG>(read),
                                             buffer.data()) == S_OK;
}

}  // namespace filters
