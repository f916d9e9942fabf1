#pragma once

#include <exception>
#include <string>
#include <utility>

namespace postrove {

// The one exception type of the system. The number is a Visual Basic run-time error number (below)
// or the HRESULT of a failed COM call; the source names the object or procedure that failed; the
// description is what the user reads.
class Error : public std::exception {
 public:
  Error(long number, std::wstring source, std::wstring description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  long Number() const { return number_; }
  const std::wstring& Source() const { return source_; }
  const std::wstring& Description() const { return description_; }
  const char* what() const noexcept override { return "postrove::Error"; }

 private:
  long number_;
  std::wstring source_;
  std::wstring description_;
};

// Visual Basic's numbers, where one of its errors is meant.
inline constexpr long kInvalidArgument = 5;
inline constexpr long kOutOfMemory = 7;
inline constexpr long kSubscriptOutOfRange = 9;
inline constexpr long kTypeMismatch = 13;
inline constexpr long kInternalError = 51;
inline constexpr long kFileNotFound = 53;
inline constexpr long kInputPastEnd = 62;
inline constexpr long kPathFileAccess = 75;
inline constexpr long kObjectNotSet = 91;

// The exception being handled as an Error: an Error unchanged, any other exception as an internal
// error (kInternalError) that names what() in its description, a failed allocation as kOutOfMemory.
// Call it from a catch block only.
Error CurrentError();

}  // namespace postrove
