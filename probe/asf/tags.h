// The texts of an ASF header: the Content Description Object and the Extended Content Description
// Object (Advanced Systems Format Specification 1.20.03, sections 3.10 and 3.11).
#pragma once

#include "probe/asf/header.h"
#include "probe/read/file_cursor.h"

namespace probe {

// Both begin behind the object's header and leave the cursor anywhere.

// Takes the title and, as the artist, the author, where they are not empty.
void readAsfContentDescription(FileCursor& cursor, AsfReader& reader);

// Takes the attributes that the record has fields for.
void readAsfExtendedContentDescription(FileCursor& cursor, AsfReader& reader);

}  // namespace probe
