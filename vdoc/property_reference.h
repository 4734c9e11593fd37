#pragma once

#include <string_view>

#include "host/vessa_list.h"

namespace vessa {

// A property reference names an element of a data set; a property subscript reference names a sequence item:
//
//   reference            = tag { "[" item "]" "." tag }
//   subscript reference  = tag "[" subscript "]" { "." tag "[" subscript "]" }
//   tag                  = "(" 4 hex digits "," 4 hex digits ")" | keyword of PS3.6
//   item                 = decimal number from 1
//   subscript            = item | nothing | two double quotes; the last two only at the end, standing for 0
//
// No blanks are allowed. The text ends at its first zero byte. Each tag and number is appended to `list` as a
// 32-bit integer, in the order read: an odd count for a reference, an even one for a subscript reference. The
// dictionary must have been initialised.
//
// Both throw CVDocException for a text of another form; `list` then holds what was parsed before the failure.

/// Of the tags before a "[" only the first is tested for being a sequence, each time one is met.
void ParsePropertyReference(std::string_view text, VessaList& list);

/// Every tag is tested for being a sequence.
void ParsePropertySubscriptReference(std::string_view text, VessaList& list);

}  // namespace vessa
