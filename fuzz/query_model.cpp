#include "fuzz/query_model.h"

namespace fuzz {
namespace {

/// Follows events through a data set.
class Place {
 public:
  void Follow(const Event& event) {
    switch (event.kind) {
      case EventKind::kStartElement:
        path_.push_back(event.tag);
        vr_ = event.text;
        length_ = event.number;
        break;
      case EventKind::kStartSequence:
        path_.push_back(0);
        break;
      case EventKind::kStartItem:
        length_ = event.number;
        if (path_.size() % 2 == 0 && !path_.empty()) ++path_.back();
        break;
      case EventKind::kEndElement:
      case EventKind::kEndSequence:
        path_.pop_back();
        break;
      default:
        break;
    }
  }

  const Path& At() const { return path_; }
  const std::string& Vr() const { return vr_; }
  std::uint32_t Length() const { return length_; }  ///< of the value, or the fragment, at hand

 private:
  Path path_;
  std::string vr_;
  std::uint32_t length_ = 0;
};

/// True when the target can no longer come in a data set whose tags ascend: it would have come before, or lies around.
bool IsPassed(const Path& path, const Path& target) { return path > target; }

}  // namespace

std::vector<Path> ValuePaths(const std::deque<Event>& events, std::size_t most) {
  std::vector<Path> paths;
  Place place;
  for (const Event& event : events) {
    place.Follow(event);
    if (event.kind != EventKind::kData || event.number != 1) continue;
    paths.push_back(place.At());
    if (paths.size() == most) break;
  }
  return paths;
}

Answer ExpectedAnswer(const std::deque<Event>& events, const Path& target, bool sequence_answer) {
  Place place;
  for (const Event& event : events) {
    place.Follow(event);
    if (sequence_answer && event.kind == EventKind::kStartElement && event.text == "SQ" &&
        place.At() == target) {
      return {Answer::Kind::kFound, "SQ", ""};
    }
    if (event.kind != EventKind::kData) continue;
    if (place.At() == target) {
      if (place.Length() > event.text.size()) return {Answer::Kind::kTooLong, "", ""};
      return {Answer::Kind::kFound, place.Vr(), event.text};
    }
    if (IsPassed(place.At(), target)) return {Answer::Kind::kAbsent, "", ""};
  }
  const bool ended = !events.empty() && events.back().kind == EventKind::kEndContent;
  return {ended ? Answer::Kind::kAbsent : Answer::Kind::kOpen, "", ""};
}

Answer ExpectedNextItem(const std::deque<Event>& events, Path target) {
  const std::string wanted = std::to_string(++target.back());
  Place place;
  for (const Event& event : events) {
    place.Follow(event);
    if (event.kind != EventKind::kStartItem) continue;
    if (place.At() == target) return {Answer::Kind::kFound, "", wanted};
    if (IsPassed(place.At(), target)) return {Answer::Kind::kAbsent, "", ""};
  }
  const bool ended = !events.empty() && events.back().kind == EventKind::kEndContent;
  return {ended ? Answer::Kind::kAbsent : Answer::Kind::kOpen, "", ""};
}

}  // namespace fuzz
