#include "tests/device/filters/player_window.h"

#include <algorithm>
#include <cstdlib>

namespace test {

namespace {

constexpr wchar_t kFaultKey[] = L"Software\\HeadUnit\\Faults";
constexpr UINT kGraphEvent = WM_APP + 1;
constexpr COLORREF kKey = RGB(0xF8, 0, 0xF8);
constexpr int kBarHeight = 60;
// One row less than the screen: a window that fills a screen without a window manager waits two
// seconds for an answer of that manager whenever it is shown.
constexpr int kWidth = 800;
constexpr int kHeight = 479;

PlayerWindow* current = nullptr;

UINT readFailMessage() {
    static const UINT message = RegisterWindowMessageW(vendor::kReadFailMessage);
    return message;
}

void paint(HWND window) {
    PAINTSTRUCT paintInfo;
    const HDC context = BeginPaint(window, &paintInfo);
    RECT area;
    GetClientRect(window, &area);
    const HBRUSH key = CreateSolidBrush(kKey);
    FillRect(context, &area, key);
    DeleteObject(key);
    area.top = area.bottom - kBarHeight;
    const HBRUSH bar = CreateSolidBrush(RGB(30, 40, 50));
    FillRect(context, &area, bar);
    DeleteObject(bar);
    EndPaint(window, &paintInfo);
}

}  // namespace

std::wstring clip(const wchar_t* name) {
    return std::wstring(CLIP_FOLDER) + L"\\" + name;
}

LRESULT CALLBACK PlayerWindow::procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_PAINT) {
        paint(window);
        return 0;
    }
    if (current && message == WM_LBUTTONDOWN) {
        current->touches.push_back({static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))});
        return 0;
    }
    if (current && message == kGraphEvent) {
        current->collectEvents();
        return 0;
    }
    if (current && message == readFailMessage()) {
        ++current->readFailures;
        return 0;
    }
    return DefWindowProcW(window, message, w, l);
}

PlayerWindow::PlayerWindow() {
    current = this;
    readFailMessage();
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"Video";
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(0, L"Video", L"Video", WS_POPUP | WS_VISIBLE, 0, 0, kWidth, kHeight,
                              nullptr, nullptr, windowClass.hInstance, nullptr);
    UpdateWindow(window_);
}

PlayerWindow::~PlayerWindow() {
    DestroyWindow(window_);
    current = nullptr;
}

void PlayerWindow::collectEvents() {
    Event event;
    while (graphEvents &&
           graphEvents->GetEvent(&event.code, &event.first, &event.second, 0) == S_OK) {
        graphEvents->FreeEventParams(event.code, event.first, event.second);
        events.push_back(event);
    }
}

int PlayerWindow::countEvents(long code) const {
    return static_cast<int>(std::count_if(events.begin(), events.end(),
                                          [&](const Event& e) { return e.code == code; }));
}

bool PlayerWindow::wait(DWORD milliseconds, const std::function<bool()>& done) {
    const DWORD start = GetTickCount();
    for (DWORD passed = 0; passed < milliseconds; passed = GetTickCount() - start) {
        if (done && done()) {
            return true;
        }
        const DWORD left = milliseconds - passed;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, done ? std::min<DWORD>(left, 20) : left,
                                  QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
        }
    }
    return done && done();
}

COLORREF screenPixel(int x, int y) {
    const HDC screen = GetDC(nullptr);
    const COLORREF colour = GetPixel(screen, x, y);
    ReleaseDC(nullptr, screen);
    return colour;
}

bool alike(COLORREF a, COLORREF b, int tolerance) {
    return std::abs(GetRValue(a) - GetRValue(b)) <= tolerance &&
           std::abs(GetGValue(a) - GetGValue(b)) <= tolerance &&
           std::abs(GetBValue(a) - GetBValue(b)) <= tolerance;
}

Graph::Graph(PlayerWindow& player) : player_(player) {
    CoCreateInstance(CLSID_FilterGraph, nullptr, CLSCTX_INPROC_SERVER, IID_IGraphBuilder,
                     reinterpret_cast<void**>(builder_.GetAddressOf()));
    builder_.Get()->QueryInterface(IID_IMediaControl,
                                   reinterpret_cast<void**>(control_.GetAddressOf()));
    builder_.Get()->QueryInterface(IID_IMediaEventEx,
                                   reinterpret_cast<void**>(events_.GetAddressOf()));
    events_->SetNotifyWindow(reinterpret_cast<OAHWND>(player.window()), kGraphEvent, 0);
    player.graphEvents = events_.Get();
    player.events.clear();
}

Graph::~Graph() {
    tearDown();
}

HRESULT Graph::render(const std::wstring& path) {
    return builder_->RenderFile(path.c_str(), nullptr);
}

void Graph::forEach(const std::function<void(IBaseFilter*)>& visitor) {
    ComPtr<IEnumFilters> all;
    ComPtr<IBaseFilter> filter;
    builder_->EnumFilters(&all);
    while (all->Next(1, filter.ReleaseAndGetAddressOf(), nullptr) == S_OK) {
        visitor(filter.Get());
    }
}

