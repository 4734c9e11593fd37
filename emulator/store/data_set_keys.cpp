#include "emulator/store/data_set_keys.h"

#include <array>
#include <charconv>

#include "emulator/collation.h"

namespace emulator {
namespace {

std::string DataSetKey(std::string_view global, std::string_view id) {
  std::string key = GlobalKey(global);
  AppendSubscript(id, key);
  return key;
}

}  // namespace

DataSetKeys::DataSetKeys(std::string_view id)
    : data_(DataSetKey(kDataGlobal, id)), meta_(DataSetKey(kMetaGlobal, id)) {}

const std::string& DataSetKeys::Element(std::int64_t node, std::string_view name) {
  key_ = data_;
  Append(node);
  AppendSubscript(name, key_);
  return key_;
}

const std::string& DataSetKeys::Chunk(std::int64_t node, std::int64_t chunk) {
  Element(node, kDataName);
  return Append(chunk);
}

const std::string& DataSetKeys::Item(std::int64_t node, std::int64_t item) {
  Element(node, kChildrenName);
  return Append(item);
}

const std::string& DataSetKeys::Child(std::int64_t node, std::int64_t item, std::uint32_t tag) {
  Item(node, item);
  return Append(tag);
}

const std::string& DataSetKeys::Meta(std::string_view name) {
  key_ = meta_;
  AppendSubscript(name, key_);
  return key_;
}

const std::string& DataSetKeys::MetaElement(std::uint32_t tag, std::string_view name) {
  Meta(kMetaGroupName);
  Append(tag);
  AppendSubscript(name, key_);
  return key_;
}

const std::string& DataSetKeys::MetaChunk(std::uint32_t tag, std::int64_t chunk) {
  MetaElement(tag, kDataName);
  return Append(chunk);
}

const std::string& DataSetKeys::Append(std::int64_t number) {
  std::array<char, 20> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  AppendSubscript(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())), key_);
  return key_;
}

}  // namespace emulator
