#pragma once

#include <optional>
#include <utility>

#include "shared/clsSharedUtil.h"

namespace postrove {

// A trouble that can last, such as a file that cannot be read: it is met each time the file is
// wanted, and told once until it is over.
class LastingTrouble {
 public:
  void Met(const Error& error) { error_ = error; }
  void Over() { *this = {}; }
  void WasTold() { told_ = error_.has_value(); }

  // Reports the trouble that was met, unless there is none or it was told before.
  void Tell(clsSharedUtil& utility, const wchar_t* procedure, const wchar_t* consequence) {
    if (!error_ || std::exchange(told_, true)) return;
    utility.ReportError(*error_, L"clsPostrove", procedure, consequence);
  }

 private:
  std::optional<Error> error_;
  bool told_ = false;
};

}  // namespace postrove
