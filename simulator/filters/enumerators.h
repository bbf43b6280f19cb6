// The two enumerators that every filter needs: of its pins and of a pin's media types. Both walk a
// fixed copy of the list, so they never go out of step with their filter.
#pragma once

#include <dshow.h>
#include <wrl/client.h>

#include <vector>

#include "simulator/filters/media_type.h"

namespace filters {

using Microsoft::WRL::ComPtr;

using PinList = std::vector<ComPtr<IPin>>;
using TypeList = std::vector<MediaType>;

// Both return E_POINTER or E_OUTOFMEMORY on failure; the caller releases `*out`.
HRESULT enumeratePins(const PinList& pins, IEnumPins** out);
HRESULT enumerateTypes(const TypeList& types, IEnumMediaTypes** out);

}  // namespace filters
