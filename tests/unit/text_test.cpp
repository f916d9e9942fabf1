#include "shared/text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "outlook/office/object.h"
#include "shared/error.h"

namespace postrove {
namespace {

// The text with one wchar_t per code point natively and a surrogate pair where wchar_t is 16 bits.
std::wstring Points(std::u32string_view points) {
  std::wstring text;
  for (const char32_t point : points) text::AppendCodePoint(&text, point);
  return text;
}

std::wstring FoldAll(std::wstring text) {
  for (wchar_t& c : text) c = text::Fold(c);
  return text;
}

TEST(Text, FoldsTheCapitalsOfFourScripts) {
  const std::pair<std::u32string_view, std::u32string_view> kTable[] = {
      {U"ABCXYZ", U"abcxyz"},
      {U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞ", U"àáâãäåæçèéêëìíîïðñòóôõöøùúûüýþ"},
      {U"ĀĂĄĆČĎĐĒĘĞĢĨĮĲĴĶĹĽŁŃŇŊŌŐŒŔŘŚŞŠŢŤŨŮŰŲŴŶŸŹŻŽ",
       U"āăąćčďđēęğģĩįĳĵķĺľłńňŋōőœŕřśşšţťũůűųŵŷÿźżž"},
      {U"ǍǛǞǮǸȘȚȞȢȲḀẀẂẄẔẠẾỆỲỾ", U"ǎǜǟǯǹșțȟȣȳḁẁẃẅẕạếệỳỿ"},
      {U"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩΪΫΆΈΉΊΌΎΏϘϮϷϺ", U"αβγδεζηθικλμνξοπρστυφχψωϊϋάέήίόύώϙϯϸϻ"},
      {U"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ", U"абвгдежзийклмнопрстуфхцчшщъыьэюя"},
      {U"ЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏѠҀҊҐҾӀӁӍӐӾԀԮ",
       U"ѐёђѓєѕіїјљњћќѝўџѡҁҋґҿӏӂӎӑӿԁԯ"},
  };
  for (const auto& [capitals, small] : kTable) {
    EXPECT_EQ(FoldAll(Points(capitals)), Points(small));
    EXPECT_EQ(FoldAll(Points(small)), Points(small)) << "small letters stay";
    EXPECT_TRUE(text::EqualsIgnoreCase(Points(capitals), Points(small)));
  }
  EXPECT_TRUE(text::EqualsIgnoreCase(L"ΟΔΟΣ", L"οδος")) << "a sigma at the end of a word";
}

TEST(Text, FoldsNothingElse) {
  // Neighbours of the letters, signs between them, letters without a partner, other scripts.
  for (const char32_t c :
       U"@[`{×÷ßİıĸŉſ΀·ϏϐѾ҂ȠẟᎠ\u00A0\u1E9E\u2126\uFF21\uFFFF") {
    const auto unit = static_cast<wchar_t>(c);
    if (c == U'Ѿ') continue;  // a capital; its neighbour is not
    EXPECT_EQ(text::Fold(unit), unit) << std::hex << static_cast<unsigned>(c);
  }
  EXPECT_FALSE(text::EqualsIgnoreCase(L"Straße", L"STRASSE"));
  EXPECT_FALSE(text::EqualsIgnoreCase(L"I", L"ı"));
  EXPECT_FALSE(text::EqualsIgnoreCase(L"abc", L"abcd"));
  EXPECT_TRUE(text::EqualsIgnoreCase(L"", L""));
}

TEST(Text, FindsAndReplaces) {
  constexpr std::size_t kNone = std::wstring::npos;
  EXPECT_EQ(text::FindIgnoreCase(L"</BODY></body>", L"</body>"), 0u);
  EXPECT_EQ(text::FindIgnoreCase(L"</BODY></body>", L"</body>", 1), 7u);
  EXPECT_EQ(text::FindIgnoreCase(L"ÄäB", L"äb"), 1u);
  EXPECT_EQ(text::FindIgnoreCase(L"aa", L"aaa"), kNone);
  EXPECT_EQ(text::FindIgnoreCase(L"abc", L""), kNone);
  EXPECT_EQ(text::FindIgnoreCase(L"abc", L"c", 99), kNone);
  EXPECT_EQ(text::FindIgnoreCase(L"", L"c"), kNone);

  EXPECT_TRUE(text::StartsWithIgnoreCase(L"Überfall", L"über"));
  EXPECT_TRUE(text::StartsWithIgnoreCase(L"x", L""));
  EXPECT_FALSE(text::StartsWithIgnoreCase(L"x", L"xy"));
  const std::wstring_view cut = std::wstring_view(L"abc").substr(0, 2);
  EXPECT_FALSE(text::StartsWithIgnoreCase(cut, L"abc")) << "what lies behind a text is not read";
  EXPECT_EQ(text::FindIgnoreCase(cut, L"bc"), kNone);

  const std::vector<std::wstring> texts{L"x", L"Überfall", L"ÜBER"};
  EXPECT_EQ(text::FindStartingWith(texts, L"ÜbER"), 1u);
  EXPECT_EQ(text::FindStartingWith(texts, L""), 0u);
  EXPECT_EQ(text::FindStartingWith(texts, L"xy"), kNone);

  EXPECT_EQ(text::Replace(L"aXbXc", L"X", L"--"), L"a--b--c");
  EXPECT_EQ(text::Replace(L"aXb", L"x", L"-"), L"aXb");
  EXPECT_EQ(text::Replace(L"aaaa", L"aa", L"a"), L"aa") << "replaced text is not searched again";
  EXPECT_EQ(text::Replace(L"''", L"'", L"''"), L"''''");
  EXPECT_EQ(text::Replace(L"abc", L"", L"x"), L"abc");
  EXPECT_EQ(text::ReplaceIgnoreCase(L"Project PROJECT project", L"pRoject", L"Job"),
            L"Job Job Job");
  EXPECT_EQ(text::ReplaceIgnoreCase(L"aaa", L"A", L""), L"");
}

TEST(Text, TrimsBlanksOnly) {
  EXPECT_EQ(text::Trim(L"  a b  "), L"a b");
  EXPECT_EQ(text::Trim(L"    "), L"");
  EXPECT_EQ(text::Trim(L""), L"");
  EXPECT_EQ(text::Trim(L"\ta\u00A0"), L"\ta\u00A0");
}

TEST(Text, ReadsAndWritesNumbers) {
  const std::pair<const wchar_t*, double> kTable[] = {
      {L"", 0},
      {L"abc", 0},
      {L"11.0.8173", 11},
      {L"16", 16},
      {L"  -12.5x", -12.5},
      {L"+3", 3},
      {L"1 000", 1000},
      {L"\t7\n5", 75},
      {L".5", 0.5},
      {L"5.", 5},
      {L"-", 0},
      {L".", 0},
      {L"--1", 0},
      {L"1-2", 1},
      {L"1,5", 1},
      {L"\u0664", 0},
      {L"9.05", 9.05},
      {L"0.1234567890123456789", 0.1234567890123456789}};
  for (const auto& [written, value] : kTable) {
    EXPECT_DOUBLE_EQ(text::LeadingNumber(written), value) << text::ToUtf8(written);
  }
  const double huge =
      text::LeadingNumber(L"1" + std::wstring(400, L'0') + L"." + std::wstring(400, L'1'));
  EXPECT_GT(huge, 1e300);

  EXPECT_EQ(text::FromNumber(0), L"0");
  EXPECT_EQ(text::FromNumber(-9223372036854775807LL - 1), L"-9223372036854775808");
}

TEST(Text, ConvertsWellFormedTextBothWays) {
  const struct {
    std::u32string_view points;
    std::string_view utf8;
    std::u16string_view utf16;
  } kTable[] = {
      {U"", "", u""},
      {std::u32string_view(U"a\0b", 3), std::string_view("a\0b", 3),
       std::u16string_view(u"a\0b", 3)},
      {U"\u007F\u0080\u07FF\u0800", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80",
       u"\u007F\u0080\u07FF\u0800"},
      {U"\uD7FF\uE000\uFFFF", "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\uD7FF\uE000\uFFFF"},
      {U"\U00010000\U0001F600\U0010FFFF", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
       u"\U00010000\U0001F600\U0010FFFF"},
  };
  for (const auto& [points, utf8, utf16] : kTable) {
    const std::wstring text = Points(points);
    EXPECT_EQ(text::ToUtf8(text), utf8);
    EXPECT_EQ(text::FromUtf8(utf8), text);
    EXPECT_EQ(text::ToUtf16(text), utf16);
    EXPECT_EQ(text::FromUtf16(utf16), text);
    // Surrogate pairs count as one character whatever the width of wchar_t.
    EXPECT_EQ(text::ToUtf8(std::wstring(utf16.begin(), utf16.end())), utf8);
  }
}

TEST(Text, ReplacesMalformedInput) {
  const std::pair<std::string_view, std::u32string_view> kUtf8[] = {
      {"a\x80z", U"a\uFFFDz"},                            // a following byte alone
      {"\xC3", U"\uFFFD"},                                // cut off
      {"\xE2\x82", U"\uFFFD"},                            // cut off after two of three
      {"\xE2\x82z", U"\uFFFDz"},                          // nothing but the broken part goes
      {"\xC0\xAF", U"\uFFFD\uFFFD"},                      // overlong "/"
      {"\xE0\x80\xAF", U"\uFFFD\uFFFD\uFFFD"},            // overlong in three
      {"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"},  // past the last code point
      {"\xF0\x9F\x98", U"\uFFFD"},                        // cut off after three of four
      {"\xFF\xFE", U"\uFFFD\uFFFD"},
  };
  for (const auto& [bytes, points] : kUtf8) EXPECT_EQ(text::FromUtf8(bytes), Points(points));

  const std::wstring high(1, static_cast<wchar_t>(0xD83D));
  const std::wstring low(1, static_cast<wchar_t>(0xDE00));
  EXPECT_EQ(text::ToUtf8(high + L"x"), "\xEF\xBF\xBDx");
  EXPECT_EQ(text::ToUtf8(low + high), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(text::FromUtf16(text::ToUtf16(low + high)), low + high) << "UTF-16 keeps halves";
  if (sizeof(wchar_t) == 4) {
    EXPECT_EQ(text::ToUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    EXPECT_EQ(text::ToUtf16(std::wstring(1, static_cast<wchar_t>(-1))), u"\uFFFD");
  }
}

TEST(Text, EscapesForHtml) {
  EXPECT_EQ(text::EscapeHtml(L"<a href=\"x\">&amp;</a>\r\n'"),
            L"&lt;a href=&quot;x&quot;&gt;&amp;amp;&lt;/a&gt;\r\n'");
  EXPECT_EQ(text::EscapeHtml(Points(U"é€\U0001F600")), L"&#233;&#8364;&#128512;");
  EXPECT_EQ(text::EscapeHtml(std::wstring(1, static_cast<wchar_t>(0xD83D))), L"&#65533;");
}

TEST(Text, NormalisesFolders) {
  EXPECT_EQ(text::NormaliseFolder(L""), L"");
  EXPECT_EQ(text::NormaliseFolder(L"Corr_Out"), L"Corr_Out\\");
  EXPECT_EQ(text::NormaliseFolder(L"C:\\"), L"C:\\");
  EXPECT_EQ(text::NormaliseFolder(L"C:/x/"), L"C:/x/\\");
}

template <typename Exception>
Error Caught(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return CurrentError();
  }
}

TEST(Error, NamesWhateverWasThrown) {
  const Error own = Caught(Error(kFileNotFound, L"LabelFile", L"File not found"));
  EXPECT_EQ(own.Number(), kFileNotFound);
  EXPECT_EQ(own.Source(), L"LabelFile");
  EXPECT_EQ(own.Description(), L"File not found");

  const Error internal = Caught(std::out_of_range("caf\xC3\xA9"));
  EXPECT_EQ(internal.Number(), kInternalError);
  EXPECT_NE(internal.Description().find(L"café"), std::wstring::npos);

  EXPECT_EQ(Caught(std::bad_alloc()).Number(), kOutOfMemory);
  EXPECT_EQ(Caught(42).Number(), kInternalError);
}

// What Outlook answers, read as Visual Basic reads it.
TEST(Values, AreConvertedOrRefused) {
  using office::Value;
  const Value kNothing, kObject = office::ObjectPtr(), kWords = std::wstring(L"words");
  const struct {
    Value value;
    int flag, number;  // -2: refused
    const wchar_t* text;
  } cases[] = {{true, 1, -1, L"True"},
               {false, 0, 0, L"False"},
               {7, 1, 7, L"7"},
               {2.5, 1, 2, nullptr},
               {3e9, 1, -2, nullptr},
               {std::wstring(L"True"), 1, -2, L"True"},
               {std::wstring(L"12"), 1, 12, L"12"},
               {kWords, -2, -2, L"words"},
               {kNothing, 0, 0, L""},
               {kObject, -2, -2, nullptr}};
  const auto read = [](auto&& convert) {
    try {
      return static_cast<int>(convert());
    } catch (const Error& error) {
      EXPECT_EQ(error.Number(), kTypeMismatch);
      return -2;
    }
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(&one - cases);
    EXPECT_EQ(read([&] { return office::ToBool(one.value); }), one.flag);
    EXPECT_EQ(read([&] { return office::ToLong(one.value); }), one.number);
    EXPECT_EQ(read([&] { return office::ToText(one.value) == one.text; }), one.text ? 1 : -2);
  }
  EXPECT_EQ(office::ToObject(kNothing), nullptr);
  EXPECT_THROW(office::ToObject(kWords), Error);
}

}  // namespace
}  // namespace postrove
