#include "ui/skin_slots.h"

namespace ui {
namespace {

constexpr auto kFullSet = std::to_array<SlotRow>({
    {kFullBlock, u'A', u"view_block.bmp"},
    {kFullBackground, u'A', u"movie.bmp"},
    {kFullControlBar, u'A', u"video_bg_control.bmp"},
    {kFullTitleBar, u'A', u"video_bg_title.bmp"},
    {kFullCloseArea, u'A', u"video_bg_close.bmp"},
    {kFullProgress, u'A', u"prog_bar.bmp"},
    {kFullVolume, u'A', u"vol_bar.bmp"},
    {kFullPrevious, u'A', u"ch_left.bmp"},
    {kFullNext, u'A', u"ch_right.bmp"},
    {kFullFront, u'A', u"button_front.bmp"},
    {kFullFrontHeld, u'A', u"button_front_on.bmp"},
    {kFullRear, u'A', u"button_rear.bmp"},
    {kFullRearHeld, u'A', u"button_rear_on.bmp"},
    {13, u'A', u"btn01_home_on.bmp"},
    {14, u'A', u"btn02_navi_on.bmp"},
    {15, u'A', u"btn03_close_on.bmp"},
    {16, u'A', u"ch_left_on.bmp"},
    {17, u'A', u"btn02_play_on.bmp"},
    {18, u'A', u"btn03_stop_on.bmp"},
    {19, u'A', u"ch_right_on.bmp"},
    {20, u'A', u"listup_icon_on.bmp"},
    {21, u'A', u"btn05_minus_on.bmp"},
    {22, u'A', u"btn04_mute_on.bmp"},
    {23, u'A', u"btn06_plus_on.bmp"},
    {kFullVolumeIcon, u'A', u"vol_icon.bmp"},
    {kFullKnob, u'A', u"prog_point.bmp"},
    {kFullMorning, u'A', u"time_am.bmp"},
    {kFullAfternoon, u'A', u"time_pm.bmp"},
    {30, u'A', u"time_0.bmp"},
    {31, u'A', u"time_1.bmp"},
    {32, u'A', u"time_2.bmp"},
    {33, u'A', u"time_3.bmp"},
    {34, u'A', u"time_4.bmp"},
    {35, u'A', u"time_5.bmp"},
    {36, u'A', u"time_6.bmp"},
    {37, u'A', u"time_7.bmp"},
    {38, u'A', u"time_8.bmp"},
    {39, u'A', u"time_9.bmp"},
    {kFullPause, u'A', u"btn02_halt_non.bmp"},
    {kFullPauseHeld, u'A', u"btn02_halt_on.bmp"},
    {kFullList, u'A', u"listup_icon_non.bmp"},
    {43, u'A', u"listup_icon_on.bmp"},
    {kFullHome, u'A', u"btn01_home_non.bmp"},
    {45, u'A', u"btn01_home_on.bmp"},
    {kFullNavigation, u'A', u"btn02_navi_non.bmp"},
    {47, u'A', u"btn02_navi_on.bmp"},
    {kFullMuted, u'A', u"btn04_muteoff_non.bmp"},
    {kFullMutedHeld, u'A', u"btn04_muteoff_on.bmp"},
});

constexpr auto kHalfSet = std::to_array<SlotRow>({
    {kHalfBlock, u'B', u"view_block.bmp"},
    {kHalfBackground, u'B', u"video_PIP.bmp"},
    {kHalfProgress, u'B', u"prog_bar.bmp"},
    {kHalfVolume, u'A', u"vol_bar.bmp"},  // borrowed
    {4, u'B', u"btn_home_on.bmp"},
    {5, u'B', u"btn_close_on.bmp"},
    {6, u'B', u"btn02_back_on.bmp"},
    {7, u'B', u"btn03_play_on.bmp"},
    {8, u'B', u"btn04_stop_on.bmp"},
    {9, u'B', u"btn05_next_on.bmp"},
    {10, u'B', u"btn01_list_on.bmp"},
    {11, u'B', u"btn05_minus_on.bmp"},
    {12, u'B', u"btn04_muteoff_on.bmp"},
    {13, u'B', u"btn06_plus_on.bmp"},
    {kHalfVolumeIcon, u'B', u"vol_icon.bmp"},
    {kHalfKnob, u'B', u"prog_point.bmp"},
    {kHalfPause, u'B', u"btn03_halt_non.bmp"},
    {kHalfPauseHeld, u'B', u"btn03_halt_on.bmp"},
    {kHalfMuted, u'B', u"btn04_muteoff_non.bmp"},
    {kHalfMutedHeld, u'B', u"btn04_mute_on.bmp"},
});

constexpr auto kListSet = std::to_array<SlotRow>({
    {kListBackground, u'C', u"list_bg.bmp"},
    {kListPlayingMark, u'C', u"list_title_play.bmp"},
    {kListBin, u'C', u"icon_bin_non.bmp"},
    {3, u'C', u"btn01_up_on.bmp"},
    {4, u'C', u"btn01_close_on.bmp"},
    {5, u'C', u"list02_up_on.bmp"},
    {6, u'C', u"list04_down_on.bmp"},
    {kListThumb, u'C', u"scroll_icon.bmp"},
    {kListBinHeld, u'C', u"icon_bin_on.bmp"},
    {kListRowHeld, u'C', u"list_title_on.bmp"},
    {kListFile, u'C', u"icon02_slate.bmp"},
    {kListFolder, u'C', u"icon01_folder.bmp"},
    {kListCard, u'C', u"icon2_sdmmc.bmp"},
    {kListUsb, u'C', u"icon3_usb.bmp"},
});

constexpr auto kSlideSet = std::to_array<SlotRow>({
    {kSlideBlock, u'D', u"view_block.bmp"},
    {kSlideFace, u'D', u"slide.bmp"},
    {kSlideMutedFace, u'D', u"slide_mute.bmp"},
    {kSlideBackground, u'A', u"movie.bmp"},  // borrowed
    {4, u'D', u"vol_0.bmp"},
    {5, u'D', u"vol_1.bmp"},
    {6, u'D', u"vol_2.bmp"},
    {7, u'D', u"vol_3.bmp"},
    {8, u'D', u"vol_4.bmp"},
    {9, u'D', u"vol_5.bmp"},
    {10, u'D', u"vol_6.bmp"},
    {11, u'D', u"vol_7.bmp"},
    {12, u'D', u"vol_8.bmp"},
    {13, u'D', u"vol_9.bmp"},
    {14, u'D', u"vol_10.bmp"},
});

constexpr std::array<std::span<const SlotRow>, kSkinSets> kSets = {kFullSet, kHalfSet, kListSet,
                                                                   kSlideSet};

}  // namespace

std::span<const SlotRow> slotTable(SkinSet set) {
    return kSets[static_cast<std::size_t>(set)];
}

}  // namespace ui
