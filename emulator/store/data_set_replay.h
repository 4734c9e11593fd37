#pragma once

#include <string>

#include "emulator/content_sink.h"
#include "emulator/store/data_store.h"

namespace emulator {

/// Tells a sink what is stored of a data set, as if it were decomposed: sequences and items with undefined lengths,
/// the pixel data from their stream. Group 0002 is not told.
/// @throws StoreError  the data set is not there or not complete
void ReplayDataSet(StoreTransaction& transaction, const std::string& id, ContentSink& sink);

}  // namespace emulator
