#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "dicom/exception.h"
#include "dicom/status.h"
#include "dicom/tag.h"
#include "dicom/vr.h"

namespace vessa {

/// Receives a data set as events, in document order. Each event returns 0, or a negative status that ends the
/// decomposition. Lengths of kUndefinedLength are passed as they stand.
class CContentHandlerInterface {
 public:
  virtual ~CContentHandlerInterface() = default;

  virtual void Reset() {}
  virtual Status StartContent(std::string_view transfer_syntax) = 0;
  virtual Status EndContent() = 0;
  /// `tag`: of the sequence, or Item for a pixel data fragment.
  virtual Status StartItem(Tag tag, std::uint32_t length) = 0;
  virtual Status EndItem(Tag tag, std::uint32_t length) = 0;
  virtual Status StartElement(Tag tag, Vr vr, std::uint32_t length) = 0;
  virtual Status EndElement(Tag tag) = 0;
  /// One chunk of a value, numbered from 1. The bytes are the decomposer's and valid during the call.
  virtual Status Data(Tag tag, std::uint32_t chunk_number, std::span<const std::uint8_t> chunk) = 0;
  virtual Status StartSequence(Tag tag) = 0;
  virtual Status EndSequence() = 0;
  /// True when a sequence of length 0 is to be reported by StartSequence and EndSequence.
  virtual bool WantsEmptySequences() { return false; }
  /// False when Data for that element would do nothing whatever the bytes are: a stream that can pass over
  /// them without reading may then leave the Data events out.
  virtual bool WantsValue([[maybe_unused]] Tag tag) { return true; }

 protected:
  CContentHandlerInterface() = default;
  CContentHandlerInterface(const CContentHandlerInterface&) = default;
  CContentHandlerInterface& operator=(const CContentHandlerInterface&) = default;
};

/// Thrown by a handler that has its answer: the decomposition ends at once, with success.
class CSuccessException : public CException {};

}  // namespace vessa
