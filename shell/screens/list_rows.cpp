#include "shell/screens/list_rows.h"

#include <string_view>

#include "ui/skin_slots.h"

namespace screens {
namespace {

static_assert(ui::kListRows == catalogue::kRowsPerPage);

std::int32_t folderIcon(const catalogue::CatalogueFields& fields, const char16_t* name) {
    catalogue::PathBuffer path;
    if (fields.browseListing.GetPath(path) == 1) {
        return ui::kListFolder;
    }
    return std::u16string_view(name).starts_with(u"SDMMC") ? ui::kListCard : ui::kListUsb;
}

}  // namespace

void fillRows(const catalogue::CatalogueFields& fields, ui::ListRows& table) {
    const bool samePlayFolder = catalogue::browsesPlayFolder(fields);
    const std::int32_t first = fields.browsePage * ui::kListRows;
    for (std::int32_t r = 0; r < ui::kListRows; ++r) {
        ui::ListRow& row = table.rows[static_cast<std::size_t>(r)];
        row = {};
        const std::int32_t entry = first + r;
        const std::int32_t file = entry - fields.browseFolderCount;
        if (entry < fields.browseFolderCount) {
            if (fields.browseListing.GetFolderName(entry, row.name) == 1) {
                row.kind = ui::RowKind::Folder;
                row.slot = folderIcon(fields, row.name);
            }
        } else if (file < fields.browseFileCount &&
                   fields.browseListing.GetFileName(file, row.name) == 1) {
            row.kind = ui::RowKind::File;
            row.slot = ui::kListFile;
            row.playing = samePlayFolder && file == fields.playIndex;
        }
    }
}

}  // namespace screens
