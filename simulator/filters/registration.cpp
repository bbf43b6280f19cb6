// Enters the filters into the registry: as COM classes and, where the graph builder shall find
// them by itself, with the filter mapper.
#include <dshow.h>
#include <wrl/client.h>

#include <algorithm>
#include <cwchar>
#include <string>

#include "graph/vendor_interfaces.h"
#include "simulator/filters/class_ids.h"
#include "simulator/filters/module.h"

namespace filters {

namespace {

using Microsoft::WRL::ComPtr;

constexpr wchar_t kAudioInstance[] = L"headunit audio renderer";

struct Row {
    const CLSID* classId;
    const wchar_t* name;
    // Of the input pin; null: the application makes the filter itself.
    const GUID* majorType;
    DWORD merit;
    // The filter's key in its category; null: its class identifier.
    const wchar_t* instance;
};

// In falling merit, since the graph builder tries the best first.
const Row kRows[] = {
    {&kDemuxClass, vendor::kDemuxName, &MEDIATYPE_Stream, MERIT_PREFERRED + 0x100, nullptr},
    {&kVideoRendererClass, vendor::kVideoRendererName, &MEDIATYPE_Video, MERIT_PREFERRED + 0x100,
     nullptr},
    {&kVideoRendererSecondClass, vendor::kVideoRendererSecondName, &MEDIATYPE_Video,
     MERIT_PREFERRED + 0xF0, nullptr},
    {&kNullVideoDecoderClass, vendor::kNullVideoDecoderName, &MEDIATYPE_Video,
     MERIT_PREFERRED + 0x80, nullptr},
    {&vendor::kCaptionParserClass, vendor::kCaptionParserName, nullptr, 0, nullptr},
    {&vendor::kCaptionRendererClass, vendor::kCaptionRendererName, nullptr, 0, nullptr},
    {&CLSID_AudioRender, vendor::kAudioRendererName, &MEDIATYPE_Audio, MERIT_PREFERRED + 0x100,
     kAudioInstance},
};

std::wstring textOf(const CLSID& classId) {
    wchar_t text[40];
    return StringFromGUID2(classId, text, 40) ? text : L"";
}

std::wstring keyOf(const CLSID& classId) {
    return L"Software\\Classes\\CLSID\\" + textOf(classId);
}

bool setText(const std::wstring& key, const wchar_t* name, const wchar_t* text) {
    const auto bytes = static_cast<DWORD>((std::wcslen(text) + 1) * sizeof(wchar_t));
    return RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text, bytes) ==
           ERROR_SUCCESS;
}

std::wstring ownPath() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(moduleHandle(), path, MAX_PATH);
    return length && length < MAX_PATH ? std::wstring(path, length) : std::wstring();
}

// The system's file reader is given out by this library, so that opening files can be made to fail.
HRESULT takeReader() {
    const std::wstring server = keyOf(CLSID_AsyncReader) + L"\\InprocServer32";
    return setText(server, nullptr, ownPath().c_str()) ? S_OK : E_FAIL;
}

HRESULT registerClass(const CLSID& classId, const wchar_t* name) {
    const std::wstring path = ownPath();
    const std::wstring key = keyOf(classId);
    const std::wstring server = key + L"\\InprocServer32";
    const bool done = !path.empty() && setText(key, nullptr, name) &&
                      setText(server, nullptr, path.c_str()) &&
                      setText(server, L"ThreadingModel", L"Both");
    return done ? S_OK : E_FAIL;
}

HRESULT registerWithMapper(IFilterMapper2* mapper, const Row& row) {
    REGPINTYPES types = {row.majorType, &GUID_NULL};
    REGFILTERPINS2 pins[1] = {};
    pins[0].dwFlags = 0;
    pins[0].nMediaTypes = 1;
    pins[0].lpMediaType = &types;
    REGFILTER2 filter{};
    filter.dwVersion = 2;
    filter.dwMerit = row.merit;
    filter.cPins2 = 1;
    filter.rgPins2 = pins;
    return mapper->RegisterFilter(*row.classId, row.name, nullptr, &CLSID_LegacyAmFilterCategory,
                                  row.instance, &filter);
}

}  // namespace

bool isOwnClass(const CLSID& classId) {
    return classId != CLSID_AudioRender &&
           std::ranges::any_of(kRows, [&](const Row& row) { return *row.classId == classId; });
}

HRESULT registerAll() {
    CoInitialize(nullptr);
    ComPtr<IFilterMapper2> mapper;
    HRESULT result =
        CoCreateInstance(CLSID_FilterMapper2, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&mapper));
    for (const Row& row : kRows) {
        if (SUCCEEDED(result) && isOwnClass(*row.classId)) {
            result = registerClass(*row.classId, row.name);
        }
        if (SUCCEEDED(result) && row.majorType) {
            result = registerWithMapper(mapper.Get(), row);
        }
    }
    if (SUCCEEDED(result)) {
        result = takeReader();
    }
    mapper.Reset();
    CoUninitialize();
    return result;
}

}  // namespace filters
