// The contract with the vendor's filters, written down here once more: identifiers as texts,
// methods as numbers of their slots behind IUnknown's three. The player and the simulated filters
// are each held to it, so that a mistake in the header that both include shows.
#include <objbase.h>

#include <array>
#include <functional>
#include <utility>

#include "tests/device/graph/box_stub.h"
#include "tests/device/graph/com_doubles.h"
#include "tests/device/graph/graph_test.h"

namespace {

using test::Graph;
using test::GraphDouble;
using test::NotingFilter;
using Calls = std::vector<std::string>;

constexpr wchar_t kDemuxValues[] = L"{6A95946E-2B74-40DB-99A8-BBB60D03B867}";
constexpr wchar_t kDemuxOptions[] = L"{FBB49F63-A7F0-4217-9B42-02EE0F8F55C3}";
constexpr wchar_t kAudioStreams[] = L"{FF980A97-909A-41A9-8DAB-69C8EFC9EB5A}";
constexpr wchar_t kSelection[] = L"{AAF38D48-DC53-4029-A564-395399A45725}";
constexpr wchar_t kRenderSwitch[] = L"{183143B9-2E52-4518-B4C5-7522A3FB653D}";
constexpr wchar_t kChromaKey[] = L"{19A24A28-53FD-4BBA-A299-BD434A9C330A}";
constexpr wchar_t kOwnerWindow[] = L"{CFE5E520-6D4C-433B-B5CA-EC0C77F1C168}";
constexpr wchar_t kFilterStatus[] = L"{2AD3855F-0D2B-4E05-92B4-8C6CFDC465AE}";
constexpr wchar_t kStart1[] = L"{9DDBB940-5809-4F0F-ABF7-5C6489B41BBD}";
constexpr wchar_t kStart2[] = L"{E0680D5D-1D15-4ECC-9A11-9AB72C48BBFD}";
constexpr wchar_t kParserControl[] = L"{6A95946D-2B73-40DA-99A8-BBB60D03B867}";

GUID guid(const wchar_t* text) {
    GUID value{};
    EXPECT_EQ(CLSIDFromString(text, &value), S_OK);
    return value;
}

// An object without any header's interface: sixteen slots, of which each notes its method's number
// and up to three 32-bit arguments. A pointer shows as "->" and what is written there counts up.
class RawObject {
public:
    RawObject() : table_(table().data()) {}
    static Calls calls;
    static const void* window;  // noted by this name

private:
    template <int kSlot>
    static HRESULT STDMETHODCALLTYPE slot(RawObject*, ULONG_PTR a, ULONG_PTR b, ULONG_PTR c) {
        if constexpr (kSlot == 1 || kSlot == 2) {
            return 1;  // AddRef and Release
        }
        std::string line = "method " + std::to_string(kSlot - 2);
        for (const ULONG_PTR argument : {a, b, c}) {
            const bool isWindow = window && argument == reinterpret_cast<ULONG_PTR>(window);
            line += isWindow ? " window" : ' ' + std::to_string(static_cast<DWORD>(argument));
        }
        calls.push_back(line);
        return S_OK;
    }
    using Slot = HRESULT(STDMETHODCALLTYPE*)(RawObject*, ULONG_PTR, ULONG_PTR, ULONG_PTR);
    template <int... kSlots>
    static std::array<Slot, sizeof...(kSlots)> slots(std::integer_sequence<int, kSlots...>) {
        return {&slot<kSlots>...};
    }
    static const std::array<Slot, 16>& table() {
        static const auto made = slots(std::make_integer_sequence<int, 16>());
        return made;
    }

    const Slot* table_;
};
Calls RawObject::calls;
const void* RawObject::window = nullptr;

// A filter that offers one interface, and that as a raw object.
class RawFilter final : public NotingFilter {
public:
    explicit RawFilter(const wchar_t* offeredId) : id_(guid(offeredId)) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (IsEqualIID(iid, id_)) {
            *object = &raw_;
            return S_OK;
        }
        return NotingFilter::QueryInterface(iid, object);
    }

private:
    const IID id_;
    RawObject raw_;
};

