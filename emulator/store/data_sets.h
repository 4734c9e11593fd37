#pragma once

// Data sets as a whole, in a store.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "emulator/store/data_store.h"

namespace emulator {

/// What the store knows of a data set besides its elements. See data_set_keys.h.
struct StoredFacts {
  std::string transfer_syntax;     ///< as it was received
  std::string pixels;              ///< name of the stream with the pixel data; empty for none
  bool has_framed_pixels = false;  ///< the stream holds fragments
  bool is_directory = false;       ///< a DICOMDIR, which holds offsets of its own bytes (PS3.3 section F.3)
  bool has_nested_frames = false;  ///< an item holds fragments
};

/// Nothing for a name under which no data set is stored, or one that was stored by others.
std::optional<StoredFacts> FindDataSet(const Globals& nodes, const std::string& id);

/// Every data set's name, in the host's order.
void VisitDataSets(const Globals& nodes, const std::function<void(const std::string& id)>& visit);

/// Removes what is stored under the name.
void RemoveDataSet(StoreTransaction& transaction, const std::string& id);

/// The whole value of an element of the data set itself; nothing when it is not there.
std::optional<std::string> TopLevelValue(const Globals& nodes, const std::string& id, std::uint32_t tag);

/// Why the data set cannot be written in a transfer syntax; nothing when it can. Pixel data are never compressed or
/// decompressed; the offsets in a directory would be wrong in any file but its own; and the library cannot write fragments
/// inside of items, nor know the size of a stream above 2 GiB. A name that is no transfer syntax's is left to the library.
std::optional<std::string> WhyNotIn(std::string_view transfer_syntax, const StoredFacts& facts,
                                    std::int64_t pixel_bytes);

}  // namespace emulator
