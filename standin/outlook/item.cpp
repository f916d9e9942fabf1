#include "outlook/item.h"

#include <cwchar>

#include "outlook/ids.h"
#include "outlook/items.h"
#include "outlook/msg_file.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

constexpr HRESULT kObjectDeleted = static_cast<HRESULT>(0x8004010A);  // MAPI_E_OBJECT_DELETED
constexpr DISPID kItemWrite = 61442;
constexpr DISPID kItemSend = 61445;
constexpr DISPID kApplicationItemSend = 61442;

constexpr std::size_t kPathLimit = 260;  // with the terminating null

// Outlook up to 2003 lets stray bits through in codes of the storage.
HRESULT StorageCode(HRESULT code, int version) {
  const bool storage = (static_cast<unsigned long>(code) & 0x1FFF0000UL) == 0x00030000UL;
  return version <= 11 && storage
             ? static_cast<HRESULT>(static_cast<unsigned long>(code) | 0x27200000UL)
             : code;
}

bool ForbiddenName(const std::wstring& path) {
  for (std::size_t i = 0; i < path.size(); ++i) {
    const wchar_t c = path[i];
    if (c < 0x20 || wcschr(L"*?\"<>|", c)) return true;
    if (c == L':' && i != 1) return true;
  }
  return path.empty() || path.back() == L'\\';
}

void CheckPath(const std::wstring& path) {
  if (path.size() >= kPathLimit || ForbiddenName(path)) {
    throw HostError{STG_E_INVALIDNAME, L"The path or file name is not valid: " + path};
  }
  const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
  const DWORD attributes = GetFileAttributesW(folder.empty() ? L"." : folder.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    throw HostError{STG_E_PATHNOTFOUND, L"The folder does not exist: " + folder};
  }
}

// The last save-as type that a version knows.
long LastSaveType(int version) {
  if (version >= 12) return 10;
  if (version >= 11) return 9;
  return version >= 10 ? 8 : 7;
}

}  // namespace

Item::Item(Session& session, ItemKind kind, MessageData message, bool sent)
    : session_(session),
      kind_(kind),
      message_(std::move(message)),
      sent_(sent),
      saved_(sent),
      events_(std::make_shared<EventHub>(session)) {
  if (sent) Save();
}

long Item::Class() const {
  switch (kind_) {
    case ItemKind::kAppointment:
      return 26;
    case ItemKind::kContact:
      return 40;
    case ItemKind::kNote:
      return 44;
    default:
      return 43;
  }
}

const MessageData& Item::Message() const {
  if (gone_) throw HostError{kObjectDeleted, L"The item has been moved or deleted."};
  return message_;
}

MessageData& Item::Change() {
  Message();
  saved_ = false;
  return message_;
}

void Item::SetBody(const std::wstring& text) {
  MessageData& message = Change();
  message.body = text;
  if (message.IsHtml()) message.html = HtmlFromText(text);
}

std::wstring Item::HtmlBody() const {
  const MessageData& message = Message();
  return message.IsHtml() ? message.html : HtmlFromText(message.body);
}

void Item::SetHtmlBody(const std::wstring& html) {
  MessageData& message = Change();
  message.html = html;
  message.body = TextFromHtml(html);
  richText_ = false;
}

void Item::MakePlain() {
  Change().html.clear();
  richText_ = false;
}

void Item::MakeRichText() {
  MakePlain();
  richText_ = true;
}

void Item::MakeHtml() {
  MessageData& message = Change();
  richText_ = false;
  if (!message.IsHtml()) message.html = HtmlFromText(message.body);
}

void Item::Save() {
  Message();
  if (!saved_ && events_->RaiseCancellable(kItemEventsId, kItemWrite)) {
    throw HostError{E_ABORT, L"Saving the item was cancelled."};
  }
  saved_ = true;
}

void Item::SaveAs(const std::wstring& path, long type) {
  const MessageData& message = Message();
  const int version = session_.Version();
  if (type < 0 || type > LastSaveType(version)) {
    throw HostError{E_INVALIDARG, L"Unknown save-as type."};
  }
  if (type != kSaveMsg && type != kSaveMsgUnicode) {
    throw HostError{E_NOTIMPL, L"This save-as type is not played by the stand-in."};
  }
  try {
    CheckPath(path);
    MsgForm form;
    form.unicode = type == kSaveMsgUnicode;
    form.unsent = !sent_;
    form.received = sent_;
    form.unRead = unRead_;
    WriteMsgFile(path, message, form);
  } catch (const HostError& error) {
    throw HostError{StorageCode(error.code, version), error.text, error.bare};
  }
  session_.NoteSavedFile(path);
}

void Item::Send() {
  const MessageData& message = Message();
  if (sent_ || sending_) throw HostError{E_FAIL, L"The message has already been sent."};
  if (message.recipients.empty()) {
    throw HostError{E_FAIL, L"There must be at least one name in the To, Cc, or Bcc box."};
  }
  sending_ = true;
  const bool cancelled = events_->RaiseCancellable(kItemEventsId, kItemSend) ||
                         session_.ApplicationEvents()->RaiseCancellable(
                             kApplicationEventsId, kApplicationItemSend, ItemArgument(*this));
  sending_ = false;
  if (cancelled) throw HostError{E_ABORT, L"The operation was aborted."};
  session_.CloseInspectorOf(*this);
  gone_ = true;
  session_.Transmit(message_);
}

}  // namespace standin
