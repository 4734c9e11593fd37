#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

// The same work done by DCMTK, for scale.

namespace bench {

/// Reads a data set in memory into DCMTK's tree and touches every value.
/// @return  the elements in the tree
std::size_t ParseWithDcmtk(const std::string& data_set, const std::string& transfer_syntax);

/// A data set in DCMTK's tree, every value in memory.
class DcmtkTree {
 public:
  DcmtkTree(const std::string& data_set, const std::string& transfer_syntax);
  ~DcmtkTree();
  DcmtkTree(const DcmtkTree&) = delete;
  DcmtkTree& operator=(const DcmtkTree&) = delete;

  enum class Lengths { kDefined, kUndefined };
  /// Writes it into memory, sequences and items with lengths of that kind. @return  bytes written
  std::size_t Write(const std::string& transfer_syntax, Lengths lengths, std::string& buffer) const;

 private:
  struct Tree;
  std::unique_ptr<Tree> tree_;
};

/// An element, and which of its items to go on in when it is a sequence.
struct DcmtkStep {
  std::uint16_t group;
  std::uint16_t element;
  long item = 0;  ///< from 0
};

/// Reads a file up to the first step's element and takes out the value of the last step's.
/// @throws std::runtime_error  the file cannot be read or has no such element
std::string ValueReadWithDcmtk(const std::string& file_name, std::span<const DcmtkStep> path);

}  // namespace bench
