#include "scene.h"

#include "catalogue/folder_listing.h"

namespace ui_test {

Stage::Stage(const char16_t* skinFolder) : source_(CreateCompatibleDC(nullptr)) {
    for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
        ui::loadSet(static_cast<ui::SkinSet>(set), screens, nullptr, skinFolder);
    }
    constexpr std::array<LONG, 4> kHeights = {18, 25, 24, 16};
    for (std::size_t i = 0; i < fonts_.size(); ++i) {
        LOGFONTW font{};
        font.lfHeight = kHeights[i];
        font.lfWeight = FW_BOLD;
        font.lfCharSet = DEFAULT_CHARSET;
        font.lfQuality = ANTIALIASED_QUALITY;
        lstrcpyW(font.lfFaceName, L"나눔고딕");
        fonts_[i] = CreateFontIndirectW(&font);
    }
}

Stage::~Stage() {
    for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
        ui::unloadSet(static_cast<ui::SkinSet>(set), screens);
    }
    for (const HFONT font : fonts_) {
        DeleteObject(font);
    }
    DeleteDC(source_);
}

void Stage::paint(const Scene& scene, HDC target, const ui::Rect& damaged) const {
    ui::ScreenState shown = screens;
    const std::string missing = std::string(" ") + scene.missing + " ";
    for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
        for (std::size_t slot = 0; slot < ui::kSlotsPerSet; ++slot) {
            const std::string name = " " + std::string(1, "ABCD"[set]) + std::to_string(slot) + " ";
            if (missing.find(name) != std::string::npos) {
                shown.bitmaps[set][slot] = nullptr;
            }
        }
    }
    const int saved = SaveDC(target);
    {
        ui::GdiCanvas canvas(target, source_, shown, fonts_, damaged);
        switch (scene.screen) {
            case Screen::Full:
                ui::paintFullWidth(canvas, scene.view, damaged);
                break;
            case Screen::Half:
                ui::paintHalfWidth(canvas, scene.view, damaged);
                break;
            case Screen::Slide:
                ui::paintSlide(canvas, scene.view, damaged);
                break;
            case Screen::List: {
                ui::ListView list = scene.list;
                list.table = &scene.rows;
                ui::paintFileList(canvas, list, damaged);
                break;
            }
        }
    }
    RestoreDC(target, saved);
    GdiFlush();
}

ui::PlayerView playingView() {
    ui::PlayerView view;
    view.playing = true;
    view.audible = true;
    view.volume = 5;
    view.displayedPosition = 83;
    view.duration = 240;
    view.hour = 14;
    view.minute = 48;
    view.fileName = u"20260314_081500_F.avi";
    return view;
}

void setRow(ui::ListRows& table, std::size_t row, ui::RowKind kind, std::int32_t slot,
            const char16_t* name) {
    table.rows[row].kind = kind;
    table.rows[row].slot = slot;
    catalogue::copyPath(table.rows[row].name, name);
}

}  // namespace ui_test
