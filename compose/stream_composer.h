#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "compose/content_source.h"

namespace vessa {

class CVessaBinaryOutputStream;

/// Writes a data set (PS3.5 section 7) from a content source to a host stream. Used once; owns neither source
/// nor output.
class StreamComposer {
 public:
  /// @param original_transfer_syntax  the syntax in whose byte order the source holds the values
  /// @param pixel_data_oref  host stream that holds the value of the top-level Pixel Data; 0 for none
  /// @param simple_pixel_data_frames  takes the pixel data as not framed, whatever they are
  StreamComposer(CContentSource& source, CVessaBinaryOutputStream& output,
                 std::string_view original_transfer_syntax, std::uint32_t pixel_data_oref,
                 bool simple_pixel_data_frames);

  /// Writes the whole data set. The output is flushed at every exit; what was written before a failure stays.
  /// @param identifier  the data set's name in failure texts
  /// @throws CComposeException  the data set cannot be written in that syntax
  /// @throws CDecomposeException  a host stream failed
  /// @throws Status  the source failed, or the pixel data have a VR without a swap unit
  void ComposeStream(std::string_view identifier, std::string_view transfer_syntax);
};

}  // namespace vessa
