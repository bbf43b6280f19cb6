// Fuzz target: the input is the unit's settings file.
#include "settings/ini_store.h"
#include "tests/fuzz/settings/unit.h"

namespace {

constexpr char kFile[] = "ResidentFlash2/Data/Config.ini";
constexpr char16_t kPath[] = u"ResidentFlash2\\Data\\Config.ini";

std::string rewritten(const fuzz::Unit& unit) {
    fuzz::require(settings::writeIniString(u"TRIP", u"AppProgram", u"5", kPath) == 1);
    return unit.contents(kFile);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Unit unit;
    unit.put(kFile, {data, size});
    const std::string bytes(data, data + size);
    constexpr char kTextEnd = 0x1A;
    if (bytes.find(kTextEnd) != std::string::npos) {
        fuzz::require(settings::writeIniString(u"TRIP", u"AppProgram", u"5", kPath) == 0);
        fuzz::require(unit.contents(kFile) == bytes);
        return 0;
    }
    const std::int32_t before = settings::readIniInt(u"TRIP", u"AppProgram", -1, kPath);
    const std::string once = rewritten(unit);
    const std::string twice = rewritten(unit);
    // A file that ends within a section name, a key or a value swallows the line that is appended
    // to it; the next write then appends once more, or finds the older line. After that it stands.
    fuzz::require(settings::readIniInt(u"TRIP", u"AppProgram", -1, kPath) == 5);
    fuzz::require(rewritten(unit) == twice);
    // Where the key could be read its line was replaced, and a second write finds it so.
    fuzz::require(before == -1 || once == twice);
    return 0;
}
