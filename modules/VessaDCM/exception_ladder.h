#pragma once

namespace vessa {

/// Puts the message of the exception that is being handled into the error text:
///   CException      its text
///   std::bad_alloc  none: there is nothing to say and no memory to say it
///   std::exception  its text (the value list codec's failures)
///   anything else   none; a bare status leaves the error text as its thrower left it
/// To be called inside a catch block only.
void KeepCurrentExceptionText() noexcept;

}  // namespace vessa
