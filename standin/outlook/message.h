#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace standin {

enum class RecipientKind : long { kTo = 1, kCc = 2, kBcc = 3 };  // numbers of the object model

struct RecipientData {
  RecipientKind kind = RecipientKind::kTo;
  std::wstring name;
  std::wstring address;
};

struct AttachmentData {
  std::wstring name;  // file name
  std::wstring mimeType;
  std::wstring contentId;
  std::string bytes;
};

// One message as data. An HTML message has both texts.
struct MessageData {
  std::wstring subject;
  std::wstring messageClass = L"IPM.Note";
  std::wstring senderName;
  std::wstring senderAddress;
  std::optional<FILETIME> date;  // UTC
  std::wstring headers;
  std::wstring body;
  std::wstring html;  // empty: a plain-text message
  std::vector<RecipientData> recipients;
  std::vector<AttachmentData> attachments;

  bool IsHtml() const { return !html.empty(); }
  // The names of one kind, joined by "; ".
  std::wstring Names(RecipientKind kind) const;
};

// Reads a message folder (standin/mail/FORMAT.md). Throws HostError when message.ini or an
// attachment is missing.
MessageData LoadMessage(const std::wstring& folder);

// A whole file. Throws HostError with the system's code.
std::string ReadWholeFile(const std::wstring& path);

// Plain text as the HTML that the host generates for it, and HTML as plain text: tags dropped,
// block ends and line breaks as CR LF, the usual entities decoded.
std::wstring HtmlFromText(const std::wstring& text);
std::wstring TextFromHtml(const std::wstring& html);

}  // namespace standin
