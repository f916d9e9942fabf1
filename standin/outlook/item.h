#pragma once

#include <memory>
#include <string>

#include "outlook/events.h"
#include "outlook/message.h"

namespace standin {

class Session;

enum class ItemKind { kMail, kAppointment, kContact, kNote };

// OlSaveAsType
inline constexpr long kSaveMsg = 3;
inline constexpr long kSaveMsgUnicode = 9;

// An item of the host, whatever objects show it. After Send it is gone: every use throws.
class Item : public std::enable_shared_from_this<Item> {
 public:
  Item(Session& session, ItemKind kind, MessageData message, bool sent);

  Session& Owner() const { return session_; }
  ItemKind Kind() const { return kind_; }
  long Class() const;  // OlObjectClass
  bool Sent() const { return sent_; }
  bool Gone() const { return gone_; }
  const std::shared_ptr<EventHub>& Events() const { return events_; }

  // The content; throws when the item is gone. Changing it through the second marks it unsaved.
  const MessageData& Message() const;
  MessageData& Change();

  void SetBody(const std::wstring& text);  // an HTML message stays one
  std::wstring HtmlBody() const;           // generated for a plain-text message
  void SetHtmlBody(const std::wstring& html);
  void MakePlain();
  void MakeHtml();
  void MakeRichText();  // which has no HTML of its own
  bool IsRichText() const { return richText_; }

  bool Saved() const { return saved_; }
  void Save();
  bool UnRead() const { return unRead_; }
  void SetUnRead(bool unRead) { unRead_ = unRead; }

  // Writes the item. Throws HostError as the real calls fail: missing folder, over-long or
  // forbidden name, unknown type.
  void SaveAs(const std::wstring& path, long type);

  // Sends it: events, its inspector closes, then it is gone. Throws when refused or cancelled.
  void Send();

 private:
  Session& session_;
  const ItemKind kind_;
  MessageData message_;
  bool sent_;
  bool saved_;
  bool unRead_ = false;
  bool richText_ = false;
  bool gone_ = false;
  bool sending_ = false;
  std::shared_ptr<EventHub> events_;
};

}  // namespace standin
