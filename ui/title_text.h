// The path of the folder that the file list shows, made to fit its place.
#pragma once

#include "platform/folder.h"
#include "ui/canvas.h"

namespace ui {

// Longer than any path: the mark in front may come on top.
using TitleText = char16_t[platform::kPathCapacity + 8];

// Copies `path`; where it is wider than `width` pixels, drops its leading components one at a time
// and puts "\...\" in front of what remains, until it fits or nothing remains.
void fitTitle(Canvas& canvas, Font font, const char16_t* path, std::int32_t width,
              TitleText& title);

}  // namespace ui
