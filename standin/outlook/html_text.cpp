#include <algorithm>
#include <array>
#include <cwchar>

#include "outlook/message.h"
#include "shared/text.h"

namespace standin {
namespace {

using postrove::text::EqualsIgnoreCase;
using postrove::text::FindIgnoreCase;

// The tag's name, "/p" for "</P>".
std::wstring TagName(const std::wstring& tag) {
  std::size_t end = 0;
  while (end < tag.size() && tag[end] != L' ' && tag[end] != L'\t' && tag[end] != L'\r' &&
         tag[end] != L'\n' && (end == 0 || tag[end] != L'/')) {
    ++end;
  }
  return tag.substr(0, end);
}

bool BreaksLine(const std::wstring& name) {
  static constexpr std::array kNames = {L"br",  L"/p",  L"/div", L"/tr", L"/h1",
                                        L"/h2", L"/h3", L"/li",  L"hr",  L"/table"};
  return std::any_of(kNames.begin(), kNames.end(),
                     [&](const wchar_t* known) { return EqualsIgnoreCase(name, known); });
}

// The character of an entity without "&" and ";", or nothing when it is not known.
std::wstring Entity(const std::wstring& name) {
  struct Known {
    const wchar_t* name;
    wchar_t c;
  };
  static constexpr std::array kKnown = {Known{L"amp", L'&'},   Known{L"lt", L'<'},
                                        Known{L"gt", L'>'},    Known{L"quot", L'"'},
                                        Known{L"apos", L'\''}, Known{L"nbsp", L' '}};
  if (name.size() > 1 && name[0] == L'#') {
    const bool hex = name[1] == L'x' || name[1] == L'X';
    const unsigned long code = wcstoul(name.c_str() + (hex ? 2 : 1), nullptr, hex ? 16 : 10);
    if (code == 0 || code > 0x10FFFF) return {};
    if (code < 0x10000) return std::wstring(1, static_cast<wchar_t>(code));
    const unsigned long rest = code - 0x10000;
    return {static_cast<wchar_t>(0xD800 + (rest >> 10)),
            static_cast<wchar_t>(0xDC00 + (rest & 0x3FF))};
  }
  for (const Known& known : kKnown) {
    if (name == known.name) return std::wstring(1, known.c);
  }
  return {};
}

}  // namespace

std::wstring HtmlFromText(const std::wstring& text) {
  std::wstring lines = postrove::text::EscapeHtml(text);
  lines = postrove::text::Replace(lines, L"\r\n", L"\n");
  lines = postrove::text::Replace(lines, L"\n", L"<BR>\r\n");
  return L"<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 3.2//EN\">\r\n<HTML>\r\n<HEAD>\r\n<TITLE>"
         L"</TITLE>\r\n</HEAD>\r\n<BODY>\r\n<P><FONT SIZE=2>" +
         lines + L"</FONT></P>\r\n</BODY>\r\n</HTML>\r\n";
}

std::wstring TextFromHtml(const std::wstring& html) {
  std::wstring result;
  for (std::size_t at = 0; at < html.size();) {
    const wchar_t c = html[at];
    if (c == L'<') {
      std::size_t end = html.find(L'>', at);
      if (end == std::wstring::npos) break;
      const std::wstring name = TagName(html.substr(at + 1, end - at - 1));
      for (const wchar_t* skipped : {L"head", L"style", L"script"}) {
        if (!EqualsIgnoreCase(name, skipped)) continue;
        const std::size_t close = FindIgnoreCase(html, std::wstring(L"</") + skipped, end);
        if (close != std::wstring::npos) end = html.find(L'>', close);
      }
      if (BreaksLine(name)) result += L"\r\n";
      if (end == std::wstring::npos) break;
      at = end + 1;
    } else if (c == L'&') {
      const std::size_t end = html.find(L';', at);
      const std::wstring decoded = end == std::wstring::npos || end - at > 10
                                       ? std::wstring()
                                       : Entity(html.substr(at + 1, end - at - 1));
      result += decoded.empty() ? std::wstring(1, c) : decoded;
      at = decoded.empty() ? at + 1 : end + 1;
    } else {
      // Line ends of the source are blanks; runs of blanks are one.
      const bool blank = c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
      if (!blank) {
        result += c;
      } else if (!result.empty() && result.back() != L' ' && result.back() != L'\n') {
        result += L' ';
      }
      ++at;
    }
  }
  return result;
}

}  // namespace standin
