#include "bench/data_set.h"

#include <string_view>

namespace bench {
namespace {

constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFF;
constexpr int kDepth = 6;

enum class VrForm { kImplicit, kExplicit };

struct Leaf {
  std::uint16_t group;
  std::uint16_t element;
  std::string_view vr;
  std::string_view value;  // of even length
};

constexpr Leaf kLeaves[] = {
    {0x0008, 0x0008, "CS", "ORIGINAL\\PRIMARY\\AXIAL\\CT_SOM5 SPI\\HELIX "},
    {0x0008, 0x0018, "UI", "1.2.826.0.1.3680043.8.498.45787841905473114234212477543"},
    {0x0008, 0x0020, "DA", "20240131"},
    {0x0008, 0x103E, "LO", "Thorax native and arterial phase, reconstruction 1.25 mm, lung"},
    {0x0010, 0x0010, "PN",
     "Lastname-Hyphenated^Firstname^Middle^Dr. med.^Jr.=Ideographic^Name=Phonetic^Name"},
    {0x0010, 0x4000, "LT",
     "Patient was injected with 90 ml of contrast agent at 3.5 ml/s; no adverse reaction was "
     "seen during or after the examination, which ended at 14:25. Breath hold was good, there is some motion "
     "at "
     "the level of the diaphragm; the series was reconstructed twice."},
    {0x0020, 0x000D, "UI", "1.2.826.0.1.3680043.8.498.92134567012345670123456701235"},
    {0x0020, 0x0032, "DS", "-158.135803\\-179.035797\\-75.699997"},
    {0x0020, 0x0037, "DS",
     "1.000000\\0.000000\\0.000000\\0.000000\\0.978148\\-0.207912\\0.207912\\0.978148\\0 "},
    {0x0028, 0x0010, "US", std::string_view("\0\2", 2)},
    {0x0028, 0x0030, "DS", "0.661468\\0.661468 "},
};

/// Appends elements in one VR form.
class Writer {
 public:
  explicit Writer(VrForm form) : form_{form} {}

  void U16(std::uint16_t value) {
    bytes_.push_back(static_cast<char>(value & 0xFF));
    bytes_.push_back(static_cast<char>(value >> 8));
  }
  void U32(std::uint32_t value) {
    U16(static_cast<std::uint16_t>(value & 0xFFFF));
    U16(static_cast<std::uint16_t>(value >> 16));
  }
  void Header(std::uint16_t group, std::uint16_t element, std::string_view vr, std::uint32_t length) {
    ++elements_;
    U16(group);
    U16(element);
    if (form_ == VrForm::kImplicit) return U32(length);
    bytes_.append(vr);
    if (vr == "SQ" || vr == "OB" || vr == "OW") {
      U16(0);
      U32(length);
    } else {
      U16(static_cast<std::uint16_t>(length));
    }
  }
  void Element(const Leaf& leaf) {
    // A literal's own length can be odd; the missing byte is its padding.
    const std::size_t padded = leaf.value.size() + leaf.value.size() % 2;
    Header(leaf.group, leaf.element, leaf.vr, static_cast<std::uint32_t>(padded));
    bytes_.append(leaf.value).append(padded - leaf.value.size(), '\0');
  }
  void Delimiter(std::uint16_t element, std::uint32_t length) {
    U16(0xFFFE);
    U16(element);
    U32(length);
  }
  void Append(const Writer& other) {
    bytes_ += other.bytes_;
    elements_ += other.elements_;
  }
  void Raw(std::size_t count, char value) { bytes_.append(count, value); }

  std::uint32_t Size() const { return static_cast<std::uint32_t>(bytes_.size()); }
  VrForm Form() const { return form_; }
  DataSet Take() { return {std::move(bytes_), elements_}; }

