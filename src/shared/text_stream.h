#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace postrove {

// Reads a text line by line. A line ends at CR LF, LF or CR, or at the end of the text.
class TextStream {
 public:
  explicit TextStream(std::wstring text) : text_(std::move(text)) {}

  bool AtEndOfStream() const { return at_ >= text_.size(); }

  // The next line without its end. Throws Error 62 at the end of the stream.
  std::wstring ReadLine();

 private:
  std::wstring text_;
  std::size_t at_ = 0;
};

}  // namespace postrove
