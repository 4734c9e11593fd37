#pragma once

namespace emulator {

/// What holds after every case, however the input or the host misbehaved: the library answers the next calls as if
/// nothing had been. Decomposes a small data set, asks for one element of it and looks a tag up, on a host of its own.
void ExpectTheNextCallsToWork();

}  // namespace emulator
