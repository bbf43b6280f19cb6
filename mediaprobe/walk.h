// From what stands on the command line to single files: folders, lists, standard input.
#pragma once

#include "mediaprobe/crew.h"
#include "mediaprobe/options.h"

namespace mediaprobe {

// Hands every file of the sources to the crew, in order.
void walkSources(const Options& options, Crew& crew);

}  // namespace mediaprobe
