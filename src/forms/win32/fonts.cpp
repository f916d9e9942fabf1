#include "forms/win32/fonts.h"

#include <algorithm>
#include <cstdlib>

#include "forms/win32/dpi.h"

namespace postrove::forms {
namespace {

constexpr int kDesignedPoints = 9;
constexpr int kPointsPerInch = 72;
constexpr int kTwipsPerInch = 1440;

}  // namespace

Fonts::Fonts(unsigned dpi, int percent) : message_(MessageFont(dpi)) {
  const int designed = MulDiv(kDesignedPoints, static_cast<int>(dpi), kPointsPerInch);
  const int height = std::max(std::abs(static_cast<int>(message_.lfHeight)), designed);
  layoutDpi_ = MulDiv(static_cast<int>(dpi), height, designed) * percent / 100;
  message_.lfHeight = message_.lfHeight * percent / 100;
}

HFONT Fonts::Get(int points, bool bold, bool underline) {
  for (const Entry& entry : entries_) {
    if (entry.points == points && entry.bold == bold && entry.underline == underline) {
      return entry.font.get();
    }
  }
  LOGFONTW font = message_;
  if (points) font.lfHeight = -MulDiv(points, layoutDpi_, kPointsPerInch);
  if (bold) font.lfWeight = FW_BOLD;
  if (underline) font.lfUnderline = TRUE;
  entries_.push_back({points, bold, underline, {}});
  entries_.back().font.reset(CreateFontIndirectW(&font));
  return entries_.back().font.get();
}

int Fonts::Pixels(int twips) const { return MulDiv(twips, layoutDpi_, kTwipsPerInch); }
int Fonts::Twips(int pixels) const { return MulDiv(pixels, kTwipsPerInch, layoutDpi_); }

TextRuler::TextRuler(HWND window)
    : window_(window),
      dc_(GetDC(window)),
      before_(SelectObject(dc_, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)))) {}

TextRuler::~TextRuler() {
  SelectObject(dc_, before_);
  ReleaseDC(window_, dc_);
}

SIZE TextRuler::Measure(const std::wstring& text, UINT format, int width) const {
  RECT area = {0, 0, width, 0};
  DrawTextW(dc_, text.c_str(), static_cast<int>(text.size()), &area, format | DT_CALCRECT);
  return {area.right, area.bottom};
}

int TextRuler::LineHeight() const {
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc_, &metrics);
  return metrics.tmHeight;
}

}  // namespace postrove::forms
