// The file list.
#include "ui/paint.h"
#include "ui/title_text.h"

namespace ui {
namespace {

constexpr Font kNameFont = Font::Height24;
constexpr Font kTitleFont = Font::Height25;
constexpr std::int32_t kThumbLeft = 650;
constexpr Point kParentFace = {602, 0};
constexpr std::int32_t kIconWidth = 78;  // of a row's face, before its paper begins
// The marks of the background that are covered where they lead nowhere.
constexpr Rect kParentMark = {603, 2, 700, 44};
constexpr Rect kPageUpTile = {654, 69, 766, 163};
constexpr Rect kPageDownTile = {654, 369, 766, 463};

constexpr Bitmap face(std::int32_t slot) {
    return {SkinSet::FileList, slot};
}

const Rect& areaOf(std::int32_t key) {
    return kListKeys[static_cast<std::size_t>(key)].area;
}
Point cornerOf(std::int32_t key) {
    return {areaOf(key).left, areaOf(key).top};
}

void paintTitle(Canvas& canvas, const ListView& view, const Rect& damaged) {
    const Rect& area = areaOf(kListTitleArea);
    if (!meets(area, damaged)) {
        return;
    }
    TitleText title;
    fitTitle(canvas, kTitleFont, view.path, area.right - area.left, title);
    canvas.drawRegion(face(kListBackground), area);
    canvas.text(title, kTitleFont, kWhite, area, kBottomText);
}

void cover(Canvas& canvas, const Rect& mark, const Rect& damaged) {
    if (meets(mark, damaged)) {
        canvas.fill(mark, kSurfaceColour);
    }
}

// Set C has no faces for what cannot be used.
void coverDeadEnds(Canvas& canvas, const ListView& view, const Rect& damaged) {
    if (!view.hasParent) {
        cover(canvas, kParentMark, damaged);
    }
    if (view.page <= 0) {
        cover(canvas, kPageUpTile, damaged);
    }
    if (view.page >= view.pageCount - 1) {
        cover(canvas, kPageDownTile, damaged);
    }
}

// What stands on a row's face.
void paintEntry(Canvas& canvas, const ListRow& row, std::int32_t r) {
    if (row.kind == RowKind::File) {
        canvas.drawTransparent(face(kListBin), cornerOf(kListBinKeys + r));
    }
    canvas.text(row.name, kNameFont, kBlack, areaOf(kListTextAreas + r), kMiddleWithEllipsis);
    if (row.playing) {
        canvas.drawTransparent(face(kListPlayingMark), cornerOf(kListRowKeys + r));
    }
}

void paintRows(Canvas& canvas, const ListView& view, const Rect& damaged) {
    for (std::int32_t r = 0; r < kListRows; ++r) {
        if (meets(areaOf(kListRowKeys + r), damaged)) {
            const ListRow& row = view.table->rows[static_cast<std::size_t>(r)];
            if (row.kind != RowKind::Empty) {
                canvas.drawTransparent(face(row.slot), cornerOf(kListRowKeys + r));
                paintEntry(canvas, row, r);
            }
        }
    }
}

void paintPressedRow(Canvas& canvas, const ListView& view, std::int32_t r) {
    const ListRow& row = view.table->rows[static_cast<std::size_t>(r)];
    if (row.kind != RowKind::Empty) {
        const Rect& area = areaOf(kListRowKeys + r);
        canvas.draw(face(kListRowHeld), cornerOf(kListRowKeys + r));
        // The icon alone: the paper of the row's face would hide the background.
        canvas.drawTransparentInto(face(row.slot),
                                   {area.left, area.top, area.left + kIconWidth, area.bottom});
        paintEntry(canvas, row, r);
    }
}

void paintPressedBin(Canvas& canvas, const ListView& view, std::int32_t r) {
    if (view.table->rows[static_cast<std::size_t>(r)].kind == RowKind::File) {
        canvas.drawTransparent(face(kListBinHeld), cornerOf(kListBinKeys + r));
    }
}

void paintPressed(Canvas& canvas, const ListView& view) {
    const std::int32_t key = view.pressedKey;
    if (view.goingUp) {
        canvas.draw(face(kListKeys[kListParentKey].pressedSlot), kParentFace);
    } else if (isRowKey(key)) {
        paintPressedRow(canvas, view, key - kListRowKeys);
    } else if (isBinKey(key)) {
        paintPressedBin(canvas, view, key - kListBinKeys);
    } else if (key >= 0) {
        const std::int32_t slot = kListKeys[static_cast<std::size_t>(key)].pressedSlot;
        if (slot != kNoFace) {
            canvas.draw(face(slot), cornerOf(key));
        }
    }
}

}  // namespace

void paintFileList(Canvas& canvas, const ListView& view, const Rect& damaged) {
    // Without its background: a grey on which white and black can be read.
    constexpr Colour kGrey = 0x808080;
    paintBackground(canvas, face(kListBackground), damaged, kGrey);
    coverDeadEnds(canvas, view, damaged);
    paintTitle(canvas, view, damaged);
    paintRows(canvas, view, damaged);
    paintPressed(canvas, view);
    if (meets(areaOf(kListTrackKey), damaged)) {
        canvas.drawTransparent(face(kListThumb),
                               {kThumbLeft, thumbY(view.page, view.pageCount) - kHalfThumb});
    }
}

}  // namespace ui