class Contract : public Graph {
protected:
    void SetUp() override {
        Graph::SetUp();
        RawObject::window = window_;
    }
    // What a raw filter of this interface, under this name, is told after the building.
    Calls told(const wchar_t* offered, const wchar_t* name, const std::function<void()>& act) {
        RawFilter filter(offered);
        const GraphDouble graph({.joining = &filter, .joiningName = name});
        RawObject::calls.clear();
        EXPECT_EQ(build(L"sound.mp4"), kGraphBuilt);
        if (act) {
            RawObject::calls.clear();
            act();
        }
        takeApart();
        return RawObject::calls;
    }
    // The start of each call, as long as what is expected of it: later arguments are not passed.
    static void expectCalls(const Calls& calls, const Calls& expected) {
        ASSERT_EQ(calls.size(), expected.size()) << ::testing::PrintToString(calls);
        for (std::size_t i = 0; i < calls.size(); ++i) {
            EXPECT_EQ((calls[i] + ' ').substr(0, expected[i].size() + 1), expected[i] + ' ');
        }
    }
};

TEST_F(Contract, PlayerCallsTheMethodsByTheirNumbers) {
    const wchar_t* const renderer = L"TCC Video Renderer";
    expectCalls(told(kRenderSwitch, renderer, [this] { control_.SetRender(12); }), {"method 1 12"});
    expectCalls(told(kChromaKey, renderer, [this] { control_.SetRendererChromakeyValue(1, 2, 3); }),
                {"method 1 1 2 1"});
    expectCalls(told(kChromaKey, renderer, [this] { control_.SetChromakeySwitch(1); }),
                {"method 2 1"});
    expectCalls(told(kOwnerWindow, L"any", [this] { control_.SetOwnerWindow(window_); }),
                {"method 2 window"});
    expectCalls(told(kOwnerWindow, L"any", [this] { control_.SetFilterOption(0); }),
                {"method 6 0"});
    expectCalls(told(kSelection, L"any", [this] { control_.SelectAudioStream(3); }),
                {"method 1 3"});
    expectCalls(told(kFilterStatus, L"any", [this] { control_.FilterStatus(); }), {"method 1"});
    for (const wchar_t* id : {kStart1, kStart2}) {
        expectCalls(told(id, L"any", [this] { control_.ClearStartOptions(); }), {"method 1 0"});
    }
    const wchar_t* const demux = L"TCC CDK Demux Filter";
    expectCalls(told(kDemuxValues, demux, nullptr), {"method 1", "method 2"});
    expectCalls(told(kDemuxOptions, demux, nullptr), {"method 1"});
    for (const std::uint32_t option : {0u, 1u}) {
        expectCalls(told(kDemuxOptions, demux, [&] { control_.SetDemuxOption(option); }),
                    {"method 2 " + std::to_string(option)});
    }
    expectCalls(told(kAudioStreams, L"any", nullptr), {"method 1", "method 2"});
}

TEST_F(Contract, PlayerTellsTheCaptionParserByTheMethodsNumbers) {
    RawFilter parser(kParserControl);
    const test::CreatedClass created(
        guid(L"{F52BDB25-E177-4F29-9D7A-3D9F54BC9166}"),
        [&parser](REFIID iid, void** object) { return parser.QueryInterface(iid, object); });
    test::Boxes boxes;
    RawObject::calls.clear();
    EXPECT_EQ(build(L"from-srt.mp4"), kGraphBuilt);
    expectCalls(RawObject::calls, {"method 2 1", "method 3"});
}

// The other side: the simulated filters, asked through nothing but identifiers and slots.
class RawInterface {
public:
    RawInterface(IUnknown* object, const wchar_t* id) {
        EXPECT_EQ(object->QueryInterface(guid(id), &interface_), S_OK);
    }
    ~RawInterface() { static_cast<IUnknown*>(interface_)->Release(); }
    template <typename... Arguments>
    HRESULT call(int method, Arguments... arguments) {
        using Method = HRESULT(STDMETHODCALLTYPE*)(void*, Arguments...);
        const auto table = *static_cast<void***>(interface_);
        return reinterpret_cast<Method>(table[2 + method])(interface_, arguments...);
    }

private:
    void* interface_ = nullptr;
};

