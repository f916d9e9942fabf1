#include "shared/file_name.h"

#include <algorithm>
#include <vector>

#include "shared/text.h"

namespace postrove {
namespace {

bool IsForbidden(char32_t c) {
  return c < 0x80 &&
         std::wstring_view(L"\\/:*?\"<>|").find(static_cast<wchar_t>(c)) != std::wstring_view::npos;
}

// What a reader of the name cannot see or Windows cannot store: control characters, line ends,
// direction and byte order marks and halves of surrogate pairs.
bool IsInvisible(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x200E || c == 0x200F || c == 0x061C ||
         (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF ||
         (c >= 0xD800 && c <= 0xDFFF);
}

std::wstring_view TrimDotsAndBlanks(std::wstring_view name) {
  constexpr wchar_t kTrimmed[] = L". ";
  const std::size_t first = name.find_first_not_of(kTrimmed);
  if (first == std::wstring_view::npos) return {};
  return name.substr(first, name.find_last_not_of(kTrimmed) - first + 1);
}

// At most `maxUnits` UTF-16 units of a name that is trimmed at its start, trimmed at its end.
std::wstring Cut(std::wstring_view name, std::size_t maxUnits) {
  std::size_t end = 0;
  std::size_t units = 0;
  while (end < name.size()) {
    std::size_t next = end;
    units += text::NextCodePoint(name, &next) > 0xFFFF ? 2 : 1;
    if (units > maxUnits) break;
    end = next;
  }
  return std::wstring(TrimDotsAndBlanks(name.substr(0, end)));
}

// Windows takes a device's name for the device whatever extension follows, and ignores blanks
// between the two. The superscript digits one to three count as digits.
bool IsDeviceName(std::wstring_view name) {
  const std::wstring base = text::Trim(name.substr(0, name.find(L'.')));
  for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
    if (text::EqualsIgnoreCase(base, device)) return true;
  }
  return base.size() == 4 &&
         (text::StartsWithIgnoreCase(base, L"COM") || text::StartsWithIgnoreCase(base, L"LPT")) &&
         std::wstring_view(L"0123456789\u00B9\u00B2\u00B3").find(base[3]) !=
             std::wstring_view::npos;
}

// What stands between the backslashes of a path.
std::vector<std::wstring_view> Parts(std::wstring_view path) {
  std::vector<std::wstring_view> parts;
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t end = std::min(path.find(L'\\', at), path.size());
    if (end != at) parts.push_back(path.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

}  // namespace

std::wstring CleanFileName(std::wstring_view text, std::size_t maxUnits) {
  std::wstring name;
  name.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    char32_t c = text::NextCodePoint(text, &i);
    if (IsForbidden(c)) c = L'-';
    if (IsInvisible(c)) c = L' ';
    if (c == L' ' && !name.empty() && name.back() == L' ') continue;
    text::AppendCodePoint(&name, c);
  }
  name = Cut(TrimDotsAndBlanks(name), maxUnits);
  if (text::IsBlank(text::Replace(name, L".", {}))) return {};
  // After the cut, which can shorten a harmless name to a device's.
  if (IsDeviceName(name)) name = Cut(L"_" + name, maxUnits);
  return name;
}

std::wstring_view WithoutMessageEnding(std::wstring_view text) {
  constexpr std::wstring_view kEnding = kMessageEnding;
  const std::size_t end = text.find_last_not_of(L". ") + 1;
  if (end < kEnding.size()) return text;
  const std::size_t stem = end - kEnding.size();
  return text::EqualsIgnoreCase(text.substr(stem, kEnding.size()), kEnding) ? text.substr(0, stem)
                                                                            : text;
}

std::size_t RoomForName(std::wstring_view folder, std::wstring_view ending) {
  const std::size_t taken = text::ToUtf16(folder).size() + text::ToUtf16(ending).size();
  return taken < kMaxPath ? kMaxPath - taken : 0;
}

std::wstring CleanFolder(std::wstring_view path) {
  const std::wstring plain = text::Replace(text::Trim(path), L"/", L"\\");
  const bool server = plain.starts_with(L"\\\\");
  // Server and share, or the drive: nothing leads out of them, and they are taken as they stand.
  const std::size_t fixed = server ? 2 : 1;
  std::vector<std::wstring_view> parts;
  for (const std::wstring_view part : Parts(plain)) {
    if (parts.size() < fixed) {
      parts.push_back(part);
    } else if (part == L"..") {
      if (parts.size() > fixed) parts.pop_back();
    } else if (const std::size_t end = part.find_last_not_of(L". ") + 1; end != 0) {
      parts.push_back(part.substr(0, end));
    }
  }
  std::wstring folder = server ? L"\\\\" : L"";
  for (const std::wstring_view part : parts) folder.append(part).push_back(L'\\');
  return folder;
}

std::wstring FolderFault(std::wstring_view folder) {
  if (!text::IsRootedPath(folder)) {
    return L"The Folder must begin with a drive or a server, such as C:\\Projects or "
           L"\\\\Server\\Projects.";
  }
  for (const std::wstring_view part : Parts(folder)) {
    if (!IsDeviceName(part)) continue;
    return L"The Folder cannot contain " + text::Quoted(part) +
           L", which is a name that Windows keeps for a device.";
  }
  return {};
}

}  // namespace postrove
