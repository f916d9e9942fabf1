#include "outlook/msg_file.h"

#include <windows.h>

#include <ole2.h>
#include <wrl/client.h>

#include <cwchar>

#include "outlook/ids.h"
#include "outlook/variant.h"
#include "shared/text.h"

namespace standin {
namespace {

constexpr DWORD kCreate = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr GUID kMessageStorage = OfficeId(0x00020D0B);

constexpr DWORD kLong = 0x0003;
constexpr DWORD kBoolean = 0x000B;
constexpr DWORD kString8 = 0x001E;
constexpr DWORD kUnicode = 0x001F;
constexpr DWORD kTime = 0x0040;
constexpr DWORD kBinary = 0x0102;

constexpr long kReadFlag = 0x01;
constexpr long kUnsentFlag = 0x08;
constexpr long kHasAttachmentFlag = 0x10;
constexpr long kUnicodeStore = 0x00040000;

void Check(HRESULT hr, const wchar_t* what) {
  if (FAILED(hr)) throw HostError{hr, std::wstring(L"Cannot write the message file: ") + what};
}

void WriteStream(IStorage& storage, const wchar_t* name, const void* bytes, std::size_t size) {
  ComPtr<IStream> stream;
  Check(storage.CreateStream(name, kCreate, 0, 0, &stream), L"stream");
  ULONG written = 0;
  Check(stream->Write(bytes, static_cast<ULONG>(size), &written), L"stream data");
  if (written != size) Check(STG_E_MEDIUMFULL, L"stream data");
}

ComPtr<IStorage> MakeStorage(IStorage& parent, const wchar_t* name) {
  ComPtr<IStorage> result;
  Check(parent.CreateStorage(name, kCreate, 0, 0, &result), L"storage");
  return result;
}

// The properties of one storage: values of variable length go to streams of their own at once, the
// entries to the property stream at the end.
class Properties {
 public:
  Properties(IStorage& storage, bool unicode) : storage_(storage), unicode_(unicode) {}

  void Long(DWORD id, long value) { Fixed(id, kLong, static_cast<DWORD>(value), 0); }
  void Bool(DWORD id, bool value) { Fixed(id, kBoolean, value ? 1 : 0, 0); }
  void Time(DWORD id, const FILETIME& time) {
    Fixed(id, kTime, time.dwLowDateTime, time.dwHighDateTime);
  }
  // An empty string is left out: Outlook refuses files that hold one.
  void Text(DWORD id, const std::wstring& text) {
    if (text.empty()) return;
    if (unicode_) {
      Variable(id, kUnicode, text.data(), text.size() * sizeof(wchar_t), sizeof(wchar_t));
      return;
    }
    const int length = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), length,
                                                                   nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(),
                        static_cast<int>(bytes.size()), nullptr, nullptr);
    Variable(id, kString8, bytes.data(), bytes.size(), 1);
  }
  void Binary(DWORD id, const std::string& bytes) {
    Variable(id, kBinary, bytes.data(), bytes.size(), 0);
  }

  void Finish(const std::string& header) {
    const std::string all = header + entries_;
    WriteStream(storage_, L"__properties_version1.0", all.data(), all.size());
  }

 private:
  void Number(DWORD value) {
    for (int shift = 0; shift < 32; shift += 8) {
      entries_ += static_cast<char>(static_cast<unsigned char>(value >> shift));
    }
  }
  void Fixed(DWORD id, DWORD type, DWORD low, DWORD high) {
    constexpr DWORD kReadableWritable = 6;
    Number(id << 16 | type);
    Number(kReadableWritable);
    Number(low);
    Number(high);
  }
  void Variable(DWORD id, DWORD type, const void* bytes, std::size_t size, std::size_t terminator) {
    wchar_t name[32];
    swprintf(name, 32, L"__substg1.0_%04X%04X", static_cast<unsigned>(id),
             static_cast<unsigned>(type));
    WriteStream(storage_, name, bytes, size);
    Fixed(id, type, static_cast<DWORD>(size + terminator), 0);
  }

  IStorage& storage_;
  const bool unicode_;
  std::string entries_;
};

std::string Header(std::size_t size) { return std::string(size, '\0'); }

std::string RootHeader(std::size_t recipients, std::size_t attachments) {
  std::string result = Header(8);
  for (const std::size_t number : {recipients, attachments, recipients, attachments}) {
    for (int shift = 0; shift < 32; shift += 8) {
      result += static_cast<char>(static_cast<unsigned char>(number >> shift));
    }
  }
  return result + Header(8);
}

std::wstring Numbered(const wchar_t* prefix, std::size_t number) {
  wchar_t name[40];
  swprintf(name, 40, L"%ls%08X", prefix, static_cast<unsigned>(number));
  return name;
}