TEST_F(Contract, SimulatedFiltersHaveTheMethodsUnderTheirNumbers) {
    ASSERT_EQ(build(L"captions.mp4"), kGraphBuilt);
    const auto find = [this](const wchar_t* name) {
        platform::ComPtr<IBaseFilter> filter;
        EXPECT_EQ(control_.builder()->FindFilterByName(name, filter.out()), S_OK) << name;
        return filter;
    };
    const auto demux = find(L"TCC CDK Demux Filter");
    const auto renderer = find(L"TCC Video Renderer");
    const auto parser = find(L"TCC Caption Parser");
    ASSERT_TRUE(find(L"TCC Caption Renderer") && find(L"Audio Renderer"));
    DWORD value = 0;
    EXPECT_EQ(RawInterface(demux.get(), kDemuxValues).call(1, &value), S_OK);
    EXPECT_EQ(value, 1u);
    value = 0;
    EXPECT_EQ(RawInterface(demux.get(), kDemuxValues).call(2, &value), S_OK);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(RawInterface(demux.get(), kDemuxOptions).call(1, &value), S_OK);
    EXPECT_EQ(value, 0x31637661u);  // "avc1"
    EXPECT_EQ(RawInterface(demux.get(), kDemuxOptions).call(2, DWORD{1}), S_OK);
    EXPECT_EQ(RawInterface(demux.get(), kAudioStreams).call(1, &value), S_OK);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(RawInterface(demux.get(), kAudioStreams).call(2, &value), S_OK);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(RawInterface(demux.get(), kSelection).call(1, DWORD{1}), E_INVALIDARG);
    EXPECT_EQ(RawInterface(demux.get(), kSelection).call(1, DWORD{0}), S_OK);
    EXPECT_EQ(RawInterface(demux.get(), kFilterStatus).call(1, &value), S_OK);
    EXPECT_EQ(value, 1u);
    RawInterface owner(renderer.get(), kOwnerWindow);
    EXPECT_EQ(owner.call(2, window_), S_OK);
    EXPECT_EQ(owner.call(6, DWORD{0}), S_OK);
    EXPECT_EQ(RawInterface(renderer.get(), kRenderSwitch).call(1, DWORD{10}), S_OK);
    RawInterface key(renderer.get(), kChromaKey);
    EXPECT_EQ(key.call(1, DWORD{0xF8}, DWORD{0}, DWORD{0xF8}), S_OK);
    EXPECT_EQ(key.call(2, DWORD{1}), S_OK);
    // The method of the key takes it: the graphics layer becomes opaque where it is switched off.
    BYTE alpha = 0;
    DWORD flags = 0;
    COLORREF colour = 0;
    ASSERT_TRUE(GetLayeredWindowAttributes(window_, &colour, &alpha, &flags));
    EXPECT_EQ(flags, static_cast<DWORD>(LWA_COLORKEY));
    EXPECT_EQ(colour, RGB(0xF8, 0, 0xF8));
    RawInterface control(parser.get(), kParserControl);
    EXPECT_EQ(control.call(2, DWORD{3}), S_OK);
    EXPECT_EQ(control.call(2, DWORD{4}), E_INVALIDARG);
    EXPECT_EQ(control.call(3, 1.5), S_OK);
    EXPECT_EQ(control.call(3, -1.5), E_INVALIDARG);
    EXPECT_EQ(control.call(4, DWORD{1}, DWORD{2}), S_OK);
    for (const wchar_t* id : {kStart1, kStart2}) {
        EXPECT_EQ(RawInterface(renderer.get(), id).call(1, DWORD{0}), S_OK);
    }
}

TEST_F(Contract, CaptionClassesAreThoseOfTheVendor) {
    for (const wchar_t* id :
         {L"{F52BDB25-E177-4F29-9D7A-3D9F54BC9166}", L"{61C4E71C-8BC4-40D1-B2B1-18FFA7F8BF94}"}) {
        platform::ComPtr<IBaseFilter> filter;
        EXPECT_EQ(CoCreateInstance(guid(id), nullptr, CLSCTX_INPROC_SERVER, IID_IBaseFilter,
                                   filter.outVoid()),
                  S_OK);
    }
    EXPECT_EQ(RegisterWindowMessageW(L"TCC_CDK_DEMUX_FILTER_READ_FAIL"),
              RegisterWindowMessageW(vendor::kReadFailMessage));
}

}  // namespace
