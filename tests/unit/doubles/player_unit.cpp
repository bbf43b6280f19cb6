#include "tests/unit/doubles/player_unit.h"

#include <string>

namespace test {
namespace {

void add(std::string& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
}

void add16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8 & 0xFF);
}

std::string chunk(const std::string& name, const std::string& body) {
    std::string bytes = name;
    add(bytes, static_cast<std::uint32_t>(body.size()));
    return bytes + body;
}

std::string list(const std::string& type, const std::string& body) {
    return chunk("LIST", type + body);
}

// AVISTREAMHEADER, 56 bytes: type, handler and 48 bytes of which only scale and rate are set.
std::string streamHeader(const std::string& type, const std::string& handler) {
    std::string bytes = type + handler + std::string(12, '\0');
    add(bytes, 1);   // scale
    add(bytes, 25);  // rate
    return bytes + std::string(28, '\0');
}

}  // namespace

std::string smallRecording(std::uint32_t width, std::uint32_t height) {
    std::string mainHeader;
    add(mainHeader, 40000);  // microseconds a frame
    for (int i = 0; i < 3; ++i) {
        add(mainHeader, 0);
    }
    add(mainHeader, 25);  // frames
    add(mainHeader, 0);
    add(mainHeader, 2);  // streams
    add(mainHeader, 0);
    add(mainHeader, width);
    add(mainHeader, height);
    mainHeader += std::string(16, '\0');

    std::string picture;  // BITMAPINFOHEADER
    add(picture, 40);
    add(picture, width);
    add(picture, height);
    add16(picture, 1);
    add16(picture, 24);
    picture += "XVID" + std::string(20, '\0');

    std::string sound;  // WAVEFORMATEX
    add16(sound, 0x55);
    add16(sound, 2);
    add(sound, 44100);
    add(sound, 16000);
    add16(sound, 1);
    add16(sound, 0);

    const std::string streams =
        list("strl", chunk("strh", streamHeader("vids", "XVID")) + chunk("strf", picture)) +
        list("strl",
             chunk("strh", streamHeader("auds", std::string(4, '\0'))) + chunk("strf", sound));
    return chunk("RIFF", "AVI " + list("hdrl", chunk("avih", mainHeader) + streams) +
                             list("movi", std::string(64, '\0')));
}

void PlayerUnit::SetUp() {
    UnitFolder::SetUp();
    std::destroy_at(&appState);
    std::construct_at(&appState);
    freshUnit();
    freshGraph();
    appState.mainWindow = playerWindow();
    appState.lastSkipTick = unit().milliseconds - 60000;
}

void PlayerUnit::TearDown() {
    UnitFolder::TearDown();
}

void PlayerUnit::recordings(int count, std::int32_t index) {
    for (int i = 1; i <= count; ++i) {
        const std::string name = std::to_string(i);
        put("SDMMCDisk/Record/" + std::string(name.size() < 2 ? "0" : "") + name + ".avi",
            smallRecording());
    }
    makeFolder("SDMMCDisk/Record");
    makeFolder("ResidentFlash2/Data");
    appState.connectMode = 1;  // lists by name
    catalogue::ListPlayFolder(appState, kRecord);
    appState.connectMode = 0;
    appState.persisted.fileIndex = index;
    taken();
}

}  // namespace test