std::wstring ExtensionOf(const std::wstring& name) {
  const std::size_t dot = name.rfind(L'.');
  return dot == std::wstring::npos ? std::wstring() : name.substr(dot);
}

// "Site report.pdf" as "SITERE~1.PDF".
std::wstring ShortName(const std::wstring& name) {
  const auto plain = [](const std::wstring& text, std::size_t most) {
    std::wstring result;
    for (const wchar_t c : text) {
      const bool letter = (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
      if (result.size() < most && (letter || (c >= L'0' && c <= L'9'))) {
        result += static_cast<wchar_t>(c >= L'a' ? c - L'a' + L'A' : c);
      }
    }
    return result;
  };
  const std::wstring extension = ExtensionOf(name);
  const std::wstring stem = name.substr(0, name.size() - extension.size());
  if (name.empty()) return {};
  const bool fits = plain(stem, 8).size() == stem.size() &&
                    plain(extension, 3).size() + 1 == extension.size() && stem.size() <= 8;
  const std::wstring ending = extension.empty() ? extension : L"." + plain(extension, 3);
  return (fits ? plain(stem, 8) : plain(stem, 6) + L"~1") + ending;
}

// "RE: " of "RE: Drawings"; empty when the subject has no such prefix.
std::wstring SubjectPrefix(const std::wstring& subject) {
  const std::size_t colon = subject.find(L": ");
  if (colon == std::wstring::npos || colon == 0 || colon > 3) return {};
  for (std::size_t i = 0; i < colon; ++i) {
    if (subject[i] == L' ' || (subject[i] >= L'0' && subject[i] <= L'9')) return {};
  }
  return subject.substr(0, colon + 2);
}

void WriteNames(IStorage& root) {
  const ComPtr<IStorage> names = MakeStorage(root, L"__nameid_version1.0");
  for (const wchar_t* stream :
       {L"__substg1.0_00020102", L"__substg1.0_00030102", L"__substg1.0_00040102"}) {
    WriteStream(*names.Get(), stream, "", 0);
  }
}

void WriteRecipient(IStorage& root, std::size_t number, const RecipientData& recipient,
                    bool unicode) {
  const ComPtr<IStorage> storage =
      MakeStorage(root, Numbered(L"__recip_version1.0_#", number).c_str());
  Properties properties(*storage.Get(), unicode);
  const std::wstring& name = recipient.name.empty() ? recipient.address : recipient.name;
  properties.Long(0x3000, static_cast<long>(number));          // PR_ROWID
  properties.Long(0x0C15, static_cast<long>(recipient.kind));  // PR_RECIPIENT_TYPE
  properties.Long(0x0FFE, 6);                                  // PR_OBJECT_TYPE
  properties.Long(0x3900, 0);                                  // PR_DISPLAY_TYPE
  properties.Text(0x3001, name);                               // PR_DISPLAY_NAME
  if (!recipient.address.empty()) {
    properties.Text(0x3002, L"SMTP");            // PR_ADDRTYPE
    properties.Text(0x3003, recipient.address);  // PR_EMAIL_ADDRESS
    properties.Text(0x39FE, recipient.address);  // PR_SMTP_ADDRESS
  }
  properties.Finish(Header(8));
}

void WriteAttachment(IStorage& root, std::size_t number, const AttachmentData& attachment,
                     bool unicode) {
  const ComPtr<IStorage> storage =
      MakeStorage(root, Numbered(L"__attach_version1.0_#", number).c_str());
  Properties properties(*storage.Get(), unicode);
  properties.Long(0x0E21, static_cast<long>(number));                   // PR_ATTACH_NUM
  properties.Long(0x3705, 1);                                           // PR_ATTACH_METHOD
  properties.Long(0x0E20, static_cast<long>(attachment.bytes.size()));  // PR_ATTACH_SIZE
  properties.Long(0x370B, -1);                                          // PR_RENDERING_POSITION
  properties.Long(0x0FFE, 7);                                           // PR_OBJECT_TYPE
  properties.Text(0x3707, attachment.name);                             // PR_ATTACH_LONG_FILENAME
  properties.Text(0x3704, ShortName(attachment.name));                  // PR_ATTACH_FILENAME
  properties.Text(0x3703, ExtensionOf(attachment.name));                // PR_ATTACH_EXTENSION
  properties.Text(0x3001, attachment.name);                             // PR_DISPLAY_NAME
  properties.Text(0x370E, attachment.mimeType);                         // PR_ATTACH_MIME_TAG
  properties.Text(0x3712, attachment.contentId);                        // PR_ATTACH_CONTENT_ID
  properties.Binary(0x3701, attachment.bytes);                          // PR_ATTACH_DATA_BIN
  properties.Finish(Header(8));
}

void WriteMessage(IStorage& root, const MessageData& message, const MsgForm& form) {
  Check(root.SetClass(kMessageStorage), L"class");
  WriteNames(root);

  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const std::wstring prefix = SubjectPrefix(message.subject);
  long flags = message.attachments.empty() ? 0 : kHasAttachmentFlag;
  if (!form.unRead) flags |= kReadFlag;
  if (form.unsent) flags |= kUnsentFlag;

  Properties properties(root, form.unicode);
  properties.Text(0x001A, message.messageClass);
  properties.Text(0x0037, message.subject);
  properties.Text(0x003D, prefix);                                 // PR_SUBJECT_PREFIX
  properties.Text(0x0E1D, message.subject.substr(prefix.size()));  // PR_NORMALIZED_SUBJECT
  properties.Text(0x1000, message.body);
  if (message.IsHtml()) {
    properties.Binary(0x1013, postrove::text::ToUtf8(message.html));  // PR_HTML
    properties.Long(0x3FDE, CP_UTF8);                                 // PR_INTERNET_CPID
  }
  // Sender and represented sender are the same person here.
  properties.Text(0x0C1A, message.senderName);
  properties.Text(0x0042, message.senderName);
  if (!message.senderAddress.empty()) {
    for (const DWORD id : {0x0C1F, 0x0065}) properties.Text(id, message.senderAddress);
    for (const DWORD id : {0x0C1E, 0x0064}) properties.Text(id, L"SMTP");
  }
  properties.Text(0x0E04, message.Names(RecipientKind::kTo));
  properties.Text(0x0E03, message.Names(RecipientKind::kCc));
  properties.Text(0x0E02, message.Names(RecipientKind::kBcc));
  if (message.date && !form.unsent) {
    properties.Time(0x0039, *message.date);                     // PR_CLIENT_SUBMIT_TIME
    if (form.received) properties.Time(0x0E06, *message.date);  // PR_MESSAGE_DELIVERY_TIME
  }
  properties.Time(0x3007, message.date.value_or(now));  // PR_CREATION_TIME
  properties.Time(0x3008, now);                         // PR_LAST_MODIFICATION_TIME
  properties.Long(0x0E07, flags);                       // PR_MESSAGE_FLAGS
  properties.Bool(0x0E1B, !message.attachments.empty());
  properties.Long(0x0FFE, 5);  // PR_OBJECT_TYPE
  properties.Text(0x007D, message.headers);
  if (form.unicode) properties.Long(0x340D, kUnicodeStore);  // PR_STORE_SUPPORT_MASK

  for (std::size_t i = 0; i < message.recipients.size(); ++i) {
    WriteRecipient(root, i, message.recipients[i], form.unicode);
  }
  for (std::size_t i = 0; i < message.attachments.size(); ++i) {
    WriteAttachment(root, i, message.attachments[i], form.unicode);
  }
  properties.Finish(RootHeader(message.recipients.size(), message.attachments.size()));
}

}  // namespace

