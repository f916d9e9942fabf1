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

Fonts::Fonts(unsigned dpi) : dpi_(dpi), message_(MessageFont(dpi)) {
  const int designed = MulDiv(kDesignedPoints, static_cast<int>(dpi), kPointsPerInch);
  const int height = std::max(std::abs(static_cast<int>(message_.lfHeight)), designed);
  layoutDpi_ = MulDiv(static_cast<int>(dpi), height, designed);
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

}  // namespace postrove::forms
