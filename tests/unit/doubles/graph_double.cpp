#include "tests/unit/doubles/graph_double.h"

#include <utility>

#include "graph/filter_control.h"
#include "graph/thread_priority.h"
#include "tests/unit/doubles/record.h"
#include "tests/unit/doubles/unit_double.h"

namespace graph {

struct Interfaces {};

}  // namespace graph

namespace test {
namespace {

void runOnce(std::function<void()>& hook) {
    if (const std::function<void()> run = std::exchange(hook, nullptr)) {
        run();
    }
}

}  // namespace

GraphDouble& theGraph() {
    static GraphDouble current;
    return current;
}

void freshGraph() {
    theGraph() = GraphDouble{};
}

}  // namespace test

using test::note;
using test::shown;
using test::theGraph;

void CFilterControl::Release::operator()(::graph::Interfaces* held) const {
    delete held;
}

IGraphBuilder* CFilterControl::builder() const {
    return reinterpret_cast<IGraphBuilder*>(held_.get());
}

int CFilterControl::CreateFilterForPlaying(const char16_t* path, int x, int y, int width,
                                           int height, platform::Window window) {
    note("graph build %s %d,%d %dx%d%s shape %u:%u", shown(path).c_str(), x, y, width, height,
         window == test::playerWindow() ? "" : " in another window", aspectX_, aspectY_);
    if (held_) {
        note("graph stands already");
        return kGraphFailed;
    }
    held_.reset(theGraph().stands ? new ::graph::Interfaces : nullptr);
    const bool stood = theGraph().stands;
    if (!stood && boxOpens_ != nullptr) {
        boxOpens_();  // it is said in a box
    }
    const std::uint32_t made = ++graphsMade_;
    test::runOnce(theGraph().whileBuilding);
    if (made != graphsMade_ || (stood && !held_)) {
        return kGraphOvertaken;
    }
    lastRenderResult_ = theGraph().renderResult;
    return theGraph().built;
}

void CFilterControl::DeleteFilters() {
    note("graph delete filters");
}

void CFilterControl::DestroyFilterGraph() {
    note("graph destroy");
    held_.reset();
}

std::int32_t CFilterControl::SetAudioClock() {
    note("graph audio clock");
    test::runOnce(theGraph().whileSettingClock);
    return 0;
}

int CFilterControl::HasNullVideoDecoder() {
    return theGraph().nullVideoDecoder ? 1 : 0;
}

int CFilterControl::HasAudioRenderer() {
    return theGraph().audioRenderer ? 1 : 0;
}

void CFilterControl::setAspect(std::uint32_t aspectX, std::uint32_t aspectY) {
    aspectX_ = aspectX;
    aspectY_ = aspectY;
}

int CFilterControl::RunGraph() {
    note("graph run");
    return hasGraph() ? theGraph().run : 0;
}

int CFilterControl::PauseGraph() {
    note("graph pause");
    return hasGraph() ? theGraph().pause : 0;
}

int CFilterControl::StopGraph() {
    note("graph stop");
    return 1;
}

double CFilterControl::GetPosition() {
    return hasGraph() ? theGraph().position : 0;
}

double CFilterControl::GetDuration() {
    return hasGraph() ? theGraph().duration : 0;
}

int CFilterControl::SetPosition(double seconds) {
    note("graph seek %g", seconds);
    if (theGraph().seeks) {
        theGraph().position = seconds;
    }
    return 1;
}

void CFilterControl::StartPositionReporting() {
    note("graph report position");
}

int CFilterControl::SetVolume(int index) {
    note("graph volume %d", index);
    return hasGraph() ? 1 : 0;
}

std::int32_t CFilterControl::GetEvent(long& code, std::intptr_t& param1, std::intptr_t& param2) {
    constexpr std::int32_t kAbort = -2147467260;  // E_ABORT: there is none
    if (theGraph().events.empty()) {
        return kAbort;
    }
    const test::GraphDouble::Event event = theGraph().events.front();
    theGraph().events.pop_front();
    code = event.code;
    param1 = event.param1;
    param2 = event.param2;
    return 0;
}

std::int32_t CFilterControl::FreeEvent(long code, std::intptr_t param1, std::intptr_t param2) {
    note("graph free event %ld %d,%d", code, static_cast<int>(param1), static_cast<int>(param2));
    return 0;
}

void CFilterControl::SetRender(std::uint32_t value) {
    note("graph layer %u", value);
}

void CFilterControl::SetColourKey(std::uint32_t colour) {
    note("graph key 0x%06X", colour);
}

void CFilterControl::SetChromakeySwitch(std::uint32_t value) {
    note("graph key switch %u", value);
}

int CFilterControl::PlaceOutput(const VideoPlacement& placement) {
    note("graph place %d,%d %dx%d %s layer %u%s", placement.x, placement.y, placement.width,
         placement.height, placement.enabled ? "on" : "off", placement.layer,
         placement.repaint ? " repaint" : "");
    return 1;
}

int CFilterControl::SetOwnerWindow(platform::Window window) {
    note("graph owner %s", window == test::playerWindow() ? "Video" : "another");
    return 1;
}

int CFilterControl::SetFilterOption(std::uint32_t value) {
    note("graph filter option %u", value);
    return 0;
}

void CFilterControl::ClearStartOptions() {
    note("graph clear start options");
}

std::uint32_t CFilterControl::FilterStatus() {
    return theGraph().filterStatus;
}

int CFilterControl::SetCaptionPosition(std::uint32_t a, std::uint32_t b) {
    note("graph caption %u,%u", a, b);
    return 1;
}

std::int32_t SetDirectShowThreadPriority(int enable) {
    note("thread priorities %d", enable);
    return 0;
}

void ForgetCachedGraphs() {
    note("forget cached graphs");
}
