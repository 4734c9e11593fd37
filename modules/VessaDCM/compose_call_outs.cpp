#include "compose/global_content_source.h"
#include "compose/stream_composer.h"
#include "host/callin.h"
#include "modules/VessaDCM/call_outs.h"
#include "stream/binary_output_stream.h"
#include "stream/deflate.h"
#include "stream/inflate.h"

namespace vessa {
namespace {

constexpr std::int32_t kDone = 0;
constexpr std::int32_t kFailed = -1;

std::int32_t DoneOrFailed(Status status) { return status < 0 ? kFailed : kDone; }

}  // namespace

void zfComposeStream(Call& call) {
  const std::uint32_t output_oref = call.OrefArgument(1);
  const std::string identifier = call.TextArgument(2);
  const std::string transfer_syntax = call.TextArgument(3);
  const std::string original_transfer_syntax = call.TextArgument(4);
  const std::uint32_t pixel_data_oref = call.OrefArgument(5);

  Call::Stage(" setting up content source");
  const bool simple_pixel_data_frames = SimplePixelDataFrames();
  CGlobalContentSource source(identifier);

  Call::Stage(" composing stream");
  CVessaBinaryOutputStream output(output_oref);
  StreamComposer composer(source, output, original_transfer_syntax, pixel_data_oref,
                          simple_pixel_data_frames);
  composer.ComposeStream(identifier, transfer_syntax);
  call.Succeed();
}

std::int32_t zfDeflateStream(std::int32_t level, std::int32_t in, std::int32_t out) {
  return DoneOrFailed(DeflateStream(level, static_cast<std::uint32_t>(in), static_cast<std::uint32_t>(out)));
}

std::int32_t zfInflateStream(std::int32_t in, std::int32_t out, std::int32_t /*unused*/) {
  return DoneOrFailed(InflateStream(static_cast<std::uint32_t>(in), static_cast<std::uint32_t>(out)));
}

}  // namespace vessa