void Graph::setUp(const RECT& output) {
    forEach([&](IBaseFilter* filter) {
        ComPtr<vendor::OwnerWindow> owner;
        if (SUCCEEDED(filter->QueryInterface(vendor::kOwnerWindow,
                                             reinterpret_cast<void**>(owner.GetAddressOf())))) {
            owner->setOwnerWindow(player_.window());
        }
        ComPtr<vendor::VideoRenderSwitch> video;
        if (SUCCEEDED(filter->QueryInterface(vendor::kVideoRenderSwitch,
                                             reinterpret_cast<void**>(video.GetAddressOf())))) {
            const vendor::VideoOutput place = {output, 0xFFFFFF, 1, 36, 0};
            video->setOutput(&place);
        }
    });
}

bool Graph::run() {
    OAFilterState state = State_Stopped;
    return SUCCEEDED(control_->Run()) && control_->GetState(5000, &state) == S_OK &&
           state == State_Running;
}

void Graph::pause() {
    control_->Pause();
}

void Graph::stop() {
    control_->Stop();
}

void Graph::seek(double seconds) {
    ComPtr<IMediaSeeking> seeking;
    builder_.Get()->QueryInterface(IID_IMediaSeeking,
                                   reinterpret_cast<void**>(seeking.GetAddressOf()));
    LONGLONG time = static_cast<LONGLONG>(seconds * 1e7);
    seeking->SetPositions(&time, AM_SEEKING_AbsolutePositioning, nullptr, AM_SEEKING_NoPositioning);
}

double Graph::position() {
    ComPtr<IMediaSeeking> seeking;
    LONGLONG time = 0;
    builder_.Get()->QueryInterface(IID_IMediaSeeking,
                                   reinterpret_cast<void**>(seeking.GetAddressOf()));
    return SUCCEEDED(seeking->GetCurrentPosition(&time)) ? static_cast<double>(time) / 1e7 : -1;
}

double Graph::duration() {
    ComPtr<IMediaSeeking> seeking;
    LONGLONG time = 0;
    builder_.Get()->QueryInterface(IID_IMediaSeeking,
                                   reinterpret_cast<void**>(seeking.GetAddressOf()));
    return SUCCEEDED(seeking->GetDuration(&time)) ? static_cast<double>(time) / 1e7 : -1;
}

std::vector<std::wstring> Graph::names() {
    std::vector<std::wstring> found;
    forEach([&](IBaseFilter* filter) {
        FILTER_INFO info{};
        if (SUCCEEDED(filter->QueryFilterInfo(&info))) {
            found.emplace_back(info.achName);
            info.pGraph->Release();
        }
    });
    return found;
}

bool Graph::has(const wchar_t* name) {
    return find(name) != nullptr;
}

ComPtr<IBaseFilter> Graph::find(const wchar_t* name) {
    ComPtr<IBaseFilter> filter;
    builder_->FindFilterByName(name, &filter);
    return filter;
}

HRESULT Graph::addCaptions(const std::wstring& path, DWORD type) {
    const auto create = [](const CLSID& id) {
        ComPtr<IBaseFilter> filter;
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                         reinterpret_cast<void**>(filter.GetAddressOf()));
        return filter;
    };
    const ComPtr<IBaseFilter> source = create(CLSID_AsyncReader);
    const ComPtr<IBaseFilter> parser = create(vendor::kCaptionParserClass);
    const ComPtr<IBaseFilter> renderer = create(vendor::kCaptionRendererClass);
    if (!source || !parser || !renderer) {
        return E_NOINTERFACE;
    }
    builder_->AddFilter(parser.Get(), vendor::kCaptionParserName);
    builder_->AddFilter(renderer.Get(), vendor::kCaptionRendererName);
    builder_->AddFilter(source.Get(), vendor::kCaptionSourceName);
    ComPtr<IFileSourceFilter> file;
    source.As(&file);
    ComPtr<vendor::CaptionParserControl> control;
    parser.Get()->QueryInterface(vendor::kCaptionParserControl,
                                 reinterpret_cast<void**>(control.GetAddressOf()));
    HRESULT result = file->Load(path.c_str(), nullptr);
    if (FAILED(result) || !control) {
        return FAILED(result) ? result : E_NOINTERFACE;
    }
    control->setSubtitleType(type);
    ComPtr<IPin> output;
    ComPtr<IPin> input;
    source.Get()->FindPin(L"Output", &output);
    parser.Get()->FindPin(L"Input", &input);
    result = builder_->ConnectDirect(output.Get(), input.Get(), nullptr);
    if (FAILED(result)) {
        return result;
    }
    parser.Get()->FindPin(L"Output", output.ReleaseAndGetAddressOf());
    return builder_->Render(output.Get());
}

ULONG Graph::tearDown() {
    if (!builder_) {
        return 0;
    }
    stop();
    events_->SetNotifyWindow(0, kGraphEvent, 0);
    player_.graphEvents = nullptr;
    events_.Reset();
    control_.Reset();
    std::vector<ComPtr<IBaseFilter>> filters;
    forEach([&](IBaseFilter* filter) { filters.emplace_back(filter); });
    for (const ComPtr<IBaseFilter>& filter : filters) {
        builder_->RemoveFilter(filter.Get());
    }
    filters.clear();
    return builder_.Detach()->Release();
}

Fault::Fault(const wchar_t* name, DWORD value) : name_(name) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kFaultKey, name, REG_DWORD, &value, sizeof value);
}

Fault::~Fault() {
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kFaultKey, name_);
}

}  // namespace test
