#include "shared/file_name.h"

#include <gtest/gtest.h>

#include <string>

#include "shared/text.h"

namespace postrove {
namespace {

TEST(CleanFileName, GivesTheNamesOfTheTable) {
  const std::wstring longName(300, L'x');
  const struct {
    std::wstring text;
    std::wstring name;
    std::size_t maxUnits = 200;
  } kTable[] = {
      // Nothing to clean.
      {L"", L""},
      {L"Minutes of meeting, 12 May (att)", L"Minutes of meeting, 12 May (att)"},
      {L"Ärger über Größe – 日本語.msg", L"Ärger über Größe – 日本語.msg"},
      // Forbidden characters.
      {L"a\\b/c:d*e?f\"g<h>i|j", L"a-b-c-d-e-f-g-h-i-j"},
      {L"RE: offer", L"RE- offer"},
      {L"A=>B", L"A=-B"},
      // Control characters, direction marks, blanks.
      {L"a\tb\r\nc", L"a b c"},
      {std::wstring(L"a\0b", 3), L"a b"},
      {L"a\u007Fb\u0085c", L"a b c"},
      {L"invoice\u202Egsm.exe", L"invoice gsm.exe"},
      {L"\u200Fa\u200E\u2066b\u2069 \u202A c\u202C", L"a b c"},
      {L"a    b", L"a b"},
      // Dots and blanks at the ends.
      {L"..\\..\\x", L"-..-x"},
      {L"..", L""},
      {L" . . ", L""},
      {L" .a. ", L"a"},
      {L"etc...", L"etc"},
      {L"???", L"---"},
      // Device names.
      {L"CON", L"_CON"},
      {L"con.msg", L"_con.msg"},
      {L"Aux .tar.gz", L"_Aux .tar.gz"},
      {L"nul.", L"_nul"},
      {L"PRN", L"_PRN"},
      {L"COM0", L"_COM0"},
      {L"lpt9.txt", L"_lpt9.txt"},
      {L"COM\u00B2", L"_COM\u00B2"},
      {L"ConIn$", L"_ConIn$"},
      {L"CONOUT$.log", L"_CONOUT$.log"},
      {L"CONSOLE", L"CONSOLE"},
      {L"COM", L"COM"},
      {L"COM10", L"COM10"},
      {L"COMA", L"COMA"},
      {L"x.CON", L"x.CON"},
      {L"NUL-x", L"NUL-x"},
      // Length.
      {longName, std::wstring(200, L'x')},
      {L"abcdef", L"abc", 3},
      {L"abc", L"abc", 3},
      {L"ab cd", L"ab", 3},
      {L"ab.cd", L"ab", 3},
      {L"abc", L"", 0},
      {L"a\U0001F600b", L"a", 2},
      {L"a\U0001F600b", L"a\U0001F600", 3},
      {L"CONSOLE", L"_CO", 3},
      {L"CONSOLE", L"CONS", 4},
      {L"NUL.a", L"_NUL", 5},
  };
  for (const auto& [text, name, maxUnits] : kTable) {
    EXPECT_EQ(CleanFileName(text, maxUnits), name) << text::ToUtf8(text) << " at " << maxUnits;
  }
}

TEST(CleanFileName, TurnsHalvesOfPairsIntoBlanks) {
  const std::wstring high(1, static_cast<wchar_t>(0xD83D));
  const std::wstring low(1, static_cast<wchar_t>(0xDE00));
  EXPECT_EQ(CleanFileName(L"a" + high + L"b" + low), L"a b");
  EXPECT_EQ(CleanFileName(high), L"");
}

}  // namespace
}  // namespace postrove
