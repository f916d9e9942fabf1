#pragma once

#include <windows.h>

#include <memory>
#include <vector>

namespace postrove::forms {

// The fonts of one dialog at one scaling: the system's message font and its variants.
class Fonts {
 public:
  explicit Fonts(unsigned dpi);

  // The font belongs to this object. A size of 0 is that of the message font; null, the built-in
  // font, when the system has none left.
  HFONT Get(int points, bool bold, bool underline);

  // Twips to pixels, enlarged when the user chose a larger message font than the forms are designed
  // for.
  int Pixels(int twips) const;
  int Twips(int pixels) const;

 private:
  struct Deleter {
    void operator()(HFONT font) const { DeleteObject(font); }
  };
  struct Entry {
    int points;
    bool bold;
    bool underline;
    std::unique_ptr<std::remove_pointer_t<HFONT>, Deleter> font;
  };

  unsigned dpi_;
  LOGFONTW message_;
  int layoutDpi_;
  std::vector<Entry> entries_;
};

}  // namespace postrove::forms
