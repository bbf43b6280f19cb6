// The chain of recognisers. Each looks at the head of the file and returns 0, leaving the file to
// the next one, or claims it: then it fills the record as far as it can and returns 1, whatever
// its parser came to.
#pragma once

#include <span>

#include "probe/read/read_window.h"
#include "probe/record/media_record.h"

namespace probe {

struct Recogniser {
    const char* name;     // "RIFF: AVI and WAVE"
    const char* looksAt;  // what it decides by, for people
    int (*recognise)(MediaRecord& record, ReadWindow& file);
};

// All ten, in the order in which they are tried. The order is required: the MPEG audio scan would
// claim frames inside other containers if it ran before those with a fixed header.
std::span<const Recogniser> recognisers();

// Asks them in turn: the one that claims the file, or null when none does.
const Recogniser* askRecognisers(MediaRecord& record, ReadWindow& file);

}  // namespace probe
