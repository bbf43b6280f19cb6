// The bitmaps of the skin: which file stands in which slot of which set.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace ui {

enum class SkinSet : std::int32_t {
    FullWidth,  // A
    HalfWidth,  // B
    FileList,   // C
    Slide,      // D
};
inline constexpr std::size_t kSkinSets = 4;
inline constexpr std::size_t kSlotsPerSet = 51;

// One bitmap of the skin.
struct Bitmap {
    SkinSet set;
    std::int32_t slot;
    friend constexpr bool operator==(const Bitmap&, const Bitmap&) = default;
};

struct SlotRow {
    std::int32_t slot;
    char16_t folder;  // below the skin's folder: A to D
    const char16_t* file;
};

// The files of a set in loading order. Slots that are not named stay empty.
std::span<const SlotRow> slotTable(SkinSet set);

// Set A.
enum FullSlot : std::int32_t {
    kFullFirstHeld = 13,  // the held faces of the keys, in the order of the keys
    kFullBlock = 0,
    kFullBackground = 1,
    kFullControlBar = 2,
    kFullTitleBar = 3,
    kFullCloseArea = 4,
    kFullProgress = 5,
    kFullVolume = 6,
    kFullPrevious = 7,
    kFullNext = 8,
    kFullFront = 9,
    kFullFrontHeld = 10,
    kFullRear = 11,
    kFullRearHeld = 12,
    kFullVolumeIcon = 24,
    kFullKnob = 25,
    kFullMorning = 28,
    kFullAfternoon = 29,
    kFullDigits = 30,
    kFullPause = 40,
    kFullPauseHeld = 41,
    kFullList = 42,
    kFullHome = 44,
    kFullNavigation = 46,
    kFullMuted = 48,
    kFullMutedHeld = 49,
    kFullCache = 50,  // the background in the screen's own pixel format, made at load
};

// Set B.
enum HalfSlot : std::int32_t {
    kHalfFirstHeld = 4,  // the held faces of the keys, in the order of the keys
    kHalfBlock = 0,
    kHalfBackground = 1,
    kHalfProgress = 2,
    kHalfVolume = 3,
    kHalfVolumeIcon = 14,
    kHalfKnob = 15,
    kHalfPause = 17,
    kHalfPauseHeld = 18,
    kHalfMuted = 19,
    kHalfMutedHeld = 20,
};

// Set C. All bins share the held face of the first, and so do all rows.
enum ListSlot : std::int32_t {
    kListFirstHeld = 3,  // the held faces of the keys, in the order of the keys
    kListBackground = 0,
    kListPlayingMark = 1,
    kListBin = 2,
    kListThumb = 7,
    kListBinHeld = 8,
    kListRowHeld = 16,
    kListFile = 23,
    kListFolder = 24,
    kListCard = 25,
    kListUsb = 26,
};

// Set D.
enum SlideSlot : std::int32_t {
    kSlideBlock = 0,
    kSlideFace = 1,
    kSlideMutedFace = 2,
    kSlideBackground = 3,
    kSlideLevels = 4,  // 11 pictures, one for each level
};

}  // namespace ui
