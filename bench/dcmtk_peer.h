#pragma once

#include <cstddef>
#include <string>

// The same work done by DCMTK, for scale.

namespace bench {

/// Reads a data set in memory into DCMTK's tree and touches every value.
/// @return  the elements in the tree
std::size_t ParseWithDcmtk(const std::string& data_set, const std::string& transfer_syntax);

}  // namespace bench
