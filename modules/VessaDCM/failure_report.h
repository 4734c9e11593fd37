#pragma once

namespace vessa {

/// A line for the operating system's debug output. Line numbers and signatures are constants, so that whoever
/// watches the output finds the same text in every build.
struct FailureReport {
  const char* what;  ///< follows the function's signature
  int line;
  const char* function;
};

inline constexpr FailureReport kTagInfoReport{
    "lookup of tag failed", 305, "int __cdecl zfTagInfo(struct VessaString<unsigned char,32767> *)"};
inline constexpr FailureReport kSwitchByteOrderingReport{
    "switch byte ordering failed", 471,
    "int __cdecl zfSwitchByteOrdering(struct VessaString<unsigned char,32767> *,int)"};
inline constexpr FailureReport kQueryStreamReport{
    "query of stream failed", 815, "int __cdecl zfQueryStream(struct VessaString<unsigned char,32767> *)"};
inline constexpr FailureReport kGetNextSubscriptReport{
    "get next subscript from stream failed", 917,
    "int __cdecl zfGetNextSubscript(struct VessaString<unsigned char,32767> *)"};
inline constexpr FailureReport kQueryFileOrDataSetReport{
    "query of file failed", 1169,
    "int __cdecl zfQueryFileOrDataSet(struct VessaString<unsigned char,32767> *)"};
inline constexpr FailureReport kBigHexToDecimalReport{
    "big hex-to-decimal caused an exception", 1205,
    "int __cdecl zfBigHexToDecimal(struct VessaString<unsigned char,32767> *)"};

/// "File = VessaDCM.cpp Line = ... Function = ... ..."
void WriteReport(const FailureReport& report) noexcept;

/// Writes its report when an exception leaves the scope that it stands in.
class ReportOnFailure {
 public:
  explicit ReportOnFailure(const FailureReport& report);
  ~ReportOnFailure();
  ReportOnFailure(const ReportOnFailure&) = delete;
  ReportOnFailure& operator=(const ReportOnFailure&) = delete;

 private:
  const FailureReport& report_;
  int exceptions_on_entry_;
};

}  // namespace vessa
