#include "emulator/store/data_set_replay.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "emulator/store/data_set_keys.h"
#include "emulator/store/data_sets.h"
#include "emulator/store/store_error.h"
#include "emulator/tag_text.h"

namespace emulator {
namespace {

constexpr std::int64_t kChunkBytes = 32648;
constexpr std::size_t kHeaderBytes = 8;

std::uint32_t Number(std::string_view bytes) {
  std::uint32_t number = 0;
  for (std::size_t at = bytes.size(); at-- > 0;)
    number = number << 8U | static_cast<unsigned char>(bytes[at]);
  return number;
}

std::string Read(StreamObject& stream, std::int64_t count) {
  return AsBytes(stream.Call("Read", std::array<Value, 1>{count}));
}

class Replay {
 public:
  Replay(StoreTransaction& transaction, const std::string& id, ContentSink& sink)
      : transaction_(transaction), nodes_(transaction.Nodes()), id_(id), keys_(id), sink_(sink) {}

  void Run() {
    const auto facts = FindDataSet(*nodes_, id_);
    if (!facts) throw StoreError("no data set is stored as " + id_);
    facts_ = *facts;
    sink_.StartContent(facts_.transfer_syntax);
    open_.push_back({0, 0, "0", "", true});
    while (!open_.empty()) {
      if (open_.back().is_in_item) {
        NextElement(open_.back());
      } else {
        NextItem(open_.back());
      }
    }
    sink_.EndContent();
  }

 private:
  struct OpenSequence {
    std::uint32_t tag;
    std::int64_t node;
    std::string item_key;
    std::string tag_key;
    bool is_in_item;
  };

  void NextItem(OpenSequence& sequence) {
    sequence.item_key =
        nodes_->Order(kDataGlobal, {id_, sequence.node, std::string(kChildrenName), sequence.item_key})
            .subscript;
    if (sequence.item_key.empty()) {
      sink_.EndSequence();
      sink_.EndElement(sequence.tag);
      open_.pop_back();
    } else {
      sink_.StartItem(sequence.tag, kUndefinedLength);
      sequence.tag_key.clear();
      sequence.is_in_item = true;
    }
  }

  void NextElement(OpenSequence& sequence) {
    const NextSubscript next = nodes_->Order(
        kDataGlobal, {id_, sequence.node, std::string(kChildrenName), sequence.item_key, sequence.tag_key});
    if (!next.subscript.empty()) {
      sequence.tag_key = next.subscript;
      if (!next.value) throw StoreError(id_ + ": an element without a node number");
      Tell(static_cast<std::uint32_t>(AsInteger(Value(next.subscript))), AsInteger(*next.value));
    } else if (open_.size() == 1) {
      open_.pop_back();
    } else {
      sink_.EndItem(sequence.tag, kUndefinedLength);
      sequence.is_in_item = false;
    }
  }

  void Tell(std::uint32_t tag, std::int64_t node) {
    const auto kept_vr = nodes_->GetKey(keys_.Element(node, kVrName));
    const std::string vr = kept_vr ? kept_vr->AsBytes() : std::string();
    if (vr == "SQ") {
      sink_.StartElement(tag, vr, kUndefinedLength);
      sink_.StartSequence();
      open_.push_back({tag, node, "", "", false});
    } else if (open_.size() == 1 && tag == kPixelData) {
      TellPixels(tag, vr);
    } else {
      TellValue(tag, vr, node);
    }
  }

  void TellValue(std::uint32_t tag, const std::string& vr, std::int64_t node) {
    std::size_t length = 0;
    VisitChunks(node, [&length](const std::string& chunk, std::uint32_t) { length += chunk.size(); });
    sink_.StartElement(tag, vr, static_cast<std::uint32_t>(length));
    VisitChunks(node, [this, tag](const std::string& chunk, std::uint32_t number) {
      sink_.Data(tag, number, chunk);
    });
    sink_.EndElement(tag);
  }

  template <class Visit>
  void VisitChunks(std::int64_t node, const Visit& visit) {
    auto chunk = nodes_->GetKey(keys_.Element(node, kDataName));
    if (!chunk) throw StoreError(id_ + ": an element without a value");
    for (std::int64_t number = 1; chunk; ++number) {
      visit(chunk->AsBytes(), static_cast<std::uint32_t>(number));
      chunk = nodes_->GetKey(keys_.Chunk(node, number));
    }
  }

  void TellPixels(std::uint32_t tag, const std::string& vr) {
    const auto stream = transaction_.OpenPixels(facts_.pixels);
    if (facts_.has_framed_pixels) {
      sink_.StartElement(tag, vr, kUndefinedLength);
      while (stream->Position() <= stream->ByteCount()) TellFragment(*stream);
    } else {
      sink_.StartElement(tag, vr, static_cast<std::uint32_t>(stream->ByteCount()));
      TellBytes(*stream, stream->ByteCount());
    }
    sink_.EndElement(tag);
  }

  void TellFragment(StreamObject& stream) {
    const std::string header = Read(stream, kHeaderBytes);
    if (header.size() != kHeaderBytes) throw StoreError(id_ + ": the fragments of the pixel data are cut");
    const std::string_view view = header;
    const std::uint32_t tag = Number(view.substr(0, 2)) << 16U | Number(view.substr(2, 2));
    const std::uint32_t length = Number(view.substr(4));
    sink_.StartItem(tag, length);
    TellBytes(stream, length);
    sink_.EndItem(tag, length);
  }

  void TellBytes(StreamObject& stream, std::int64_t count) {
    for (std::uint32_t chunk = 1; count > 0; ++chunk) {
      const std::string bytes = Read(stream, std::min(count, kChunkBytes));
      if (bytes.empty()) throw StoreError(id_ + ": the pixel data are cut");
      sink_.Data(kPixelData, chunk, bytes);
      count -= static_cast<std::int64_t>(bytes.size());
    }
  }

  StoreTransaction& transaction_;
  std::shared_ptr<Globals> nodes_;
  std::string id_;
  DataSetKeys keys_;
  ContentSink& sink_;
  StoredFacts facts_;
  std::vector<OpenSequence> open_;
};

}  // namespace

void ReplayDataSet(StoreTransaction& transaction, const std::string& id, ContentSink& sink) {
  Replay(transaction, id, sink).Run();
}

}  // namespace emulator
