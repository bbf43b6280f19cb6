// Ratios of what the screens cost to what the bare calls cost, measured alternately in one run.
// Exit status 1 when one is above its limit.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "picture.h"
#include "scene.h"
#include "shell/screens/list_rows.h"

namespace {

using ui_test::Picture;
using ui_test::Scene;
using ui_test::Screen;

double millisecondsOf(const std::function<void()>& work) {
    LARGE_INTEGER frequency, from, to;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&from);
    work();
    GdiFlush();
    QueryPerformanceCounter(&to);
    return 1000.0 * static_cast<double>(to.QuadPart - from.QuadPart) /
           static_cast<double>(frequency.QuadPart);
}

double medianOf(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

bool allHeld = true;

// Runs both in turns and compares their medians.
void compareCost(const char* what, double limit, int rounds, const std::function<void()>& ours,
                 const std::function<void()>& bare) {
    std::vector<double> oursTook, bareTook;
    for (int i = 0; i < rounds; ++i) {
        oursTook.push_back(millisecondsOf(ours));
        bareTook.push_back(millisecondsOf(bare));
    }
    const double ratio = medianOf(oursTook) / medianOf(bareTook);
    allHeld = allHeld && ratio <= limit;
    std::printf("%-52s %8.3f ms, bare %8.3f ms, ratio %.2f (limit %.1f)%s\n", what,
                medianOf(oursTook), medianOf(bareTook), ratio, limit,
                ratio <= limit ? "" : "  ABOVE");
}

// The bitmaps that the full-width screen puts on its background, without any rules around them.
struct BareBlits {
    HBITMAP bitmap;
    int x, y;
    bool keyed;
};

std::vector<BareBlits> blitsOfFullWidth(const ui_test::Stage& stage) {
    const auto& a = stage.screens.bitmaps[0];
    const auto blit = [&](std::size_t slot, int x, int y, bool keyed = false) {
        return BareBlits{static_cast<HBITMAP>(a[slot]), x, y, keyed};
    };
    return {blit(2, 0, 329),    blit(3, 0, 0),      blit(4, 600, 10),      blit(44, 0, 329),
            blit(46, 0, 377),   blit(42, 0, 425),   blit(7, 0, 140, true), blit(8, 660, 140, true),
            blit(40, 632, 425), blit(25, 409, 391), blit(24, 444, 437)};
}

void drawBare(HDC target, HDC source, HBITMAP background, const std::vector<BareBlits>& blits) {
    const HGDIOBJ before = SelectObject(source, background);
    BitBlt(target, 0, 0, 800, 480, source, 0, 0, SRCCOPY);
    for (const BareBlits& b : blits) {
        BITMAP info{};
        GetObjectW(b.bitmap, sizeof(info), &info);
        SelectObject(source, b.bitmap);
        if (b.keyed) {
            TransparentBlt(target, b.x, b.y, info.bmWidth, info.bmHeight, source, 0, 0,
                           info.bmWidth, info.bmHeight, 0xFF00FF);
        } else {
            BitBlt(target, b.x, b.y, info.bmWidth, info.bmHeight, source, 0, 0, SRCCOPY);
        }
    }
    SelectObject(source, before);
}

void measureRepaint(const ui_test::Stage& stage) {
    Picture picture;
    const HDC source = CreateCompatibleDC(nullptr);
    const auto background = static_cast<HBITMAP>(stage.screens.bitmaps[0][ui::kFullCache]);
    const auto blits = blitsOfFullWidth(stage);
    const Scene scene{.name = "", .screen = Screen::Full, .view = ui_test::playingView()};
    compareCost(
        "full repaint to a bare BitBlt and its blits", 2.0, 200,
        [&] {
            stage.paint(scene, picture.device(), {0, 0, 800, 480});
        },
        [&] { drawBare(picture.device(), source, background, blits); });
    compareCost(
        "a position tick to a bare 800 x 480 BitBlt", 1.0, 400,
        [&] {
            stage.paint(scene, picture.device(), {202, 380, 792, 409});
        },
        [&] { drawBare(picture.device(), source, background, {}); });
    DeleteDC(source);
}

void loadBare(const std::wstring& folder) {
    for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
        std::vector<HBITMAP> bitmaps;
        for (const ui::SlotRow& row : ui::slotTable(static_cast<ui::SkinSet>(set))) {
            const std::wstring path = folder + static_cast<wchar_t>(row.folder) + L"\\" +
                                      reinterpret_cast<const wchar_t*>(row.file);
            bitmaps.push_back(static_cast<HBITMAP>(LoadImageW(
                nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION)));
        }
        for (const HBITMAP bitmap : bitmaps) {
            DeleteObject(bitmap);
        }
    }
}

