#include "shared/ini_text.h"

#include <gtest/gtest.h>

#include <string>

#include "memory/Latin1.h"
#include "shared/error.h"
#include "shared/text.h"

namespace postrove {
namespace {

using testing::kLatin1;

// A code page in which the second byte of a character can be "[", "]" or "\": a byte from 0x81 on
// and the next one are one character.
const CodePage kDoubleByte{[](const std::string& bytes) {
                             std::wstring text;
                             for (std::size_t i = 0; i < bytes.size(); ++i) {
                               unsigned c = static_cast<unsigned char>(bytes[i]);
                               if (c > 0x80 && i + 1 < bytes.size()) {
                                 c = c << 8 | static_cast<unsigned char>(bytes[++i]);
                               }
                               text.push_back(static_cast<wchar_t>(c));
                             }
                             return text;
                           },
                           [](const std::wstring& text) {
                             std::string bytes;
                             for (const wchar_t c : text) {
                               if (c > 0xFF) bytes.push_back(static_cast<char>(c >> 8));
                               bytes.push_back(static_cast<char>(c & 0xFF));
                             }
                             return bytes;
                           }};

std::string Utf8(const std::wstring& text) { return "\xEF\xBB\xBF" + text::ToUtf8(text); }

std::string Utf16BigEndian(const std::wstring& text) {
  std::string bytes = "\xFE\xFF";
  for (const char16_t unit : text::ToUtf16(text)) {
    bytes.push_back(static_cast<char>(unit >> 8));
    bytes.push_back(static_cast<char>(unit & 0xFF));
  }
  return bytes;
}

std::string Utf16(const std::wstring& text) {
  std::string bytes = Utf16BigEndian(text);
  for (std::size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

std::wstring Read(const std::string& bytes, std::wstring_view section, std::wstring_view key) {
  return ini::Read(bytes, section, key, kLatin1).value_or(L"(nothing)");
}

std::string Write(const std::string& bytes, std::wstring_view section, std::wstring_view key,
                  std::wstring_view value) {
  return ini::Write(bytes, section, key, value, kLatin1);
}

TEST(IniRead, FindsTheValue) {
  constexpr wchar_t kNone[] = L"(nothing)";
  const struct {
    const char* file;
    const wchar_t* section;
    const wchar_t* key;
    const wchar_t* value;
  } kTable[] = {
      {"", L"S", L"k", kNone},
      {"[S]", L"S", L"k", kNone},
      {"k=outside\n[S]\nx=1", L"S", L"k", kNone},
      {"[S]\nk=1", L"T", L"k", kNone},
      {"[S]\nk=1", L"S", L"k", L"1"},
      {"[S]\r\nk=1\r\n", L"S", L"k", L"1"},
      {"[S]\rk=1\rj=2", L"S", L"j", L"2"},
      {"\n\n  [ Setup ]  \n\t Root \t=  C:\\  \n", L"sETUP", L"rOOT", L"C:\\"},
      {"[S]\nk=1", L" S\t", L"\tk ", L"1"},
      {"[\xC4rger]\n\xD6l=1", L"ärger", L"öl", L"1"},
      // Values.
      {"[S]\nk=", L"S", L"k", L""},
      {"[S]\nk=   ", L"S", L"k", L""},
      {"[S]\nk", L"S", L"k", kNone},
      {"[S]\nk=a=b]=[c;d#e", L"S", L"k", L"a=b]=[c;d#e"},
      {"[S]\nk=1 ; no comment", L"S", L"k", L"1 ; no comment"},
      {"[S]\nk=caf\xE9", L"S", L"k", L"café"},
      {"[S]\n=1", L"S", L"", kNone},
      // Quotes.
      {"[S]\nk=\" - \"", L"S", L"k", L" - "},
      {"[S]\nk= \"\" ", L"S", L"k", L""},
      {"[S]\nk=\"", L"S", L"k", L"\""},
      {"[S]\nk=\"\"\"", L"S", L"k", L"\""},
      {"[S]\nk=\"\"a\"\"", L"S", L"k", L"\"a\""},
      {"[S]\nk=\"a", L"S", L"k", L"\"a"},
      {"[S]\nk=' a '", L"S", L"k", L" a "},
      {"[S]\nk='a\"", L"S", L"k", L"'a\""},
      // Comments, and lines that are neither.
      {"[S]\n;k=1\n#k=2\n  ;k=3\nk=4", L"S", L"k", L"4"},
      {";[S]\nk=1", L"S", L"k", kNone},
      {"[S]\nnonsense\n[T\nk=1", L"S", L"k", L"1"},
      {"[S]\n[k=1", L"S", L"[k", kNone},
      {"[S] trailing ] words\nk=1", L"S", L"k", L"1"},
      // What stands twice.
      {"[S]\nk=1\nK=2", L"S", L"k", L"1"},
      {"[S]\nj=1\n[T]\nk=2\n[s]\nk=3", L"S", L"k", kNone},
      {"[S]\nj=1\n[S]\nk=2", L"S", L"k", kNone},
      {"[T]\nk=1\n[S]\nk=2", L"S", L"k", L"2"},
  };
  for (const auto& [file, section, key, value] : kTable) {
    EXPECT_EQ(Read(file, section, key), value) << file;
  }
}

TEST(IniRead, KnowsTheEncodings) {
  const std::wstring file = L"[Žlutý]\r\nkůň=日本語 \U0001F600\r\n[T]\r\nk=2";
  for (const std::string& bytes : {Utf8(file), text::ToUtf8(file), Utf16(file), Utf16(file) + "x",
                                   Utf16BigEndian(file), Utf16BigEndian(file) + "x"}) {
    EXPECT_EQ(Read(bytes, L"žLUTÝ", L"KŮŇ"), L"日本語 \U0001F600");
    EXPECT_EQ(Read(bytes, L"T", L"k"), L"2");
  }
  // U+0A0D and U+5B5D are characters, not line breaks and brackets.
  EXPECT_EQ(Read(Utf16(L"[S]\nk=\u0A0D\u5B5D\u3D3D\n"), L"S", L"k"), L"\u0A0D\u5B5D\u3D3D");
  EXPECT_EQ(Read("\xEF\xBB\xBF[S]\nk=\xC3(\n", L"S", L"k"), L"\uFFFD(");
  EXPECT_EQ(Read("[S]\nk=\xC3\xA4(\nj=\xC3(", L"S", L"k"), L"\u00C3\u00A4(") << "not all is UTF-8";
  EXPECT_EQ(Read("\xEF\xBB\xBF", L"S", L"k"), L"(nothing)");
  EXPECT_EQ(Read("\xFF\xFE[", L"S", L"k"), L"(nothing)");

  const std::string doubleByte = "[\x83]\x95\x5D]\nk\x83[\x83\\=\x81]x";
  EXPECT_EQ(ini::Read(doubleByte, L"\u835D\u955D", L"k\u835B\u835C", kDoubleByte), L"\u815Dx");
}

TEST(IniWrite, ChangesOneValueOnly) {
  const struct {
    const char* before;
    const wchar_t* section;
    const wchar_t* key;
    const wchar_t* value;
    const char* after;
  } kTable[] = {
      // A new file, section, key.
      {"", L"Setup", L"Root", L"C:\\", "[Setup]\r\nRoot=C:\\\r\n"},
      {"[S]\na=1\n", L"T", L"k", L"2", "[S]\na=1\n\n[T]\nk=2\n"},
      {"[S]\r\na=1", L"T", L"k", L"2", "[S]\r\na=1\r\n\r\n[T]\r\nk=2\r\n"},
      {"[S]\na=1\n", L"S", L"k", L"2", "[S]\na=1\nk=2\n"},
      {"[S]", L"s", L"k", L"2", "[S]\r\nk=2\r\n"},
      {"[S]\r\na=1", L"S", L"k", L"2", "[S]\r\na=1\r\nk=2\r\n"},
      {"[S]\n\n; of T\n[T]\n", L"S", L"k", L"2", "[S]\nk=2\n\n; of T\n[T]\n"},
      {"[S]\na=1\n; more\nb=2\n\n# of T\n[T]\nk=1\n", L"S", L"k", L"2",
       "[S]\na=1\n; more\nb=2\nk=2\n\n# of T\n[T]\nk=1\n"},
      {"; only a remark", L"S", L"k", L"2", "; only a remark\r\n\r\n[S]\r\nk=2\r\n"},
      {"[S]\rk=1\r", L"S", L"j", L"2", "[S]\rk=1\rj=2\r"},
      // A value in its place.
      {"[S]\n k\t=  1  \nj=2\n", L"S", L"K", L"new", "[S]\n k\t=  new  \nj=2\n"},
      {"[S]\nk=1", L"S", L"k", L"2", "[S]\nk=2"},
      {"[S]\nk=\n", L"S", L"k", L"2", "[S]\nk=2\n"},
      {"[S]\nk=1\r\nj=2\n\r\n", L"S", L"k", L"", "[S]\nk=\r\nj=2\n\r\n"},
      {"[S]\nk=1\nk=2\n[S]\nk=3", L"S", L"k", L"x", "[S]\nk=x\nk=2\n[S]\nk=3"},
      {"[S]\nj=1\n[S]\nk=3", L"S", L"k", L"x", "[S]\nj=1\nk=x\n[S]\nk=3"},
      {";k=0\n[T]\nk=0\n[S]\n;k=0\nk=1\n", L"S", L"k", L"2", ";k=0\n[T]\nk=0\n[S]\n;k=0\nk=2\n"},
      // Quotes as needed.
      {"[S]\nk=\"x\"\n", L"S", L"k", L"y", "[S]\nk=y\n"},
      {"[S]\nk=x\n", L"S", L"k", L" - ", "[S]\nk=\" - \"\n"},
      {"[S]\nk=x\n", L"S", L"k", L"a\t", "[S]\nk=\"a\t\"\n"},
      {"[S]\nk=x\n", L"S", L"k", L"\"", "[S]\nk=\"\"\"\n"},
      {"[S]\nk=x\n", L"S", L"k", L"\"a\" b", "[S]\nk=\"\"a\" b\"\n"},
      {"[S]\nk=x\n", L"S", L"k", L"a \"b\" c", "[S]\nk=a \"b\" c\n"},
      {"[S]\nk=x\n", L"S", L"k", L"'a'", "[S]\nk=\"'a'\"\n"},
      {"[S]\nk=x\n", L"S", L"k", L"=>;[x]#", "[S]\nk==>;[x]#\n"},
      // Nothing to do.
      {"[S]\nk=\"x\"", L"S", L"k", L"x", "[S]\nk=\"x\""},
      // Bytes outside the value are not looked at.
      {"\x81\xFF\x1A[S]\n[S]\nk=\xE9\n\x90", L"S", L"k", L"é!",
       "\x81\xFF\x1A[S]\n[S]\nk=\xE9!\n\x90"},
  };
  for (const auto& [before, section, key, value, after] : kTable) {
    EXPECT_EQ(Write(before, section, key, value), after) << before;
    EXPECT_EQ(Read(after, section, key), value) << after;
  }
}

TEST(IniWrite, KeepsTheEncoding) {
  for (const auto encode : {Utf8, Utf16, Utf16BigEndian}) {
    EXPECT_EQ(Write(encode(L"; č\n[S]\n k = 1 \n; é"), L"S", L"k", L"日本\U0001F600"),
              encode(L"; č\n[S]\n k = 日本\U0001F600 \n; é"));
    EXPECT_EQ(Write(encode(L"[S]\r\nk=1"), L"Ž", L"č", L"x"),
              encode(L"[S]\r\nk=1\r\n\r\n[Ž]\r\nč=x\r\n"));
    EXPECT_EQ(Write(encode(L""), L"S", L"k", L"x"), encode(L"[S]\r\nk=x\r\n"));
  }
  EXPECT_EQ(Write("; \xC4\x8D\n[S]\nk=1", L"S", L"k", L"ä"), "; \xC4\x8D\n[S]\nk=\xC3\xA4");
  EXPECT_EQ(Write(Utf16(L"[S]\n") + "x", L"S", L"k", L"1"), Utf16(L"[S]\nk=1\n"))
      << "half a unit is dropped, or everything behind it would be shifted";
  EXPECT_EQ(ini::Write("[\x83]]\nk=\x81]\n", L"\u835D", L"k", L"\u835C", kDoubleByte),
            "[\x83]]\nk=\x83\\\n");
}

TEST(IniWrite, TurnsTheFileIntoUtf16ForWhatTheCodePageLacks) {
  const std::string before = "; caf\xE9\r\n[S]\r\nk=1\r\n";
  try {
    ini::Write(before, L"S", L"k", L"Łódź", kLatin1, ini::Recoding::Refused);
    ADD_FAILURE() << "another program's file was written";
  } catch (const Error& error) {
    EXPECT_NE(error.Description().find(L"\"Łódź\" has a character that"), std::wstring::npos);
  }
  EXPECT_EQ(Write(before, L"S", L"k", L"Łódź"), Utf16(L"; café\r\n[S]\r\nk=Łódź\r\n"));
  EXPECT_EQ(Write(before, L"S", L"Ł", L"1"), Utf16(L"; café\r\n[S]\r\nk=1\r\nŁ=1\r\n"));
  EXPECT_EQ(Write(before, L"Ł", L"k", L"1"), Utf16(L"; café\r\n[S]\r\nk=1\r\n\r\n[Ł]\r\nk=1\r\n"));
  EXPECT_EQ(Write(before, L"S", L"k", L"?"), "; caf\xE9\r\n[S]\r\nk=?\r\n");
  // These would be read as UTF-8: the new value, or one that was there before.
  EXPECT_EQ(Write("[S]\n", L"S", L"k", L"Ã¤"), Utf16(L"[S]\nk=Ã¤\n"));
  EXPECT_EQ(Write("[S]\nk=\xE9\nj=\xC3\xA4\n", L"S", L"k", L"1"), Utf16(L"[S]\nk=1\nj=Ã¤\n"));
  const CodePage utf8{[](const std::string& bytes) { return text::FromUtf8(bytes); },
                      [](const std::wstring& text) { return text::ToUtf8(text); }};
  EXPECT_EQ(ini::Write("[S]\n", L"S", L"k", L"ä", utf8), "[S]\nk=\xC3\xA4\n");
}

TEST(IniWrite, RefusesWhatTheFormatCannotHold) {
  const std::wstring null(1, L'\0');
  const std::wstring half(1, static_cast<wchar_t>(0xD83D));
  const struct {
    std::wstring section;
    std::wstring key;
    std::wstring value;
  } kTable[] = {
      {L"", L"k", L"v"},     {L" \t", L"k", L"v"},     {L"S", L"", L"v"},    {L"S", L" ", L"v"},
      {L"S", L"k", L"a\nb"}, {L"S", L"k", L"a\r"},     {L"S", L"k", null},   {L"S\n", L"k", L"v"},
      {L"S", L"k\r", L"v"},  {L"S" + null, L"k", L""}, {L"S", L"a=b", L"v"}, {L"S", L";k", L"v"},
      {L"S", L"#k", L"v"},   {L"S", L"[k", L"v"},      {L"S", L"[k]", L"v"}, {L"S]", L"k", L"v"},
  };
  for (const auto& [section, key, value] : kTable) {
    for (const std::string& file : {std::string(), std::string("[S]\nk=1\n")}) {
      try {
        const std::string written = Write(file, section, key, value);
        ADD_FAILURE() << text::ToUtf8(section + L"|" + key + L"|" + value) << " gave " << written;
      } catch (const Error& error) {
        EXPECT_EQ(error.Number(), kInvalidArgument);
      }
    }
  }
  EXPECT_EQ(Read(Write("", L"S", L"k", half), L"S", L"k"), half) << "UTF-16 can";
}

}  // namespace
}  // namespace postrove
