// What the tests tell the double of the skin.
#pragma once

#include "ui/canvas.h"

namespace test {

struct SkinDouble {
    ui::Canvas* canvas = nullptr;  // that the window is painted with; null: it is not
};
SkinDouble& skin();

}  // namespace test