void measureLoading() {
    const std::wstring folder(reinterpret_cast<const wchar_t*>(SKIN_FOLDER));
    ui::ScreenState screens;
    const auto ours = [&] {
        for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
            ui::loadSet(static_cast<ui::SkinSet>(set), screens, nullptr, SKIN_FOLDER);
        }
        for (std::size_t set = 0; set < ui::kSkinSets; ++set) {
            ui::unloadSet(static_cast<ui::SkinSet>(set), screens);
        }
    };
    ours();  // the files are in memory from here on
    compareCost("loading all four sets to the bare loader calls", 1.3, 21, ours,
                [&] { loadBare(folder); });
}

// Lists with so many recordings of an imagined folder.
int entriesOfWalk = 0;
bool imaginedFolder(const char16_t*, platform::EntryVisitor visitor, void* context) {
    for (int i = 0; i < entriesOfWalk; ++i) {
        char16_t name[] = u"0000000.avi";
        for (int digit = 6, rest = i; digit >= 0; --digit, rest /= 10) {
            name[digit] = static_cast<char16_t>(u'0' + rest % 10);
        }
        if (!visitor(context, name, platform::EntryKind::File)) {
            return true;
        }
    }
    return true;
}

// Pages to a place on the track, fills the rows and draws them, as a drag does at each move.
void pageAndPaint(catalogue::CatalogueFields& fields, const ui_test::Stage& stage, HDC target,
                  std::int32_t y) {
    Scene scene{.name = "", .screen = Screen::List, .view = {}};
    fields.browsePage = ui::pageFromTouch(y, fields.browsePageCount);
    screens::fillRows(fields, scene.rows);
    scene.list = {nullptr, u"\\SDMMCDisk", fields.browsePage, fields.browsePageCount, 4,
                  false,   false};
    stage.paint(scene, target, {0, 0, 800, 480});
}

void measureList(const ui_test::Stage& stage) {
    Picture picture;
    static catalogue::CatalogueFields large, small;
    entriesOfWalk = 10000;
    large.browseListing.OpenListing(u"\\SDMMCDisk", catalogue::Order::FileSystem, imaginedFolder);
    large.browseFileCount = large.browseListing.GetFileCount();
    large.browsePageCount = large.browseListing.GetPageCount();
    entriesOfWalk = 10;
    small.browseListing.OpenListing(u"\\SDMMCDisk", catalogue::Order::FileSystem, imaginedFolder);
    small.browseFileCount = small.browseListing.GetFileCount();
    small.browsePageCount = small.browseListing.GetPageCount();
    // Both show a full page: the first of the small list, a late one of the large.
    compareCost(
        "a list of 10,000 to one of 10, paged and painted", 1.2, 200,
        [&] { pageAndPaint(large, stage, picture.device(), 340); },
        [&] { pageAndPaint(small, stage, picture.device(), 200); });
}

}  // namespace

int main() {
    CoInitializeEx(nullptr, 0);
    {
        const ui_test::Stage stage(SKIN_FOLDER);
        if (stage.screens.bitmaps[0][ui::kFullBackground] == nullptr) {
            std::puts("bench_screens: the skin was not made: skin/build.sh");
            return 2;
        }
        measureRepaint(stage);
        measureLoading();
        measureList(stage);
    }
    CoUninitialize();
    return allHeld ? 0 : 1;
}
