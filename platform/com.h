// The player's COM apartment and the one object in it that is not part of a graph.
#pragma once

struct IUnknown;

namespace platform {

void enterCom();
void leaveCom();

// The imaging factory of Windows CE. Null where there is none: other systems go on without.
[[nodiscard]] IUnknown* createImagingFactory();

// Gives the reference back; nothing for null.
void releaseObject(IUnknown* object);

}  // namespace platform
