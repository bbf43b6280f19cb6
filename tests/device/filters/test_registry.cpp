// What the graph builder of a unit finds by itself: the chip's filters, and none of a desktop's. A
// search that looks through those, too, costs a first picture more time than all that the player
// does for it.
#include <dshow.h>
#include <gtest/gtest.h>
#include <wrl/client.h>

#include <set>
#include <string>

namespace test {
namespace {

using Microsoft::WRL::ComPtr;

std::set<std::wstring> namesOf(const CLSID& category) {
    std::set<std::wstring> names;
    ComPtr<ICreateDevEnum> devices;
    ComPtr<IEnumMoniker> monikers;
    EXPECT_EQ(
        CoCreateInstance(CLSID_SystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER, IID_ICreateDevEnum,
                         reinterpret_cast<void**>(devices.GetAddressOf())),
        S_OK);
    if (!devices || devices->CreateClassEnumerator(category, &monikers, 0) != S_OK) {
        return names;
    }
    for (ComPtr<IMoniker> moniker; monikers->Next(1, &moniker, nullptr) == S_OK;) {
        ComPtr<IPropertyBag> bag;
        VARIANT name;
        VariantInit(&name);
        if (SUCCEEDED(moniker->BindToStorage(nullptr, nullptr, IID_IPropertyBag,
                                             reinterpret_cast<void**>(bag.GetAddressOf()))) &&
            SUCCEEDED(bag->Read(L"FriendlyName", &name, nullptr))) {
            names.insert(name.bstrVal);
        }
        VariantClear(&name);
        moniker.Reset();
    }
    return names;
}

TEST(Registry, TheGraphBuilderFindsTheUnitsFiltersAlone) {
    EXPECT_EQ(namesOf(CLSID_LegacyAmFilterCategory),
              (std::set<std::wstring>{L"Audio Renderer", L"TCC CDK Demux Filter",
                                      L"TCC NullVideoDec Filter", L"TCC Video Renderer",
                                      L"TCVideoRenderer"}));
}

TEST(Registry, TheGraphBuilderLooksInOneCategoryAlone) {
    EXPECT_EQ(namesOf(CLSID_ActiveMovieCategories),
              (std::set<std::wstring>{L"DirectShow Filters"}));
}

}  // namespace
}  // namespace test
