#include "emulator/vessa/element_query.h"

#include <fmt/format.h>

#include "emulator/vessa/call_report.h"
#include "emulator/vessa/registered.h"
#include "emulator/vessa/watched_stream.h"

namespace emulator::tool {
namespace {

std::optional<ElementAnswer> AnswerIn(const ListResult& result) {
  if (result.values.empty()) return std::nullopt;
  return ElementAnswer{AsBytes(result.values.at(0).value), AsBytes(result.values.at(1).value)};
}

/// Calls a call-out whose first arguments are a stream and its syntax. A failure is told with the place in the data.
ListResult CallOverStream(Session& session, const DicomFile::PositionedStream& input, std::string_view name,
                          const std::function<void(ListBuilder&)>& add_arguments) {
  CallProgress& progress = session.Progress();
  progress.NameInput(input.name);
  const Registered stream(session.TheHost(), std::make_shared<WatchedStream>(input.stream, progress));
  stream->Publish();
  ListBuilder arguments;
  arguments.Integer(stream.Oref()).String(input.transfer_syntax);
  add_arguments(arguments);
  try {
    return session.CallList(name, arguments);
  } catch (const LibraryFailure& failure) {
    if (stream->HasReadError())
      throw ToolError(kInputUnreadable, fmt::format("{}: the file cannot be read to its end", input.name));
    throw LibraryFailure(fmt::format("{}: {}\n  at {}", input.name, failure.what(), PlaceText(progress)));
  }
}

}  // namespace

std::optional<ElementAnswer> QueryStream(Session& session, const DicomFile::PositionedStream& input,
                                         const ElementQuery& query) {
  return AnswerIn(CallOverStream(session, input, "zfQueryStream", [&query](ListBuilder& arguments) {
    arguments.String(query.property_list).Integer(query.sequence_may_answer ? 1 : 0);
  }));
}

std::optional<ElementAnswer> QueryFile(Session& session, const std::string& path, bool has_header,
                                       const std::string& transfer_syntax, const ElementQuery& query,
                                       const std::shared_ptr<StreamObject>& result_stream) {
  session.Progress().NameInput(path);
  std::optional<Registered<StreamObject>> output;
  if (result_stream != nullptr) output.emplace(session.TheHost(), result_stream);
  ListBuilder arguments;
  arguments.Integer(has_header ? 1 : 0)
      .String(path)
      .String(transfer_syntax)
      .String(query.property_list)
      .Integer(query.sequence_may_answer ? 1 : 0)
      .Integer(output ? output->Oref() : 0);
  try {
    return AnswerIn(session.CallList("zfQueryFileOrDataSet", arguments));
  } catch (const LibraryFailure& failure) {
    throw LibraryFailure(fmt::format("{}: {}", path, failure.what()));
  }
}

std::uint32_t NextItem(Session& session, const DicomFile::PositionedStream& input,
                       const std::string& property_list) {
  const ListResult result =
      CallOverStream(session, input, "zfGetNextSubscript",
                     [&property_list](ListBuilder& arguments) { arguments.String(property_list); });
  return static_cast<std::uint32_t>(AsInteger(result.values.at(0).value));
}

}  // namespace emulator::tool
