#pragma once

#include <optional>
#include <string>

#include "outlook/office/object.h"

// Typed wrappers of the Outlook and Office objects that the product uses, with only the members it
// uses. A wrapper is a counted reference and as cheap to copy; a default-made one is Nothing, and
// using a member of it throws Error 91. Members throw Error as Object does.
namespace postrove::office {

class Wrapper {
 public:
  Wrapper() = default;
  explicit Wrapper(ObjectPtr object) : object_(std::move(object)) {}

  explicit operator bool() const { return object_ != nullptr; }
  const ObjectPtr& Get() const { return object_; }

 protected:
  Object& Held() const;

  // Members by the type of their value.
  std::wstring Text(const wchar_t* member) const;
  std::int32_t Long(const wchar_t* member) const;
  bool Bool(const wchar_t* member) const;
  ObjectPtr Part(const wchar_t* member) const;  // null for Nothing
  void PutText(const wchar_t* member, const std::wstring& value) const;
  void PutLong(const wchar_t* member, std::int32_t value) const;
  void PutBool(const wchar_t* member, bool value) const;

 private:
  ObjectPtr object_;
};

class CommandBarButton : public Wrapper {
 public:
  using Wrapper::Wrapper;
  void SetCaption(const std::wstring& caption) const;
  void SetStyle(std::int32_t style) const;
  void SetFaceId(std::int32_t face) const;
  void SetBeginGroup(bool begin) const;
  void SetTag(const std::wstring& tag) const;
  void SetOnAction(const std::wstring& action) const;
  void SetVisible(bool visible) const;
  void SetDescriptionText(const std::wstring& text) const;  // which no user sees
};

class CommandBarControl : public Wrapper {
 public:
  using Wrapper::Wrapper;
  void Delete() const;
  std::wstring DescriptionText() const;
  // The same control through its button interface. Throws Error when it is not a button.
  CommandBarButton AsButton() const;
};

class CommandBar : public Wrapper {
 public:
  using Wrapper::Wrapper;
  void SetVisible(bool visible) const;
  void SetProtection(std::int32_t protection) const;
  // Adds a temporary plain button before the control at the 1-based index, or at the bar's end.
  CommandBarControl AddButton(std::int32_t parameter, std::optional<std::int32_t> before) const;
};

class CommandBars : public Wrapper {
 public:
  using Wrapper::Wrapper;
  CommandBar Item(const std::wstring& name) const;
  // Nothing when no control has the tag.
  CommandBarControl FindControl(const std::wstring& tag) const;
};

// Any item that an inspector shows. Only Class is safe before the class is known.
class Item : public Wrapper {
 public:
  using Wrapper::Wrapper;
  std::int32_t Class() const;
  bool Sent() const;
};

class Attachment : public Wrapper {
 public:
  using Wrapper::Wrapper;
  std::wstring FileName() const;
  std::wstring DisplayName() const;
};

class Attachments : public Wrapper {
 public:
  using Wrapper::Wrapper;
  std::int32_t Count() const;
  Attachment Item(std::int32_t index) const;  // from 1 on
};

class MailItem : public Item {
 public:
  using Item::Item;
  // The item through its mail interface. Throws Error when it is not a mail item.
  static MailItem From(const Item& item);

  std::wstring Subject() const;
  void SetSubject(const std::wstring& subject) const;
  std::wstring Body() const;
  void SetBody(const std::wstring& body) const;
  std::wstring HtmlBody() const;
  void SetHtmlBody(const std::wstring& html) const;
  // Names of persons; Outlook asks the user before it tells them to an add-in that it does not
  // trust, which is any one before 2003.
  std::wstring SenderName() const;
  std::wstring SentOnBehalfOfName() const;
  std::wstring To() const;
  std::wstring Cc() const;
  std::wstring Bcc() const;
  office::Attachments Attachments() const;
  std::int32_t RecipientCount() const;
  void SaveAs(const std::wstring& path, std::int32_t type) const;
  void Send() const;
};

class Inspector : public Wrapper {
 public:
  using Wrapper::Wrapper;
  Item CurrentItem() const;
  office::CommandBars CommandBars() const;
  std::int32_t EditorType() const;
  bool IsWordMail() const;
};

class Inspectors : public Wrapper {
 public:
  using Wrapper::Wrapper;
  std::int32_t Count() const;
  Inspector Item(std::int32_t index) const;  // from 1 on
};

class NameSpace : public Wrapper {
 public:
  using Wrapper::Wrapper;
};

class Application : public Wrapper {
 public:
  using Wrapper::Wrapper;
  std::wstring Version() const;
  NameSpace GetNamespace(const std::wstring& type) const;
  office::Inspectors Inspectors() const;
  // Nothing when no inspector is open.
  Inspector ActiveInspector() const;
};

}  // namespace postrove::office
