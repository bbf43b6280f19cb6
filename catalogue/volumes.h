// The storage volumes of the unit and the recordings that the player accepts.
#pragma once

#include <array>
#include <cstdint>

namespace catalogue {

// Folders at the root of the file system. Memory cards hold the slots from 0, USB storage those
// from kFirstUsbVolume.
inline constexpr std::array<const char16_t*, 6> StorageVolumeNames = {
    u"SDMMCDisk", u"SDMMCDisk2", u"USB", u"USB2", u"USB3", u"USB4"};
inline constexpr std::int32_t kFirstUsbVolume = 2;

// Compared with the last three characters of a file name, so that "peg" stands for mpeg and "mvb"
// for rmvb, and the two-letter rows never match; they are kept all the same. Required.
inline constexpr std::array<const char16_t*, 26> VideoExtensions = {
    u"avi", u"mpg", u"peg", u"asf", u"mkv", u"ogm", u"mp4", u"wmv", u"3gp",
    u"k3g", u"rm",  u"mvb", u"mov", u"AVI", u"MPG", u"PEG", u"ASF", u"MKV",
    u"OGM", u"MP4", u"WMV", u"3GP", u"K3G", u"RM",  u"MVB", u"MOV"};

// Tables of the same shape that no listing consults.
inline constexpr std::array<const char16_t*, 16> AudioExtensions = {
    u"mp3", u"wav", u"wma", u"mid", u"ogg", u"m4a", u"acc", u"awb",
    u"MP3", u"WAV", u"WMA", u"MID", u"OGG", u"M4A", u"ACC", u"AWB"};
inline constexpr std::array<const char16_t*, 12> ImageExtensions = {
    u"bmp", u"jpg", u"peg", u"gif", u"png", u"ico", u"BMP", u"JPG", u"PEG", u"GIF", u"PNG", u"ICO"};

// True when the whole name is that of a storage volume.
[[nodiscard]] bool isStorageVolume(const char16_t* name);

// The name of a volume slot, null outside 0 to 5.
[[nodiscard]] const char16_t* volumeName(std::int64_t slot);

// True when the name ends in one of VideoExtensions. No dot is asked for.
[[nodiscard]] bool isRecording(const char16_t* name);

// True when the first component of `path` is exactly `volume`.
[[nodiscard]] bool liesOnVolume(const char16_t* path, const char16_t* volume);

}  // namespace catalogue
