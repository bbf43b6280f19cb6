// Comparing with the golden pictures of tests/golden/ui.
#pragma once

#include "picture.h"

namespace ui_test {

// The first `width` columns must equal NAME.png; with --update-golden they are written instead.
void expectGolden(const Picture& actual, const char* name, int width);

}  // namespace ui_test
