#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/check/data_cursor.h"
#include "emulator/check/findings.h"
#include "emulator/check/prediction.h"
#include "emulator/path_text.h"

namespace emulator {

/// Follows the headers of a data set (PS3.5 section 7) as the library does, its oddities included, and says how that
/// ends. Reads no values. What is open is kept on the heap: sequences nest as deep as the input says.
class StructureWalk {
 public:
  /// Which elements are read: all, or, in front of a data set, those of group 0002 (a client stops the library there).
  enum class Extent { kAll, kMetaGroup };

  StructureWalk(DataCursor& cursor, std::string transfer_syntax, Extent extent,
                const DictionaryVr& dictionary, FindingList& findings);

  /// Once.
  Prediction Run();

  /// First bytes of the latest value of (0002,0010).
  const std::string& TransferSyntaxValue() const { return transfer_syntax_value_; }

 private:
  enum class Step { kGoesOn, kEnds, kWaits };
  struct OpenSequence {
    std::optional<std::uint64_t> end;       ///< offset behind it, when its length is defined
    std::optional<std::uint64_t> item_end;  ///< offset behind the open item, when its length is defined
    std::optional<std::uint32_t> last_tag;  ///< of the open item
  };
  struct Header {
    std::uint64_t offset;
    std::uint32_t tag;
    std::string vr;
    std::uint32_t length;
  };

  Step TakeStep();
  Step StepAtTopLevel();
  Step StepInItem();
  void StepBetweenItems();

  void ReadElement();
  void ReadVrAndLength(Header& header);
  void StartElement(const Header& header);
  void EndElement();
  void OpenItem(std::uint32_t length);
  void CloseItem();
  void CloseSequence();
  void PassValue(std::uint32_t tag, std::uint32_t length);
  void PassFragments(const Header& header);

  void Inspect(const Header& header);
  void InspectFirst(const Header& header);
  void InspectVr(const Header& header);
  void InspectOrder(const Header& header);
  void Note(FindingKind kind, std::uint64_t offset);

  bool IsInDefinedItem() const { return !open_.empty() && open_.back().item_end.has_value(); }
  std::string Path() const;

  DataCursor& cursor_;
  std::string transfer_syntax_;
  Extent extent_;
  const DictionaryVr& dictionary_;
  FindingList& findings_;
  bool has_implicit_vrs_;

  std::vector<OpenSequence> open_;         ///< outermost first
  std::vector<PathStep> path_;             ///< the same, and the element that is being read
  std::optional<std::uint32_t> last_tag_;  ///< of the top level
  bool is_misread_ = false;                ///< what follows is no longer what the writer meant
  std::string transfer_syntax_value_;
};

}  // namespace emulator