 private:
  VrForm form_;
  std::string bytes_;
  std::size_t elements_ = 0;
};

enum class Lengths { kDefined, kUndefined };

void AppendItem(Writer& out, const Writer& content, Lengths lengths) {
  out.Delimiter(0xE000, lengths == Lengths::kDefined ? content.Size() : kUndefinedLength);
  out.Append(content);
  if (lengths == Lengths::kUndefined) out.Delimiter(0xE00D, 0);
}

void AppendSequence(Writer& out, std::uint16_t group, std::uint16_t element, const Writer& items,
                    Lengths lengths) {
  out.Header(group, element, "SQ", lengths == Lengths::kDefined ? items.Size() : kUndefinedLength);
  out.Append(items);
  if (lengths == Lengths::kUndefined) out.Delimiter(0xE0DD, 0);
}

/// Leaves, and below them a sequence of one item until the depth is reached.
Writer ItemContent(VrForm form, int depth, Lengths lengths) {
  Writer content(form);
  for (const Leaf& leaf : kLeaves) content.Element(leaf);
  if (depth < kDepth) {
    Writer items(form);
    AppendItem(items, ItemContent(form, depth + 1, lengths), lengths);
    AppendSequence(content, 0x0040, 0x0275, items, lengths);
  }
  return content;
}

DataSet ManySmallElements(VrForm form) {
  struct Top {
    std::uint16_t group, element;
    Lengths lengths;
  };
  constexpr Top kTops[] = {{0x0040, 0x0275, Lengths::kDefined},
                           {0x0054, 0x0016, Lengths::kUndefined},
                           {0x3006, 0x0020, Lengths::kDefined},
                           {0x300A, 0x00B0, Lengths::kUndefined}};
  constexpr int kItemsEach = 705;
  Writer out(form);
  for (const Leaf& leaf : kLeaves) out.Element(leaf);
  for (const Top& top : kTops) {
    const Writer content = ItemContent(form, 1, top.lengths);
    Writer items(form);
    for (int i = 0; i < kItemsEach; ++i) AppendItem(items, content, top.lengths);
    AppendSequence(out, top.group, top.element, items, top.lengths);
  }
  return out.Take();
}

DataSet MakeNativePixels() {
  constexpr std::uint32_t kPixelBytes = 256U << 20;
  Writer out(VrForm::kExplicit);
  for (const Leaf& leaf : kLeaves) out.Element(leaf);
  out.Header(0x7FE0, 0x0010, "OW", kPixelBytes);
  out.Raw(kPixelBytes, '\x5A');
  out.Header(0xFFFC, 0xFFFC, "OB", 4);  // Data Set Trailing Padding: something to ask for behind the pixels
  out.Raw(4, '\0');
  return out.Take();
}

DataSet MakeImage() {
  constexpr std::uint16_t kElementsBeforeTheName = 40;
  constexpr std::uint32_t kPixelBytes = 512U << 10;
  Writer out(VrForm::kExplicit);
  for (std::uint16_t i = 0; i < kElementsBeforeTheName; ++i)
    out.Element({0x0008, static_cast<std::uint16_t>(0x2000 + i), "LO", "some text of a usual length "});
  for (const Leaf& leaf : kLeaves) {
    if (leaf.group > 0x0008) out.Element(leaf);
  }
  out.Header(0x7FE0, 0x0010, "OW", kPixelBytes);
  out.Raw(kPixelBytes, '\x5A');
  return out.Take();
}

DataSet MakeFragments() {
  constexpr std::uint32_t kFragmentBytes = 64U << 10;
  constexpr int kFragments = 2000;
  Writer out(VrForm::kExplicit);
  for (const Leaf& leaf : kLeaves) out.Element(leaf);
  out.Header(0x7FE0, 0x0010, "OB", kUndefinedLength);
  out.Delimiter(0xE000, 0);
  for (int i = 0; i < kFragments; ++i) {
    out.Delimiter(0xE000, kFragmentBytes);
    out.Raw(kFragmentBytes, '\x5A');
  }
  out.Delimiter(0xE0DD, 0);
  return out.Take();
}

}  // namespace

const DataSet& ElementsExplicit() {
  static const DataSet data_set = ManySmallElements(VrForm::kExplicit);
  return data_set;
}

const DataSet& ElementsImplicit() {
  static const DataSet data_set = ManySmallElements(VrForm::kImplicit);
  return data_set;
}

const DataSet& NativePixels() {
  static const DataSet data_set = MakeNativePixels();
  return data_set;
}

const DataSet& Image() {
  static const DataSet data_set = MakeImage();
  return data_set;
}

const DataSet& Fragments() {
  static const DataSet data_set = MakeFragments();
  return data_set;
}

std::string WithFileHeader(const std::string& data_set, const std::string& transfer_syntax) {
  Writer meta(VrForm::kExplicit);
  meta.Element({0x0002, 0x0010, "UI", transfer_syntax});
  const std::string group = meta.Take().bytes;
  Writer length(VrForm::kExplicit);
  length.Header(0x0002, 0x0000, "UL", 4);
  length.U32(static_cast<std::uint32_t>(group.size()));
  return std::string(128, '\0') + "DICM" + length.Take().bytes + group + data_set;
}

}  // namespace bench
