#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "emulator/host.h"

/// The data set "ID" in the global ^KevDICOM.Data of a host, put there node by node. Nothing is checked: a test
/// that needs a damaged data set gets one.
class StoredDataSet {
 public:
  static constexpr const char* kId = "ID";

  /// @param host  outlives this object; it is not touched yet
  explicit StoredDataSet(emulator::Host& host) : host_of_data_{host} {}

  /// Sets the node (ID, subscripts...).
  void Set(std::vector<emulator::Value> subscripts, const emulator::Value& value) {
    subscripts.insert(subscripts.begin(), std::string(kId));
    host_of_data_.globals().Set("KevDICOM.Data", subscripts, value);
  }

  /// An element at the top level, without a VR where `vr` is empty.
  void Top(std::uint32_t tag, std::int64_t node, const std::string& vr, const std::string& value) {
    LinkTop(std::int64_t{tag}, node);
    Element(node, vr, value);
  }
  /// The key of an element at the top level, and the number of its node.
  void LinkTop(const emulator::Value& key, const emulator::Value& node) {
    Set({std::int64_t{0}, std::string("c"), std::int64_t{0}, key}, node);
  }
  void InItem(std::int64_t sequence, std::int64_t item, std::uint32_t tag, std::int64_t node,
              const std::string& vr, const std::string& value) {
    Set({sequence, std::string("c"), item, std::int64_t{tag}}, node);
    Element(node, vr, value);
  }
  void TopSequence(std::uint32_t tag, std::int64_t node) {
    LinkTop(std::int64_t{tag}, node);
    Vr(node, "SQ");
  }
  void SequenceInItem(std::int64_t sequence, std::int64_t item, std::uint32_t tag, std::int64_t node) {
    Set({sequence, std::string("c"), item, std::int64_t{tag}}, node);
    Vr(node, "SQ");
  }
  void EmptyItem(std::int64_t sequence, std::int64_t item) {
    Set({sequence, std::string("c"), item}, std::string());
  }

  // --- The nodes of one element ---

  void Vr(std::int64_t node, const std::string& vr) { Set({node, std::string("v")}, vr); }
  void Value(std::int64_t node, const std::string& bytes) { Set({node, std::string("d")}, bytes); }
  void Chunk(std::int64_t node, std::int64_t k, const std::string& bytes) {
    Set({node, std::string("d"), k}, bytes);
  }
  void MarkUndefined(std::int64_t node) { Set({node, std::string("l")}, std::int64_t{1}); }

 private:
  void Element(std::int64_t node, const std::string& vr, const std::string& value) {
    if (!vr.empty()) Vr(node, vr);
    Value(node, value);
  }

  emulator::Host& host_of_data_;
};
