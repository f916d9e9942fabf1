#include "shared/ini_text.h"

#include "shared/error.h"
#include "shared/text.h"

namespace postrove::ini {
namespace {

// A stretch of the file's bytes.
struct Span {
  std::size_t begin;
  std::size_t end;
  bool Empty() const { return begin == end; }
};

struct Line {
  Span content;      // without the line break
  std::size_t next;  // behind the line break
};

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }
bool IsQuote(wchar_t c) { return c == L'"' || c == L'\''; }

std::wstring_view TrimBlanks(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The file as bytes with the knowledge of how they spell characters. Everything is found by byte
// offset, so that a change touches nothing but its own bytes. Line breaks, blanks, "=" and the
// first character of a line can be told from single units: no code page of Windows uses their
// values within a longer character. Everything else is decoded first.
class Document {
 public:
  Document(std::string_view bytes, const CodePage& codePage) : bytes_(bytes), codePage_(codePage) {
    const DetectedEncoding detected = DetectEncoding(bytes);
    encoding_ = detected.encoding;
    begin_ = detected.markSize;
    unit_ = postrove::UnitSize(encoding_);
    // Half a UTF-16 unit at the end belongs to no line.
    end_ = bytes.size() - (bytes.size() - begin_) % unit_;
  }

  Encoding GetEncoding() const { return encoding_; }
  std::size_t Begin() const { return begin_; }
  std::size_t End() const { return end_; }
  std::size_t UnitSize() const { return unit_; }

  unsigned UnitAt(std::size_t at) const { return postrove::UnitAt(bytes_, at, encoding_); }

  // The offset of a unit within the span, or the span's end.
  std::size_t Find(Span span, unsigned unit) const {
    std::size_t at = span.begin;
    while (at < span.end && UnitAt(at) != unit) at += unit_;
    return at;
  }

  Span Trim(Span span) const {
    while (!span.Empty() && IsBlankAt(span.begin)) span.begin += unit_;
    while (!span.Empty() && IsBlankAt(span.end - unit_)) span.end -= unit_;
    return span;
  }

  Line LineAt(std::size_t begin) const {
    std::size_t at = begin;
    while (at < end_ && !IsBreakAt(at)) at += unit_;
    return {{begin, at}, BehindBreak(at)};
  }

  // The first line break of the file, or nothing.
  std::string_view FirstBreak() const {
    const Span content = LineAt(begin_).content;
    return bytes_.substr(content.end, BehindBreak(content.end) - content.end);
  }

  std::wstring Decode(Span span) const {
    return DecodeText(bytes_.substr(span.begin, span.end - span.begin), encoding_, codePage_);
  }

  std::string Encode(std::wstring_view text) const {
    return EncodeText(text, encoding_, codePage_);
  }

  // Whether the changed file says what was meant: the code page may lack a character of the added
  // text, or the file's bytes happen to be those of another encoding from now on.
  bool CanHold(std::wstring_view added, const std::string& changed) const {
    return encoding_ != Encoding::CodePage ||
           (codePage_.decode(Encode(added)) == added &&
            DecodeFile(changed, codePage_) == codePage_.decode(changed));
  }

  // The file with a span replaced.
  std::string Splice(Span span, std::string_view with) const {
    std::string result(bytes_.substr(0, span.begin));
    return result.append(with).append(bytes_.substr(span.end, end_ - span.end));
  }

 private:
  bool IsBlankAt(std::size_t at) const { return UnitAt(at) == ' ' || UnitAt(at) == '\t'; }
  bool IsBreakAt(std::size_t at) const { return UnitAt(at) == '\r' || UnitAt(at) == '\n'; }

  std::size_t BehindBreak(std::size_t at) const {
    if (at < end_ && UnitAt(at) == '\r') {
      at += unit_;
      if (at == end_ || UnitAt(at) != '\n') return at;
    }
    return at < end_ ? at + unit_ : at;
  }

  std::string_view bytes_;
  const CodePage& codePage_;
  Encoding encoding_ = Encoding::CodePage;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t unit_ = 1;
};

// Where a section and a key stand.
struct Place {
  bool sectionFound = false;
  bool keyFound = false;
  std::size_t sectionEnd = 0;  // behind the section's last line that is no comment
  Span value{0, 0};            // of the key, without the blanks around it
};

// The name in a section's heading; nothing for a line that is none.
std::optional<std::wstring> SectionName(const Document& document, Span line) {
  if (line.Empty() || document.UnitAt(line.begin) != '[') return std::nullopt;
  const std::wstring heading = document.Decode({line.begin + document.UnitSize(), line.end});
  const std::size_t end = heading.find(L']');
  if (end == std::wstring::npos) return std::nullopt;
  return std::wstring(TrimBlanks(std::wstring_view(heading).substr(0, end)));
}

bool IsComment(const Document& document, Span line) {
  if (line.Empty()) return true;
  const unsigned first = document.UnitAt(line.begin);
  return first == ';' || first == '#';
}

Place Locate(const Document& document, std::wstring_view section, std::wstring_view key) {
  Place place;
  for (std::size_t at = document.Begin(); at < document.End();) {
    const Line line = document.LineAt(at);
    const Span content = document.Trim(line.content);
    at = line.next;
    if (IsComment(document, content)) continue;
    if (const std::optional<std::wstring> name = SectionName(document, content)) {
      if (place.sectionFound) break;
      place.sectionFound = text::EqualsIgnoreCase(*name, section);
      place.sectionEnd = line.next;
      continue;
    }
    if (!place.sectionFound) continue;
    place.sectionEnd = line.next;
    const std::size_t equals = document.Find(content, '=');
    const bool hasKey = equals != content.begin && equals != content.end;
    if (!hasKey || document.UnitAt(content.begin) == '[') continue;
    if (text::EqualsIgnoreCase(document.Decode(document.Trim({content.begin, equals})), key)) {
      place.keyFound = true;
      place.value = document.Trim({equals + document.UnitSize(), line.content.end});
      break;
    }
  }
  return place;
}

std::optional<std::wstring> ReadValue(const Document& document, const Place& place) {
  if (!place.keyFound) return std::nullopt;
  std::wstring value = document.Decode(place.value);
  if (value.size() >= 2 && IsQuote(value.front()) && value.back() == value.front()) {
    value = value.substr(1, value.size() - 2);
  }
  return value;
}

std::wstring Quoted(std::wstring_view value) {
  std::wstring result(value);
  if (value.empty()) return result;
  const auto needsQuotes = [](wchar_t c) { return IsBlank(c) || IsQuote(c); };
  if (needsQuotes(value.front()) || needsQuotes(value.back())) {
    result.insert(result.begin(), L'"');
    result.push_back(L'"');
  }
  return result;
}

// Whether the document ends with a line break or holds nothing.
bool EndsWithBreak(const Document& document) {
  if (document.Begin() == document.End()) return true;
  const unsigned last = document.UnitAt(document.End() - document.UnitSize());
  return last == '\r' || last == '\n';
}

std::string WithNewLine(const Document& document, const Place& place, std::wstring_view section,
                        const std::wstring& line) {
  const std::string_view found = document.FirstBreak();
  const std::string lineBreak = found.empty() ? document.Encode(L"\r\n") : std::string(found);
  const std::size_t at = place.sectionFound ? place.sectionEnd : document.End();
  std::string added;
  if (at == document.End() && !EndsWithBreak(document)) added += lineBreak;
  if (!place.sectionFound) {
    if (document.Begin() != document.End()) added += lineBreak;
    added += document.Encode(L"[" + std::wstring(section) + L"]") + lineBreak;
  }
  added += document.Encode(line) + lineBreak;
  return document.Splice({at, at}, added);
}

void RequireStorable(std::wstring_view text) {
  if (text.find_first_of(std::wstring_view(L"\r\n\0", 3)) != std::wstring_view::npos) {
    throw Error(kInvalidArgument, L"WriteSetting",
                L"A setting cannot hold a line break or a null character.");
  }
}

}  // namespace

std::optional<std::wstring> Read(const std::string& bytes, std::wstring_view section,
                                 std::wstring_view key, const CodePage& codePage) {
  const Document document(bytes, codePage);
  return ReadValue(document, Locate(document, TrimBlanks(section), TrimBlanks(key)));
}

std::string Write(const std::string& bytes, std::wstring_view section, std::wstring_view key,
                  std::wstring_view value, const CodePage& codePage, Recoding recoding) {
  for (const std::wstring_view text : {section, key, value}) RequireStorable(text);
  section = TrimBlanks(section);
  key = TrimBlanks(key);
  if (section.empty() || key.empty()) {
    throw Error(kInvalidArgument, L"WriteSetting", L"A setting needs a section and a key.");
  }

  const Document document(bytes, codePage);
  const Place place = Locate(document, section, key);
  if (ReadValue(document, place) == value) return bytes;

  const std::wstring quoted = Quoted(value);
  const std::wstring line = std::wstring(key) + L"=" + quoted;
  std::string result = place.keyFound ? document.Splice(place.value, document.Encode(quoted))
                                      : WithNewLine(document, place, section, line);
  if (!document.CanHold(std::wstring(section) + line, result)) {
    if (recoding == Recoding::Refused) {
      throw Error(kInvalidArgument, L"WriteSetting",
                  L"\"" + std::wstring(value) +
                      L"\" has a character that cannot be stored in another program's settings "
                      L"file. Choose one without that character.");
    }
    const std::wstring content = document.Decode({document.Begin(), document.End()});
    return Write(std::string(kUtf16Mark) + EncodeText(content, Encoding::Utf16, codePage), section,
                 key, value, codePage);
  }
  if (Read(result, section, key, codePage) != value) {
    throw Error(kInvalidArgument, L"WriteSetting",
                L"The settings file cannot hold \"" + line + L"\" in section \"" +
                    std::wstring(section) + L"\".");
  }
  return result;
}

}  // namespace postrove::ini
