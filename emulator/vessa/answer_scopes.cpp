#include "emulator/vessa/answer_scopes.h"

#include "emulator/vessa/answer_printer.h"
#include "emulator/vessa/element_query.h"
#include "emulator/vessa/null_sink.h"
#include "emulator/vessa/property_reference.h"
#include "emulator/vessa/tag_text.h"

namespace emulator::tool {
namespace {

/// The element on which the reading of a VR depends; 0 for none.
std::uint32_t DecidingTag(const std::string& vr) {
  if (vr == "XS") return kPixelRepresentation;
  if (vr == "OX") return kBitsAllocated;
  return IsLocalText(vr) ? kSpecificCharacterSet : 0;
}

void ObserveIn(Session& session, const DicomFile& file, const std::vector<std::uint32_t>& properties,
               DataSetScopes& scopes) {
  try {
    NullSink no_meta;
    const auto answer =
        QueryStream(session, file.OpenDataSet(session, no_meta), {PropertyListFrom(properties)});
    if (answer) scopes.Observe(properties.back(), answer->value);
  } catch (const LibraryFailure&) {
    // The answer that was found is worth more than the way to read it.
  }
}

}  // namespace

DataSetScopes ScopesOfAnswer(Session& session, const DicomFile& file, const std::string& vr,
                             const std::vector<std::uint32_t>& properties) {
  DataSetScopes scopes;
  const std::uint32_t tag = DecidingTag(vr);
  if (tag == 0) return scopes;
  // Tags and item numbers alternate: the data set, the item in it, the item in that.
  for (std::size_t outer = 0; outer < properties.size(); outer += 2) {
    std::vector<std::uint32_t> decider(properties.begin(),
                                       properties.begin() + static_cast<std::ptrdiff_t>(outer));
    decider.push_back(tag);
    ObserveIn(session, file, decider, scopes);
  }
  return scopes;
}

}  // namespace emulator::tool
