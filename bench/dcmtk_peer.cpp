#include "bench/dcmtk_peer.h"

#include <dcmtk/dcmdata/dcdatset.h>
#include <dcmtk/dcmdata/dcelem.h>
#include <dcmtk/dcmdata/dcistrmb.h>
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

}  // namespace

std::size_t ParseWithDcmtk(const std::string& data_set, const std::string& transfer_syntax) {
  DcmInputBufferStream stream;
  stream.setBuffer(data_set.data(), static_cast<offile_off_t>(data_set.size()));
  stream.setEos();
  DcmDataset tree;
  tree.transferInit();
  const OFCondition result = tree.read(stream, DcmXfer(transfer_syntax.c_str()).getXfer(), EGL_noChange);
  tree.transferEnd();
  if (result.bad()) throw std::runtime_error(result.text());
  return TouchValues(tree);
}

}  // namespace bench
