#include "tests/vdoc/document.h"

#include <algorithm>
#include <set>
#include <span>

namespace {

using vessa::CContentHandlerInterface;
using vessa::Tag;

constexpr std::size_t kChunkBytes = 32648;

std::uint32_t Length(const std::string& value) { return static_cast<std::uint32_t>(value.size()); }

class Player {
 public:
  Player(CContentHandlerInterface& handler, Unwanted unwanted) : handler_{handler}, unwanted_{unwanted} {}

  void PlayElements(const Item& elements) {
    for (const Element& element : elements) PlayElement(element);
  }

 private:
  void PlayElement(const Element& element) {
    const Tag tag{element.tag};
    const bool undefined = element.vr == "SQ" || !element.fragments.empty();
    handler_.StartElement(tag, vessa::Vr(element.vr),
                          undefined ? vessa::kUndefinedLength : Length(element.value));
    if (element.vr == "SQ") {
      PlaySequence(tag, element.items);
    } else if (!element.fragments.empty()) {
      PlayFragments(tag, element.fragments);
    } else {
      PlayValue(tag, element.value);
    }
    handler_.EndElement(tag);
  }

  void PlaySequence(Tag tag, const std::vector<Item>& items) {
    if (items.empty() && !handler_.WantsEmptySequences()) return;
    handler_.StartSequence(tag);
    for (const Item& item : items) {
      handler_.StartItem(tag, vessa::kUndefinedLength);
      PlayElements(item);
      handler_.EndItem(tag, vessa::kUndefinedLength);
    }
    handler_.EndSequence();
  }

  void PlayFragments(Tag tag, const std::vector<std::string>& fragments) {
    for (const std::string& fragment : fragments) {
      handler_.StartItem(vessa::kItem, Length(fragment));
      PlayValue(tag, fragment);
      handler_.EndItem(vessa::kItem, Length(fragment));
    }
    handler_.StartItem(vessa::kSequenceDelimitation, 0);
    PlayValue(vessa::kSequenceDelimitation, "");
    handler_.EndItem(vessa::kSequenceDelimitation, 0);
  }

  void PlayValue(Tag tag, const std::string& value) {
    if (unwanted_ == Unwanted::kPassedOver && !handler_.WantsValue(tag)) return;
    std::size_t at = 0;
    std::uint32_t chunk_number = 0;
    do {
      const std::size_t size = std::min(kChunkBytes, value.size() - at);
      const std::vector<std::uint8_t> chunk(value.begin() + static_cast<std::ptrdiff_t>(at),
                                            value.begin() + static_cast<std::ptrdiff_t>(at + size));
      handler_.Data(tag, ++chunk_number, chunk);
      at += size;
    } while (at < value.size());
  }

  CContentHandlerInterface& handler_;
  Unwanted unwanted_;
};

// --- Bytes (PS3.5 section 7.1.2)
// ------------------------------------------------------------------------------

std::string Number(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i & 0xFF);
  return text;
}

bool HasLongForm(const std::string& vr) {
  static const std::set<std::string> kLongForm = {"OB", "OW", "OF", "SQ", "UT", "UN"};
  return kLongForm.contains(vr);
}

std::string TagBytes(std::uint32_t tag) { return Number(tag >> 16, 2) + Number(tag & 0xFFFF, 2); }

std::string Delimited(std::uint32_t start_tag, const std::string& content, std::uint32_t end_tag) {
  return TagBytes(start_tag) + Number(0xFFFFFFFF, 4) + content + TagBytes(end_tag) + Number(0, 4);
}

std::string EncodeItems(const std::vector<Item>& items, Lengths lengths) {
  std::string bytes;
  for (const Item& item : items) {
    const std::string content = Encode(item, lengths);
    bytes += lengths == Lengths::kUndefined ? Delimited(0xFFFEE000, content, 0xFFFEE00D)
                                            : TagBytes(0xFFFEE000) + Number(content.size(), 4) + content;
  }
  return bytes;
}

std::string EncodeValue(const Element& element, Lengths lengths) {
  constexpr std::uint32_t kSequenceEnd = 0xFFFEE0DD;
  if (!element.fragments.empty()) {
    std::string content = Number(0xFFFFFFFF, 4);
    for (const std::string& fragment : element.fragments) {
      content += TagBytes(0xFFFEE000) + Number(fragment.size(), 4) + fragment;
    }
    return content + TagBytes(kSequenceEnd) + Number(0, 4);
  }
  if (element.vr == "SQ" && lengths == Lengths::kUndefined && !element.items.empty()) {
    return Number(0xFFFFFFFF, 4) + EncodeItems(element.items, lengths) + TagBytes(kSequenceEnd) +
           Number(0, 4);
  }
  const std::string value = element.vr == "SQ" ? EncodeItems(element.items, lengths) : element.value;
  return Number(value.size(), HasLongForm(element.vr) ? 4 : 2) + value;
}

}  // namespace

Ended Play(const Item& data_set, CContentHandlerInterface& handler, Unwanted unwanted) {
  try {
    handler.Reset();
    handler.StartContent("1.2.840.10008.1.2.1");
    Player(handler, unwanted).PlayElements(data_set);
    handler.EndContent();
  } catch (const vessa::CSuccessException&) {
    return Ended::kBySuccess;
  }
  return Ended::kAtTheEnd;
}

std::string Encode(const Item& data_set, Lengths lengths) {
  std::string bytes;
  for (const Element& element : data_set) {
    const std::string reserved = HasLongForm(element.vr) ? Number(0, 2) : "";
    bytes += TagBytes(element.tag) + element.vr + reserved + EncodeValue(element, lengths);
  }
  return bytes;
}
