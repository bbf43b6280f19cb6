// The file list.
#include "ui/paint.h"
#include "ui/title_text.h"

namespace ui {
namespace {

constexpr Font kNameFont = Font::Height24;
constexpr Font kTitleFont = Font::Height25;
constexpr std::int32_t kThumbLeft = 650;
constexpr Point kParentFace = {602, 0};

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

// `bin` is the face of the row's bin.
void paintRow(Canvas& canvas, const ListRow& row, std::int32_t r, std::int32_t bin) {
    if (row.kind == RowKind::Empty) {
        return;
    }
    canvas.drawTransparent(face(row.slot), cornerOf(kListRowKeys + r));
    if (row.kind == RowKind::File) {
        canvas.drawTransparent(face(bin), cornerOf(kListBinKeys + r));
    }
    canvas.text(row.name, kNameFont, kBlack, areaOf(kListTextAreas + r), kMiddleWithEllipsis);
    if (row.playing) {
        canvas.drawTransparent(face(kListPlayingMark), cornerOf(kListRowKeys + r));
    }
}

void paintRows(Canvas& canvas, const ListView& view, const Rect& damaged) {
    for (std::int32_t r = 0; r < kListRows; ++r) {
        if (meets(areaOf(kListRowKeys + r), damaged)) {
            paintRow(canvas, view.table->rows[static_cast<std::size_t>(r)], r, kListBin);
        }
    }
}

void paintPressedRow(Canvas& canvas, const ListView& view, std::int32_t r) {
    const ListRow& row = view.table->rows[static_cast<std::size_t>(r)];
    if (row.kind != RowKind::Empty) {
        canvas.draw(face(kListRowHeld), cornerOf(kListRowKeys + r));
        paintRow(canvas, row, r, kListBin);
    }
}

void paintPressedBin(Canvas& canvas, const ListView& view, std::int32_t r) {
    if (view.table->rows[static_cast<std::size_t>(r)].kind == RowKind::File) {
        canvas.draw(face(kListBinHeld), cornerOf(kListBinKeys + r));
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
    paintTitle(canvas, view, damaged);
    paintRows(canvas, view, damaged);
    paintPressed(canvas, view);
    if (meets(areaOf(kListTrackKey), damaged)) {
        canvas.drawTransparent(face(kListThumb),
                               {kThumbLeft, thumbY(view.page, view.pageCount) - kHalfThumb});
    }
}

}  // namespace ui
