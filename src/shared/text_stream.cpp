#include "shared/text_stream.h"

#include <algorithm>

#include "shared/error.h"

namespace postrove {

std::wstring TextStream::ReadLine() {
  if (AtEndOfStream()) {
    throw Error(kInputPastEnd, L"TextStream", L"The file ends too early: a line is missing.");
  }
  const std::size_t end = std::min(text_.find_first_of(L"\r\n", at_), text_.size());
  std::wstring line = text_.substr(at_, end - at_);
  at_ = end;
  if (at_ < text_.size()) {
    const bool pair = text_[at_] == L'\r' && at_ + 1 < text_.size() && text_[at_ + 1] == L'\n';
    at_ += pair ? 2 : 1;
  }
  return line;
}

}  // namespace postrove
