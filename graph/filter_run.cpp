// Running: start, pause, stop, positions, sound, clock and events.
#include <array>

#include "graph/build_steps.h"
#include "graph/graph_walk.h"
#include "platform/print.h"

using graph::Walk;

namespace {

// Hundredths of a decibel per volume step. The steps are uneven, and the loudest stays below full
// level, because the unit's amplifier is tuned to it. Required.
constexpr std::array<long, 11> kVolumeSteps = {-10000, -7500, -6700, -6000, -5300, -4500,
                                               -4000,  -3500, -3000, -2400, -1800};

constexpr double kUnitsPerSecond = 1e7;  // reference time counts in 100 ns

unsigned long hexadecimal(HRESULT result) {
    return static_cast<unsigned long>(result);
}

}  // namespace

int CFilterControl::RunGraph() {
    const auto control = held().builder.query<IMediaControl>(IID_IMediaControl);
    if (!control) {
        return 0;
    }
    const HRESULT result = control->Run();
    if (FAILED(result)) {
        platform::print("[CFilterControl::RunGraph]Fail : RunGraph(ret=0x%lx)\r\n",
                        hexadecimal(result));
        return 0;
    }
    running_ = 1;
    platform::print("[CFilterControl::RunGraph]Succeed RunGraph\r\n");
    return 1;
}

int CFilterControl::PauseGraph() {
    const auto control = held().builder.query<IMediaControl>(IID_IMediaControl);
    if (!control) {
        return 0;
    }
    const HRESULT result = control->Pause();
    if (FAILED(result)) {
        platform::print("[CFilterControl::PauseGraph]Fail : PauseGraph(ret=0x%lx)\r\n",
                        hexadecimal(result));
        return 0;
    }
    running_ = 1;
    return 1;
}

int CFilterControl::StopGraph() {
    buildingState_ = kStopping;
    if (!hasGraph()) {
        return 0;
    }
    if (running_ == 0) {
        platform::print("[TCMovieManager]StopGraph(SKIPPED) since it's already stopped\r\n");
        return 0;
    }
    const auto control = held().builder.query<IMediaControl>(IID_IMediaControl);
    if (!control) {
        platform::print("[TCMovieManager]Fail : mpGraph->QueryInterface(IID_IMediaControl)\n");
        return 0;
    }
    const HRESULT result = control->Stop();
    if (FAILED(result)) {
        platform::print("[TCMovieManager]Fail : StopGraph 0x%lx\n", hexadecimal(result));
        return 0;
    }
    running_ = 0;
    platform::print("[TCMovieManager]Succeed to stop Graph\n");
    return 1;
}

double CFilterControl::GetPosition() {
    LONGLONG position = 0;
    if (!held().seeking || FAILED(held().seeking->GetCurrentPosition(&position))) {
        return 0;
    }
    return static_cast<double>(position) / kUnitsPerSecond;
}

double CFilterControl::GetDuration() {
    LONGLONG duration = 0;
    if (!held().seeking || FAILED(held().seeking->GetDuration(&duration))) {
        return 0;
    }
    return static_cast<double>(duration) / kUnitsPerSecond;
}

int CFilterControl::SetPosition(double seconds) {
    // A position that no file has (and no 64-bit count of 100 ns) is not asked for.
    constexpr double kLongest = 1e9;
    if (!held().seeking || !(seconds >= 0 && seconds <= kLongest)) {
        return 0;
    }
    auto position = static_cast<LONGLONG>(seconds * kUnitsPerSecond);
    return SUCCEEDED(held().seeking->SetPositions(&position, AM_SEEKING_AbsolutePositioning,
                                                  nullptr, AM_SEEKING_NoPositioning))
               ? 1
               : 0;
}

void CFilterControl::StartPositionReporting() {
    if (held().seeking) {
        held().seeking->SetTimeFormat(&TIME_FORMAT_MEDIA_TIME);
    }
}

int CFilterControl::SetVolume(int index) {
    constexpr int kLoudest = static_cast<int>(kVolumeSteps.size()) - 1;
    const int step = index < 0 || index > kLoudest ? kLoudest : index;
    const auto audio = held().builder.query<IBasicAudio>(IID_IBasicAudio);
    if (!audio) {
        return 0;
    }
    audio->put_Volume(kVolumeSteps[static_cast<std::size_t>(step)]);
    return 1;
}

std::int32_t CFilterControl::GetEvent(long& code, std::intptr_t& param1, std::intptr_t& param2) {
    if (!held().events) {
        return E_FAIL;
    }
    LONG_PTR first = 0;
    LONG_PTR second = 0;
    const HRESULT result = held().events->GetEvent(&code, &first, &second, 0);
    param1 = first;
    param2 = second;
    return result;
}

std::int32_t CFilterControl::FreeEvent(long code, std::intptr_t param1, std::intptr_t param2) {
    return held().events ? held().events->FreeEventParams(code, param1, param2) : E_FAIL;
}

HRESULT CFilterControl::Steps::useClockOf(IBaseFilter& audioRenderer) {
    platform::ComPtr<IReferenceClock> clock;
    HRESULT result = audioRenderer.QueryInterface(IID_IReferenceClock, clock.outVoid());
    if (FAILED(result)) {
        return result;
    }
    platform::ComPtr<IMediaFilter> mediaFilter;
    result = of.held_->builder->QueryInterface(IID_IMediaFilter, mediaFilter.outVoid());
    return SUCCEEDED(result) ? mediaFilter->SetSyncSource(clock.get()) : result;
}

std::int32_t CFilterControl::SetAudioClock() {
    if (!hasGraph()) {
        return E_FAIL;
    }
    if (m_TotalAudioStreamNum == 1) {
        return S_OK;
    }
    HRESULT last = S_OK;
    Steps steps(*this);
    if (m_TotalAudioStreamNum == 0) {
        platform::print("[TCMovieManager]m_TotalAudioStreamNum : %d\n", 0);
        platform::ComPtr<IBaseFilter> renderer;
        steps.createObject(CLSID_AudioRender, IID_IBaseFilter, renderer, L"CLSID_AudioRender fail",
                           last);
        if (steps.overtaken()) {
            return E_ABORT;
        }
        held_->audioRenderer = std::move(renderer);
        if (steps.addFilter(held_->audioRenderer.get(), L"CLSID_AudioRender", last)) {
            last = steps.useClockOf(*held_->audioRenderer.get());
        }
    }
    // Each stream has an audio renderer of its own; the graph lists the last stream's first.
    std::uint32_t remainingStreams = m_TotalAudioStreamNum;
    graph::forEachFilter(builder(), [&](IBaseFilter& filter) {
        CLSID classId{};
        last = filter.GetClassID(&classId);
        if (FAILED(last) || !IsEqualCLSID(classId, CLSID_AudioRender)) {
            return Walk::Continue;
        }
        remainingStreams -= remainingStreams > 0 ? 1 : 0;
        if (remainingStreams != currentAudioStream_) {
            return Walk::Continue;
        }
        last = steps.useClockOf(filter);
        return Walk::Stop;
    });
    return last;
}
