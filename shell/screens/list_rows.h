// The rows of the file list, from the catalogue's browse listing.
#pragma once

#include "catalogue/catalogue.h"
#include "ui/list_screen.h"

namespace screens {

// Fills the rows with the page of the browse listing that is showing.
void fillRows(const catalogue::CatalogueFields& fields, ui::ListRows& table);

}  // namespace screens
