// What the creation of the window does before the first file, and the settings of a file's start.
#include "platform/com.h"
#include "player/player.h"
#include "tests/device/graph/com_doubles.h"
#include "tests/device/player/unit.h"

namespace {

using test::NotingFilter;

constexpr WPARAM kPlay = 20507;
constexpr wchar_t kPriorities[] = L"SOFTWARE\\Microsoft\\DirectShow\\ThreadPriority";
constexpr wchar_t kGraphCache[] = L"SOFTWARE\\Microsoft\\DirectX\\DirectShow\\GraphCache\\Entries";

DWORD priority(const wchar_t* name) {
    DWORD value = 0, bytes = sizeof value;
    RegGetValueW(HKEY_LOCAL_MACHINE, kPriorities, name, RRF_RT_REG_DWORD, nullptr, &value, &bytes);
    return value;
}

bool keyExists(const wchar_t* path) {
    HKEY key = nullptr;
    const bool found = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key) == ERROR_SUCCESS;
    RegCloseKey(key);
    return found;
}

class Start : public test::PlayerUnit {};

TEST_F(Start, AppliesThePrioritiesAndForgetsCachedGraphs) {
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kPriorities);
    const DWORD value = 1;
    const std::wstring inside = std::wstring(kGraphCache) + L"\\a graph";
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, inside.c_str(), L"v", REG_DWORD, &value, sizeof value);
    ASSERT_TRUE(keyExists(inside.c_str()));
    start();
    EXPECT_EQ(priority(L"Video"), 250u);
    EXPECT_EQ(priority(L"AsyncVideoRenderer"), 249u);
    EXPECT_FALSE(keyExists(kGraphCache));
    EXPECT_TRUE(keyExists(L"SOFTWARE\\Microsoft\\DirectX\\DirectShow\\GraphCache"));
}

TEST_F(Start, FilterSwitchIsAppliedAtStatus2AndResetOtherwise) {
    put(L"a.avi");
    startInFolder();
    struct Case {
        DWORD status;
        std::vector<std::string> options;
        std::int32_t switchAfter;
    };
    const std::vector<Case> cases = {
        {2, {"option 0", "option 1"}, 1}, {1, {"option 0"}, 0}, {3, {"option 0"}, 0}};
    for (const Case& tested : cases) {
        NotingFilter filter({vendor::kFilterStatus, vendor::kOwnerWindow});
        filter.statusValue = tested.status;
        const test::GraphDouble graph({.joining = &filter, .joiningName = L"first"});
        appState.filterSwitch = 1;
        command(kPlay);
        EXPECT_EQ(appState.persisted.playState, settings::kPlaying);
        std::erase_if(filter.calls, [](const auto& call) { return !call.starts_with("option"); });
        EXPECT_EQ(filter.calls, tested.options) << tested.status;
        EXPECT_EQ(appState.filterSwitch, tested.switchAfter) << tested.status;
        Player::stopPlayback();
    }
}

TEST_F(Start, GraphThatCannotBeMadeIsRefusedWithItsOwnReason) {
    put(L"a.avi");
    startInFolder();
    const test::CreatedClass created(CLSID_FilterGraph,
                                     [](REFIID, void**) -> HRESULT { return E_ACCESSDENIED; });
    command(kPlay);
    EXPECT_EQ(appState.filterControl.lastRenderResult(), E_ACCESSDENIED);
    EXPECT_EQ(appState.persisted.playState, settings::kStopped);
    ASSERT_EQ(boxes_.shown.size(), 2u);
    EXPECT_EQ(boxes_.shown[0].title, L"TCCAMManger");
    EXPECT_EQ(boxes_.shown[1].text, L"\n\n재생 할 수 없는 파일 입니다.");
}

bool isInCom() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK;
}

// Stands for the imaging factory and tells whether COM was still there when it was given back.
struct HeldObject final : IUnknown {
    ULONG references = 1;
    bool inCom = false;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        inCom = isInCom();
        return --references;
    }
};

TEST_F(Start, ComIsLeftOnceAndLast) {
    HeldObject held;
    appState.imagingFactory = &held;
    ASSERT_TRUE(isInCom());
    Player::saveAndClose();
    EXPECT_EQ(0u, held.references);
    EXPECT_TRUE(held.inCom);
    EXPECT_FALSE(isInCom());
    // Somebody else's stay in COM is not the player's to end.
    ASSERT_EQ(S_OK, CoInitializeEx(nullptr, 0));
    platform::leaveCom();
    EXPECT_TRUE(isInCom());
    CoUninitialize();
    platform::enterCom();
}

}  // namespace
