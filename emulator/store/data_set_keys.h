#pragma once

// Where the nodes of a data set are. The library reads
//
//   ^KevDICOM.Data(id, 0, "c", 0, tag)         number of the node of an element of the data set
//   ^KevDICOM.Data(id, node, "v")              the element's VR
//   ^KevDICOM.Data(id, node, "d")              its value, or the first chunk of it
//   ^KevDICOM.Data(id, node, "d", k)           the further chunks, k from 1
//   ^KevDICOM.Data(id, node, "l")              1 for an element of undefined length
//   ^KevDICOM.Data(id, node, "c", item)        an item of a sequence, from 1
//   ^KevDICOM.Data(id, node, "c", item, tag)   number of the node of an element of that item
//
// with tags as decimal numbers. The host keeps what else there is of a file:
//
//   ^KevDICOM.Meta(id, "syntax")               transfer syntax of the data set as it was received
//   ^KevDICOM.Meta(id, "pixels")               name of the stream with the pixel data; no node without any
//   ^KevDICOM.Meta(id, "framed")               1 when that stream holds fragments
//   ^KevDICOM.Meta(id, "nested")               1 when an item holds fragments, which the library cannot write
//   ^KevDICOM.Meta(id, "m", tag, "v")          VR of an element of group 0002
//   ^KevDICOM.Meta(id, "m", tag, "d")          its value, or the first chunk of it
//   ^KevDICOM.Meta(id, "m", tag, "d", k)       the further chunks

#include <cstdint>
#include <string>
#include <string_view>

namespace emulator {

inline constexpr const char* kDataGlobal = "KevDICOM.Data";
inline constexpr const char* kMetaGlobal = "KevDICOM.Meta";

inline constexpr const char* kVrName = "v";
inline constexpr const char* kDataName = "d";
inline constexpr const char* kLengthName = "l";
inline constexpr const char* kChildrenName = "c";
inline constexpr const char* kSyntaxName = "syntax";
inline constexpr const char* kPixelsName = "pixels";
inline constexpr const char* kFramedName = "framed";
inline constexpr const char* kNestedName = "nested";
inline constexpr const char* kMetaGroupName = "m";

/// Keys of the nodes of one data set, as emulator/collation.h makes them. Each function's result is valid until the
/// next call.
class DataSetKeys {
 public:
  explicit DataSetKeys(std::string_view id);

  const std::string& Element(std::int64_t node, std::string_view name);
  const std::string& Chunk(std::int64_t node, std::int64_t chunk);
  const std::string& Item(std::int64_t node, std::int64_t item);
  const std::string& Child(std::int64_t node, std::int64_t item, std::uint32_t tag);

  const std::string& Meta(std::string_view name);
  const std::string& MetaElement(std::uint32_t tag, std::string_view name);
  const std::string& MetaChunk(std::uint32_t tag, std::int64_t chunk);

 private:
  const std::string& Append(std::int64_t number);

  std::string data_;
  std::string meta_;
  std::string key_;
};

}  // namespace emulator
