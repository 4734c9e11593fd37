#include "decompose/content_handler.h"
#include "decompose/stream_decomposer.h"
#include "host/callin.h"
#include "modules/VessaDCM/call_outs.h"
#include "stream/binary_input_stream.h"

namespace vessa {

void zfDecomposeStream(Call& call) {
  const std::uint32_t stream_oref = call.OrefArgument(1);
  const std::string transfer_syntax = call.TextArgument(2);
  const std::uint32_t handler_oref = call.OrefArgument(3);
  const std::uint32_t client_oref = call.OrefArgument(4);

  Call::Stage(" wrapping input stream");
  CVessaBinaryInputStream stream(stream_oref);
  RaiseIfNegative(stream.Open());

  Call::Stage(" setting up content handler");
  CContentHandler handler(handler_oref);

  Call::Stage(" decomposing stream");
  StreamDecomposer decomposer(stream, handler, client_oref, SimplePixelDataFrames());
  RaiseIfNegative(decomposer.DecomposeStream(transfer_syntax));
  call.Succeed();
}

}  // namespace vessa
