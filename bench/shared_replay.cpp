#include "bench/shared_replay.h"

#include "bench/make_callbacks.h"

namespace bench {

void ReplayFromSharedObject(std::span<const RecordedCallback> callbacks, const vessa::HostServices& host) {
  MakeCallbacks(callbacks, host);
}

}  // namespace bench
