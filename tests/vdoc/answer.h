#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/vessa_ro_list.h"

/// What a query answered: nothing, or a VR and a value.
struct Answer {
  std::vector<std::string> items;

  bool operator==(const Answer&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  out << answer.items.size() << " items";
  for (const std::string& item : answer.items) out << " [" << item.substr(0, 40) << "] of " << item.size();
  return out;
}

inline const Answer kNoAnswer;
inline Answer Found(std::string vr, std::string value) { return {{std::move(vr), std::move(value)}}; }

inline Answer AnswerIn(vessa::VessaROList results) {
  Answer answer;
  const std::uint64_t count = results.Count();
  for (std::uint64_t i = 0; i < count; ++i) {
    results.Seek(i);
    answer.items.push_back(results.GetString());
  }
  return answer;
}
