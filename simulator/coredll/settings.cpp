#include <array>

#include "simulator/coredll/settings.h"
#include "simulator/tape/faults.h"

namespace coredll {
namespace {

constexpr std::array<const wchar_t*, 4> kNames = {L"AllocationFails", L"CodePage",
                                                  L"UnreadableCharacter", L"ReportMemory"};
std::array<DWORD, kNames.size()> values;

}  // namespace

DWORD setting(Setting setting) {
    return values[static_cast<std::size_t>(setting)];
}

void readSettings() {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        values[i] = tape::fault(kNames[i]);
    }
}

void countDown(Setting setting) {
    --values[static_cast<std::size_t>(setting)];
}

}  // namespace coredll

void coredllSet(coredll::Setting setting, DWORD value) {
    coredll::values[static_cast<std::size_t>(setting)] = value;
}
