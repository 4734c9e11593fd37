#pragma once

#include <string>
#include <string_view>

namespace vessa {

/// The family of failures that carry their own message. The first virtual operation gives the text.
class CException {
 public:
  /// The message for the host; empty for a stop that is no failure.
  virtual const std::string& Text() const noexcept { return text_; }
  virtual ~CException() = default;

 protected:
  CException() = default;
  explicit CException(std::string_view text) : text_(text) {}
  /// `text` with its "%1" replaced by `argument`.
  CException(std::string_view text, std::string_view argument);
  CException(const CException&) = default;
  CException(CException&&) = default;
  CException& operator=(const CException&) = default;
  CException& operator=(CException&&) = default;

 private:
  std::string text_;
};

/// A stream that could not be read or parsed.
class CDecomposeException : public CException {
 public:
  explicit CDecomposeException(std::string_view text) : CException(text) {}
  CDecomposeException(std::string_view text, std::string_view argument) : CException(text, argument) {}
};

}  // namespace vessa
