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
      // Nothing to see, and what is between letters.
      {L"\u200B\u00A0\u2800\uFEFF\u3164\U000E0020\u00AD", L""},
      {L".\u2063.", L""},
      {L"a\u200Bb", L"a\u200Bb"},
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

TEST(CleanFolder, IsWhatWindowsMakesOfThePath) {
  const wchar_t kDrive[] = L"The Folder must begin with a drive or a server";
  const struct {
    std::wstring_view path, folder, fault;
  } kTable[] = {
      {L"", L"", kDrive},
      {L"C:", L"C:\\", L""},
      {L" C:/a//b/ ", L"C:\\a\\b\\", L""},
      {L"C:\\a .\\b. . \\.c", L"C:\\a\\b\\.c\\", L""},
      {L"C:\\a\\.\\b\\..\\c", L"C:\\a\\c\\", L""},
      {L"C:\\..\\..\\a", L"C:\\a\\", L""},
      {L"//server/share/../a ", L"\\\\server\\share\\a\\", L""},
      {L"C:\\console\\a.nul", L"C:\\console\\a.nul\\", L""},
      {L"C:\\a\\nul.txt\\b", L"C:\\a\\nul.txt\\b\\", L"The Folder cannot contain \"nul.txt\""},
      {L"C:\\Con", L"C:\\Con\\", L"The Folder cannot contain \"Con\""},
      {L"\\\\?\\C:\\a", L"\\\\?\\C:\\a\\", kDrive},
      {L"//./C:/a", L"\\\\.\\C:\\a\\", kDrive},
      {L"\\\\", L"\\\\", kDrive},
      {L"\\root", L"root\\", kDrive},
      {L"C:a", L"C:a\\", kDrive},
      {L"..\\up", L"..\\up\\", kDrive},
      {L"a", L"a\\", kDrive},
  };
  for (const auto& [path, folder, fault] : kTable) {
    SCOPED_TRACE(text::ToUtf8(path));
    EXPECT_EQ(CleanFolder(path), folder);
    EXPECT_EQ(CleanFolder(folder), folder);
    const std::wstring told = FolderFault(folder);
    EXPECT_TRUE(fault.empty() ? told.empty() : told.starts_with(fault)) << text::ToUtf8(told);
  }
}

TEST(MessageNames, HaveOneEndingAndFitIntoAPath) {
  for (const auto& [name, stem] : {std::pair{L"Minutes.MSG . ", L"Minutes"},
                                   {L"Minutes", L"Minutes"},
                                   {L"a.msg.b", L"a.msg.b"},
                                   {L".msg", L""},
                                   {L"msg", L"msg"},
                                   {L"", L""}}) {
    EXPECT_EQ(WithoutMessageEnding(name), stem);
  }
  // 259 units, a letter beyond the 16-bit plane being two.
  for (const auto& [folder, room] : {std::pair{std::wstring(253, L'd'), 2u},
                                     {std::wstring(254, L'd'), 1u},
                                     {std::wstring(255, L'd'), 0u},
                                     {std::wstring(300, L'd'), 0u},
                                     {L"\U0001F600" + std::wstring(251, L'd'), 2u}}) {
    EXPECT_EQ(RoomForName(folder, L".msg"), room);
  }
}

}  // namespace
}  // namespace postrove
