#include "outlook/message.h"

#include <cwchar>

#include "outlook/variant.h"
#include "shared/ini_text.h"
#include "shared/text.h"

namespace standin {
namespace {

using postrove::text::FromUtf8;

std::optional<FILETIME> ParseDate(const std::wstring& text) {
  SYSTEMTIME time = {};
  if (swscanf(text.c_str(), L"%4hu-%2hu-%2huT%2hu:%2hu:%2huZ", &time.wYear, &time.wMonth,
              &time.wDay, &time.wHour, &time.wMinute, &time.wSecond) != 6) {
    return std::nullopt;
  }
  FILETIME result;
  if (!SystemTimeToFileTime(&time, &result)) return std::nullopt;
  return result;
}

RecipientKind ParseKind(const std::wstring& text) {
  if (postrove::text::EqualsIgnoreCase(text, L"cc")) return RecipientKind::kCc;
  if (postrove::text::EqualsIgnoreCase(text, L"bcc")) return RecipientKind::kBcc;
  return RecipientKind::kTo;
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring OptionalText(const std::wstring& path) {
  return Exists(path) ? FromUtf8(ReadWholeFile(path)) : std::wstring();
}

}  // namespace

std::wstring MessageData::Names(RecipientKind kind) const {
  std::wstring result;
  for (const RecipientData& recipient : recipients) {
    if (recipient.kind != kind) continue;
    if (!result.empty()) result += L"; ";
    result += recipient.name.empty() ? recipient.address : recipient.name;
  }
  return result;
}

std::string ReadWholeFile(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    throw HostError{HRESULT_FROM_WIN32(GetLastError()), L"Cannot open " + path};
  }
  std::string result;
  char block[65536];
  DWORD count = 0;
  BOOL read = TRUE;
  while ((read = ReadFile(file, block, sizeof block, &count, nullptr)) && count > 0) {
    result.append(block, count);
  }
  const DWORD error = GetLastError();
  CloseHandle(file);
  if (!read) throw HostError{HRESULT_FROM_WIN32(error), L"Cannot read " + path};
  return result;
}

MessageData LoadMessage(const std::wstring& folder) {
  const std::wstring root = postrove::text::NormaliseFolder(folder);
  const std::string ini = ReadWholeFile(root + L"message.ini");
  // The file carries a UTF-8 mark, so the code page is never asked.
  const postrove::CodePage codePage = {
      [](const std::string& bytes) { return FromUtf8(bytes); },
      [](const std::wstring& text) { return postrove::text::ToUtf8(text); }};
  const auto value = [&](const std::wstring& section, const wchar_t* key) {
    return postrove::ini::Read(ini, section, key, codePage).value_or(std::wstring());
  };
  const auto count = [&](const wchar_t* key) {
    return static_cast<int>(postrove::text::LeadingNumber(value(L"Message", key)));
  };

  MessageData message;
  message.subject = value(L"Message", L"Subject");
  message.messageClass = value(L"Message", L"MessageClass");
  message.senderName = value(L"Message", L"SenderName");
  message.senderAddress = value(L"Message", L"SenderAddress");
  message.date = ParseDate(value(L"Message", L"Date"));
  message.headers = OptionalText(root + L"headers.txt");
  message.body = OptionalText(root + L"body.txt");
  message.html = OptionalText(root + L"body.html");
  if (message.body.empty() && message.IsHtml()) message.body = TextFromHtml(message.html);
  for (int i = 0; i < count(L"Recipients"); ++i) {
    const std::wstring section = L"Recipient " + std::to_wstring(i);
    message.recipients.push_back(
        {ParseKind(value(section, L"Kind")), value(section, L"Name"), value(section, L"Address")});
  }
  for (int i = 0; i < count(L"Attachments"); ++i) {
    const std::wstring section = L"Attachment " + std::to_wstring(i);
    std::wstring file = value(section, L"File");
    for (wchar_t& c : file) {
      if (c == L'/') c = L'\\';
    }
    message.attachments.push_back({value(section, L"Name"), value(section, L"MimeType"),
                                   value(section, L"ContentId"), ReadWholeFile(root + file)});
  }
  return message;
}

}  // namespace standin
