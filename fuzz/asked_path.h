#pragma once

#include <deque>

#include "emulator/list.h"
#include "fuzz/content_events.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/query_model.h"

namespace fuzz {

/// The path of one of the data set's values, or one beside it, as the input says.
Path ChoosePath(FuzzInput& input, const std::deque<Event>& events);

/// The property list of a path: its entries as signed numbers of 32 bits.
emulator::ListBuilder PropertyList(const Path& path);

}  // namespace fuzz
