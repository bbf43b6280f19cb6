// How a process ends that has had Wine's media library in it.
#pragma once

namespace filters {

// From now on this process ends at once when it asks for its end, without the ends of its libraries
// and threads. Any thread, any number of times.
void endAtOnceFromNowOn();

}  // namespace filters
