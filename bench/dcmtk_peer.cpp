#include "bench/dcmtk_peer.h"

#include <dcmtk/dcmdata/dcdatset.h>
#include <dcmtk/dcmdata/dcelem.h>
#include <dcmtk/dcmdata/dcfilefo.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcostrmb.h>
#include <dcmtk/dcmdata/dcstack.h>
#include <dcmtk/dcmdata/dcxfer.h>

#include <stdexcept>

namespace bench {
namespace {

std::size_t TouchValues(DcmDataset& data_set) {
  std::size_t elements = 0;
  DcmStack stack;
  while (data_set.nextObject(stack, OFTrue).good()) {
    DcmObject* object = stack.top();
    if (object->isLeaf()) static_cast<DcmElement*>(object)->loadAllDataIntoMemory();
    if (object->ident() != EVR_item) ++elements;
  }
  return elements;
}

/// Without its log, whose lines about data that it takes for odd would cost time.
void Silence() {
  static const bool silent = [] {
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
    return true;
  }();
  static_cast<void>(silent);
}

/// Reads it all; every value comes into memory. @return  the elements in the tree
std::size_t Parse(DcmDataset& tree, const std::string& data_set, const std::string& transfer_syntax) {
  DcmInputBufferStream stream;
  stream.setBuffer(data_set.data(), static_cast<offile_off_t>(data_set.size()));
  stream.setEos();
  tree.transferInit();
  const OFCondition result = tree.read(stream, DcmXfer(transfer_syntax.c_str()).getXfer(), EGL_noChange);
  tree.transferEnd();
  if (result.bad()) throw std::runtime_error(result.text());
  return TouchValues(tree);
}

}  // namespace

std::size_t ParseWithDcmtk(const std::string& data_set, const std::string& transfer_syntax) {
  DcmDataset tree;
  return Parse(tree, data_set, transfer_syntax);
}

struct DcmtkTree::Tree {
  DcmDataset data_set;
};

DcmtkTree::DcmtkTree(const std::string& data_set, const std::string& transfer_syntax)
    : tree_{std::make_unique<Tree>()} {
  Parse(tree_->data_set, data_set, transfer_syntax);
}

DcmtkTree::~DcmtkTree() = default;

std::size_t DcmtkTree::Write(const std::string& transfer_syntax, Lengths lengths, std::string& buffer) const {
  DcmOutputBufferStream stream(buffer.data(), static_cast<offile_off_t>(buffer.size()));
  DcmDataset& tree = tree_->data_set;
  tree.transferInit();
  const E_EncodingType encoding = lengths == Lengths::kDefined ? EET_ExplicitLength : EET_UndefinedLength;
  const OFCondition result =
      tree.write(stream, DcmXfer(transfer_syntax.c_str()).getXfer(), encoding, nullptr);
  tree.transferEnd();
  if (result.bad()) throw std::runtime_error(result.text());
  return static_cast<std::size_t>(stream.tell());
}

std::string ValueReadWithDcmtk(const std::string& file_name, std::span<const DcmtkStep> path) {
  Silence();
  DcmFileFormat file;
  const DcmTagKey top(path.front().group, path.front().element);
  if (file.loadFileUntilTag(file_name.c_str(), EXS_Unknown, EGL_noChange, DCM_MaxReadLength, ERM_autoDetect,
                            DcmTagKey(top.getGroup(), static_cast<Uint16>(top.getElement() + 1)))
          .bad())
    throw std::runtime_error("DCMTK cannot read " + file_name);
  DcmItem* item = file.getDataset();
  for (const DcmtkStep& step : path.first(path.size() - 1)) {
    if (item->findAndGetSequenceItem(DcmTagKey(step.group, step.element), item, step.item).bad())
      throw std::runtime_error("DCMTK found no such item in " + file_name);
  }
  OFString value;
  if (item->findAndGetOFStringArray(DcmTagKey(path.back().group, path.back().element), value).bad())
    throw std::runtime_error("DCMTK found no such element in " + file_name);
  return value.c_str();
}

}  // namespace bench