void WriteMsgFile(const std::wstring& path, const MessageData& message, const MsgForm& form) {
  // Windows refuses to replace such a file, other systems below do not.
  const DWORD attributes = GetFileAttributesW(path.c_str());
  constexpr DWORD kProtected = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kProtected)) {
    Check(STG_E_ACCESSDENIED, L"place");
  }
  const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
  // Never longer than "x.msg", so that a path that just fits has room for it.
  ComPtr<IStorage> root;
  std::wstring temporary;
  HRESULT hr = STG_E_FILEALREADYEXISTS;
  for (unsigned number = GetTickCount() & 0xFFF, tries = 0;
       hr == STG_E_FILEALREADYEXISTS && tries < 0x1000; ++tries, number = (number + 1) & 0xFFF) {
    wchar_t name[8];
    swprintf(name, 8, L"~m%03x", number);
    temporary = folder + name;
    hr = StgCreateDocfile(temporary.c_str(),
                          STGM_FAILIFTHERE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &root);
  }
  Check(hr, L"file");
  try {
    WriteMessage(*root.Get(), message, form);
    Check(root->Commit(STGC_DEFAULT), L"commit");
    root.Reset();
    if (!MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) {
      const DWORD error = GetLastError();
      Check(error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION
                ? STG_E_ACCESSDENIED
                : HRESULT_FROM_WIN32(error),
            L"place");
    }
  } catch (...) {
    root.Reset();
    DeleteFileW(temporary.c_str());
    throw;
  }
}

}  // namespace standin
