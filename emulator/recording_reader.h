#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace emulator {

/// A recording that is none. The text names the line.
class RecordingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The lines of a recording, one at a time, without its title and comments.
class RecordingReader {
 public:
  /// @throws RecordingError  the text does not begin with the title
  explicit RecordingReader(std::istream& text);

  /// False behind the last line.
  bool HasLine() const { return has_line_; }
  const std::string& Line() const { return line_; }
  std::uint64_t LineNumber() const { return number_; }
  void Advance();

 private:
  bool Read();

  std::istream& text_;
  std::string line_;
  std::uint64_t number_ = 0;
  bool has_line_ = false;
};

/// Takes a line apart from its front. What is not there is not taken.
class LineScanner {
 public:
  explicit LineScanner(std::string_view text) : rest_(text) {}

  bool Take(std::string_view text);
  /// Up to the next blank.
  std::string_view TakeWord();
  std::optional<std::int64_t> TakeNumber();
  /// A text in quotes, as 16-bit units or, where all fit, as bytes.
  std::optional<std::vector<std::uint16_t>> TakeUnits();
  std::optional<std::string> TakeBytes();
  bool AtEnd() const { return rest_.empty(); }

 private:
  std::optional<std::uint16_t> TakeUnit();
  std::optional<std::uint16_t> TakeHex(std::size_t digits);

  std::string_view rest_;
};

/// A call as it was made.
struct RecordedCall {
  std::string name;
  std::optional<std::string> content;  ///< of its buffer
  std::vector<std::int32_t> numbers;
};

/// Nothing when the line is no call.
std::optional<RecordedCall> ReadCall(std::string_view line);

/// What stands behind the question of a callback's line.
struct RecordedAnswer {
  int status = 0;
  bool is_null = false;                ///< an area that was not given
  std::optional<std::int64_t> number;  ///< or the length of a text that is not there
  std::vector<std::uint16_t> units;    ///< of a text
  bool has_text = false;
};

/// Nothing when the text is no answer.
std::optional<RecordedAnswer> ReadAnswer(std::string_view text);

}  // namespace emulator
