// The board's common library: short sounds. A sound is put on the tape and, where the PC has a
// sound device, really heard; it never keeps the caller waiting.
#include <windows.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "simulator/tape/tape.h"

namespace {

constexpr std::uint32_t kSampleRate = 22050;
constexpr std::uint32_t kClickSamples = kSampleRate / 50;  // 20 ms
constexpr std::size_t kHeaderBytes = 44;

struct Click {
    std::array<std::uint8_t, kHeaderBytes + 2 * kClickSamples> file = {};
};

void put32(std::uint8_t* at, std::uint32_t value) {
    std::memcpy(at, &value, sizeof(value));
}

// A WAVE file in memory (RIFF, PCM, one channel of 16 bits): a short 1.2 kHz tone that fades out.
Click makeClick() {
    Click click;
    std::uint8_t* at = click.file.data();
    std::memcpy(at, "RIFF....WAVEfmt ", 16);
    put32(at + 4, static_cast<std::uint32_t>(click.file.size() - 8));
    put32(at + 16, 16);
    put32(at + 20, 0x00010001);  // format tag 1 (PCM), one channel
    put32(at + 24, kSampleRate);
    put32(at + 28, 2 * kSampleRate);
    put32(at + 32, 0x00100002);  // two bytes a frame, 16 bits a sample
    std::memcpy(at + 36, "data", 4);
    put32(at + 40, 2 * kClickSamples);
    for (std::uint32_t i = 0; i < kClickSamples; ++i) {
        const double time = static_cast<double>(i) / kSampleRate;
        const double fade = 1.0 - static_cast<double>(i) / kClickSamples;
        const double wave = std::sin(2.0 * 3.14159265358979 * 1200.0 * time);
        const auto sample = static_cast<std::int16_t>(6000.0 * fade * wave);
        std::memcpy(at + kHeaderBytes + 2 * i, &sample, sizeof(sample));
    }
    return click;
}

// Opening the sound device may take long, so it happens on a thread of its own.
DWORD WINAPI playClick(LPVOID) {
    static const Click click = makeClick();
    if (waveOutGetNumDevs() > 0) {
        PlaySoundW(reinterpret_cast<const wchar_t*>(click.file.data()), nullptr,
                   SND_MEMORY | SND_SYNC | SND_NODEFAULT);
    }
    return 0;
}

}  // namespace

extern "C" __declspec(dllexport) void WINAPI StartPlaySound(int sound) {
    tape::Line("sound").text("from", L"Video").number("sound", sound);
    const HANDLE thread = CreateThread(nullptr, 0, &playClick, nullptr, 0, nullptr);
    if (thread != nullptr) {
        CloseHandle(thread);
    }
}
