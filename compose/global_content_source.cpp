#include "compose/global_content_source.h"

#include <string_view>

#include "compose/byte_text.h"
#include "compose/compose_exception.h"
#include "compose/data_global.h"
#include "host/callin_error_text.h"
#include "platform/number_text.h"

namespace vessa {

namespace {

constexpr std::string_view kVrNode = "v";
constexpr std::string_view kDataNode = "d";
constexpr std::string_view kUndefinedLengthNode = "l";
constexpr std::string_view kChildrenNode = "c";
constexpr std::int32_t kRootItem = 0;
constexpr Status kHostUndefined = 9;

/// Runs an operation whose failures carry its name: a host's status becomes the host's words for it.
template <class Operation>
auto RunNamed(std::string_view name, Operation operation) {
  try {
    return operation();
  } catch (const Status status) {
    throw CComposeException(std::string(name) + ": " + CallinErrorMessage(status));
  }
}

/// The VR at the start of the characters; missing letters are zero.
Vr FirstTwo(std::u16string_view characters, std::vector<std::uint8_t>& storage) {
  constexpr std::size_t kLetters = 2;
  if (characters.size() >= kLetters && IsByte(characters[0]) && IsByte(characters[1])) [[likely]] {
    return Vr(static_cast<char>(characters[0]), static_cast<char>(characters[1]));
  }
  const std::span<const std::uint8_t> bytes = ToBytes(characters.substr(0, kLetters), storage);
  const auto letter = [bytes](std::size_t at) {
    return at < bytes.size() ? static_cast<char>(bytes[at]) : '\0';
  };
  return Vr(letter(0), letter(1));
}

}  // namespace

bool CGlobalContentSource::NextTagKey(std::string& key, ContentElement& element) {
  return RunNamed("NextTagKey", [&] {
    const DataGlobal data(Identifier());
    const auto keep = [&element](auto bytes) { element.node = ParseInteger32(AsText(bytes)); };
    const Found found = data.Step(key, keep, kRootNode, kChildrenNode, kRootItem);
    if (found == Found::kKeyAlone) {
      throw CComposeException("NextTagKey: No data at reference ^KevDICOM.Data(" + Identifier() +
                              ",0,\"c\",0," + key + ")");
    }
    if (found == Found::kEnd) return false;
    ReadVr(element);
    return true;
  });
}

bool CGlobalContentSource::NextSequenceTagKey(const std::string& item_key, std::string& key,
                                              std::int32_t node, ContentElement& element) {
  return RunNamed("NextSequenceTagKey", [&] {
    const DataGlobal data(Identifier());
    const auto keep = [&element](auto bytes) { element.node = ParseInteger32(AsText(bytes)); };
    const Found found = data.Step(key, keep, node, kChildrenNode, item_key);
    if (found == Found::kKeyAlone) {
      throw CComposeException("NextSequenceTagKey: No data at reference ^KevDICOM.Data(" + Identifier() +
                              "," + std::to_string(node) + ",\"c\"," + item_key + "," + key + ")");
    }
    if (found == Found::kEnd) return false;
    ReadVr(element);
    return true;
  });
}

/// The VR is empty where the node has no value, whether the host says so by an empty text or by its status.
void CGlobalContentSource::ReadVr(ContentElement& element) {
  try {
    DataGlobal(Identifier()).Get(element.node, kVrNode);
  } catch (const Status status) {
    if (status != kHostUndefined) throw;
    element.vr = Vr{};
    return;
  }
  element.vr = FirstTwo(PopWideString(), storage_);
}

bool CGlobalContentSource::NextSequenceItemKey(std::int32_t node, std::string& item_key) {
  return DataGlobal(Identifier()).StepKey(item_key, node, kChildrenNode);
}

std::uint64_t CGlobalContentSource::GetDataLength(std::int32_t node) {
  return RunNamed("GetDataLength", [&] {
    const DataGlobal data(Identifier());
    std::uint64_t length = ByteCount(data.Read(node, kDataNode));
    const auto add = [&length](auto bytes) { length += bytes.size(); };
    std::string key;
    Found found = data.Step(key, add, node, kDataNode);
    while (found == Found::kKeyAndValue) found = data.Step(key, add, node, kDataNode);
    if (found == Found::kKeyAlone) {
      throw CComposeException("GetDataLength: missing data node in some \"d\" record");
    }
    return length;
  });
}

bool CGlobalContentSource::GetNextDataChunk(std::int32_t node, std::string& key,
                                            std::span<std::uint8_t>& chunk) {
  return RunNamed("GetNextDataChunk", [&] {
    const DataGlobal data(Identifier());
    if (key.empty()) {
      chunk = ToBytes(data.Read(node, kDataNode), storage_);
      key.push_back('0');
      return true;
    }
    chunk = {};
    const auto keep = [&](auto bytes) { chunk = CopyBytes(bytes, storage_); };
    const Found found = data.Step(key, keep, node, kDataNode);
    if (found == Found::kKeyAlone) {
      throw CComposeException("GetNextDataChunk: missing data node in some \"d\" record");
    }
    return found == Found::kKeyAndValue;
  });
}

bool CGlobalContentSource::HasUndefinedLength(std::int32_t node) {
  const DataGlobal data(Identifier());
  return data.HoldsValueAt(node, kUndefinedLengthNode) && data.Read(node, kUndefinedLengthNode) == u"1";
}

}  // namespace vessa
