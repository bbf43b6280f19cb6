#include "simulator/tape/faults.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>

namespace tape {
namespace {

using Before = bool (*)(const WIN32_FIND_DATAW& a, const WIN32_FIND_DATAW& b);

bool ordinal(const WIN32_FIND_DATAW& a, const WIN32_FIND_DATAW& b) {
    return std::wcscmp(a.cFileName, b.cFileName) < 0;
}

bool reversed(const WIN32_FIND_DATAW& a, const WIN32_FIND_DATAW& b) {
    return ordinal(b, a);
}

// FNV-1a over the code units: stands in for chance, but gives the same order every time.
std::uint32_t hashOf(const wchar_t* name) {
    std::uint32_t hash = 2166136261U;
    for (; *name != 0; ++name) {
        hash = (hash ^ static_cast<std::uint32_t>(*name)) * 16777619U;
    }
    return hash;
}

bool shuffled(const WIN32_FIND_DATAW& a, const WIN32_FIND_DATAW& b) {
    const std::uint32_t first = hashOf(a.cFileName);
    const std::uint32_t second = hashOf(b.cFileName);
    return first != second ? first < second : ordinal(a, b);
}

bool written(const WIN32_FIND_DATAW& a, const WIN32_FIND_DATAW& b) {
    const LONG order = CompareFileTime(&a.ftLastWriteTime, &b.ftLastWriteTime);
    return order != 0 ? order < 0 : ordinal(a, b);
}

}  // namespace

DWORD fault(const wchar_t* name) {
    DWORD value = 0;
    DWORD bytes = sizeof(value);
    const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, L"Software\\HeadUnit\\Faults", name,
                                        RRF_RT_REG_DWORD, nullptr, &value, &bytes);
    return status == ERROR_SUCCESS ? value : 0;
}

void orderEntries(std::vector<WIN32_FIND_DATAW>& entries) {
    constexpr Before kOrders[] = {nullptr, &ordinal, &reversed, &shuffled, &written};
    const DWORD order = fault(L"DirectoryOrder");
    if (order > 0 && order < std::size(kOrders)) {
        std::stable_sort(entries.begin(), entries.end(), kOrders[order]);
    }
}

}  // namespace tape
