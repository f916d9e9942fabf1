#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace postrove::forms {

// The fonts of one dialog at one scaling: the system's message font and its variants.
class Fonts {
 public:
  // `percent`: of the usual size, on a screen that is too small for it.
  explicit Fonts(unsigned dpi, int percent = 100);

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

  LOGFONTW message_;
  int layoutDpi_;
  std::vector<Entry> entries_;
};

// Measures texts as a window shows them, in pixels and in the font that it was given.
class TextRuler {
 public:
  explicit TextRuler(HWND window);
  ~TextRuler();
  TextRuler(const TextRuler&) = delete;
  TextRuler& operator=(const TextRuler&) = delete;

  // `format` as for DrawText; with line breaks the text is wrapped at `width`.
  SIZE Measure(const std::wstring& text, UINT format, int width = 0) const;
  int LineHeight() const;

 private:
  HWND window_;
  HDC dc_;
  HGDIOBJ before_;
};

}  // namespace postrove::forms
