// The player's COM apartment and the one object in it that is not part of a graph.
#pragma once

struct IUnknown;

namespace platform {

// Entering counts if it succeeds; leaving takes one success back and is nothing without one. What
// is still held of COM's objects is given back before.
void enterCom();
void leaveCom();

// The imaging factory of Windows CE. Null where there is none: other systems go on without.
[[nodiscard]] IUnknown* createImagingFactory();

// Gives the reference back; nothing for null.
void releaseObject(IUnknown* object);

}  // namespace platform
