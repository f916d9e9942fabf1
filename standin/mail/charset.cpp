#include "mail/charset.h"

#include <glib.h>
#include <gmime/gmime.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

namespace postrove::mail {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool IsUtf8(std::string_view bytes) {
  return g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) != FALSE;
}

// Mail says Latin-1 or plain ASCII and means Windows-1252, says gb2312 and means its superset.
std::string MeantCharset(std::string_view bytes, std::string_view charset) {
  std::string name = LowerAscii(charset);
  if (name == "gb2312" || name == "gbk") return "gb18030";
  if (name == "ks_c_5601-1987" || name == "euc-kr") return "cp949";
  if (name == "iso-8859-1" || name == "latin1") return "windows-1252";
  const std::array kNothingSaid = {"", "us-ascii", "ascii", "x-unknown", "unknown-8bit"};
  if (std::find(kNothingSaid.begin(), kNothingSaid.end(), name) != kNothingSaid.end()) {
    return IsUtf8(bytes) ? "utf-8" : "windows-1252";
  }
  return name;
}

// Position and length of the name after "charset=" within the first meta element that has one.
std::pair<size_t, size_t> FindHtmlCharset(std::string_view html) {
  const std::string lower = LowerAscii(html.substr(0, 4096));
  for (size_t meta = lower.find("<meta"); meta != std::string::npos;
       meta = lower.find("<meta", meta + 1)) {
    const size_t end = lower.find('>', meta);
    size_t at = lower.find("charset", meta);
    if (end == std::string::npos || at == std::string::npos || at > end) continue;
    at = lower.find_first_not_of(" \t\r\n=\"'", at + 7);
    if (at == std::string::npos || at >= end) continue;
    const size_t stop = lower.find_first_of(" \t\r\n;\"'/>", at);
    return {at, std::min(stop, end) - at};
  }
  return {0, 0};
}

// Everything through iconv; nothing when it does not know the character set.
std::optional<std::string> Convert(std::string_view bytes, const std::string& charset) {
  iconv_t converter = g_mime_iconv_open("UTF-8", charset.c_str());
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string result;
  char buffer[4096];
  char* in = const_cast<char*>(bytes.data());
  size_t left = bytes.size();
  bool flushing = false;
  while (!flushing) {
    flushing = left == 0;
    char* out = buffer;
    size_t room = sizeof buffer;
    const size_t status =
        iconv(converter, flushing ? nullptr : &in, flushing ? nullptr : &left, &out, &room);
    result.append(buffer, sizeof buffer - room);
    if (status == static_cast<size_t>(-1) && errno != E2BIG && left > 0) {
      result += kReplacement;
      ++in;
      --left;
    }
  }
  g_mime_iconv_close(converter);
  return result;
}

}  // namespace

std::string LowerAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = g_ascii_tolower(c);
  return result;
}

std::string ToUtf8(std::string_view bytes, std::string_view charset) {
  std::optional<std::string> text = Convert(bytes, MeantCharset(bytes, charset));
  if (!text) text = Convert(bytes, MeantCharset(bytes, ""));
  return text.value_or(std::string());
}

std::string HtmlCharset(std::string_view html) {
  const auto [at, length] = FindHtmlCharset(html);
  return LowerAscii(html.substr(at, length));
}

std::string NameUtf8(std::string html) {
  const auto [at, length] = FindHtmlCharset(html);
  return length == 0 ? html : html.replace(at, length, "utf-8");
}

std::string OneLine(std::string_view utf8) {
  std::string result;
  for (size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    if (c == '\r' && i + 1 < utf8.size() && utf8[i + 1] == '\n') continue;
    // U+0080 to U+009F are control characters as well.
    if (c == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0) {
      result += ' ';
      ++i;
    } else {
      result += c < 0x20 || c == 0x7F ? ' ' : utf8[i];
    }
  }
  return result;
}

std::string CrLfLines(std::string_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 32);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\n' || text[i] == '\r') {
      result += "\r\n";
    } else {
      result += text[i] == '\0' ? ' ' : text[i];
    }
  }
  return result;
}

}  // namespace postrove::mail
