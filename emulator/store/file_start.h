#pragma once

#include <string>
#include <string_view>

#include "emulator/globals.h"

namespace emulator {

/// Who writes a file, for group 0002.
struct Implementation {
  std::string class_uid;
  std::string version_name;  ///< at most 16 characters
};

/// What a file with a stored data set begins with (PS3.10 section 7.1): the preamble, 128 zeros; "DICM"; and group
/// 0002 in explicit VR little endian. That is the group that was stored, made right for the file to be written:
///
///   (0002,0000) (0002,0001)   anew
///   (0002,0002) (0002,0003)   as the data set has them; as they were stored where it has none
///   (0002,0010)               `transfer_syntax`
///   (0002,0012) (0002,0013)   `implementation`
///   others                    as they were stored
std::string FileStart(const Globals& nodes, const std::string& id, std::string_view transfer_syntax,
                      const Implementation& implementation);

}  // namespace emulator
