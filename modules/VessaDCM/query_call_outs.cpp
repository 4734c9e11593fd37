#include <algorithm>
#include <memory>
#include <utility>

#include "decompose/stream_decomposer.h"
#include "host/callin.h"
#include "modules/VessaDCM/call_outs.h"
#include "modules/VessaDCM/failure_report.h"
#include "stream/binary_file_input_stream.h"
#include "stream/binary_input_stream.h"
#include "stream/binary_output_stream.h"
#include "vdoc/vdoc_next_subscript.h"
#include "vdoc/vdoc_query.h"

namespace vessa {
namespace {

constexpr std::uint32_t kNoClient = 0;
constexpr std::int64_t kPreambleBytes = 128;  // PS3.10 section 7.1
constexpr std::string_view kPrefix = "DICM";

/// Runs the handler over the stream until it has its answer or the data end.
void DecomposeUntilAnswered(CVessaInputStream& stream, CContentHandlerInterface& handler,
                            std::string_view transfer_syntax, const FailureReport& report) {
  Call::Stage(" decomposing stream");
  StreamDecomposer decomposer(stream, handler, kNoClient, SimplePixelDataFrames());
  const Status status = decomposer.DecomposeStream(transfer_syntax);
  if (status < 0) {
    WriteReport(report);
    throw status;
  }
}

/// Adds the VR and the value, where the query found one.
void AppendAnswer(VessaList& results, VessaROList answer) {
  if (answer.Count() == 0) return;
  for (std::uint64_t element = 0; element < 2; ++element) {
    answer.Seek(element);
    results.AppendString(answer.ItemHeader().data);
  }
}

bool FlagArgument(Call& call, std::size_t position) {
  return call.ArgumentCount() >= position && call.IntegerArgument(position) != 0;
}

std::unique_ptr<CVessaBinaryOutputStream> WrapOutputStream(std::uint32_t oref) {
  if (oref == 0) return nullptr;
  Call::Stage(" wrapping output stream");
  return std::make_unique<CVessaBinaryOutputStream>(oref);
}

void PassFileHeader(CVessaInputStream& file) {
  Call::Stage(" reading 128-byte file header");
  if (file.Skip(kPreambleBytes) < 0) throw E_INVALIDARG;
  Call::Stage(" checking DICM file header");
  std::uint8_t prefix[kPrefix.size()];
  RaiseIfNegative(file.Read(prefix));
  if (!std::equal(kPrefix.begin(), kPrefix.end(), prefix)) throw kMissingArgument;
}

}  // namespace

void zfQueryStream(Call& call) {
  const std::uint32_t stream_oref = call.OrefArgument(1);
  const std::string transfer_syntax = call.TextArgument(2);
  const VessaROList property_list = call.ListArgument(3);
  const bool sequence_answer = FlagArgument(call, 4);

  Call::Stage(" wrapping input stream");
  CVessaBinaryInputStream stream(stream_oref);
  RaiseIfNegative(stream.Open());

  Call::Stage(" setting up vdoc content handler");
  CVDocQuery query(property_list, sequence_answer);
  DecomposeUntilAnswered(stream, query, transfer_syntax, kQueryStreamReport);
  AppendAnswer(call.Succeed(), query.Results());
}

void zfQueryFileOrDataSet(Call& call) {
  const bool has_file_header = call.IntegerArgument(1) != 0;
  std::string file_name = call.TextArgument(2);
  const std::string transfer_syntax = call.TextArgument(3);
  const VessaROList property_list = call.ListArgument(4);
  const bool sequence_answer = FlagArgument(call, 5);
  const std::uint32_t output_oref = call.ArgumentCount() >= 6 ? call.OrefArgument(6) : 0;

  std::unique_ptr<CVessaBinaryOutputStream> output = WrapOutputStream(output_oref);

  Call::Stage(" wrapping input file");
  CVessaBinaryFileInputStream file(std::move(file_name));
  RaiseIfNegative(file.Open());
  if (has_file_header) PassFileHeader(file);

  Call::Stage(" setting up vdoc content handler");
  CVDocQuery query(property_list, sequence_answer, std::move(output));
  DecomposeUntilAnswered(file, query, transfer_syntax, kQueryFileOrDataSetReport);
  AppendAnswer(call.Succeed(), query.Results());
}

void zfGetNextSubscript(Call& call) {
  const std::uint32_t stream_oref = call.OrefArgument(1);
  const std::string transfer_syntax = call.TextArgument(2);
  const VessaROList property_list = call.ListArgument(3);

  Call::Stage(" wrapping input stream");
  CVessaBinaryInputStream stream(stream_oref);
  RaiseIfNegative(stream.Open());

  CVDocNextSubscript next(property_list);
  DecomposeUntilAnswered(stream, next, transfer_syntax, kGetNextSubscriptReport);
  call.Succeed().AppendInt64(next.Found());
}

}  // namespace vessa
