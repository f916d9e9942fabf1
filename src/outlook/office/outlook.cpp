#include "outlook/office/outlook.h"

#include "outlook/office/ids.h"
#include "shared/error.h"

namespace postrove::office {

Object& Wrapper::Held() const {
  if (!object_) {
    throw Error(kObjectNotSet, L"office", L"The Outlook object is no longer there.");
  }
  return *object_;
}

std::wstring Wrapper::Text(const wchar_t* member) const { return ToText(Held().Get(member)); }
std::int32_t Wrapper::Long(const wchar_t* member) const { return ToLong(Held().Get(member)); }
bool Wrapper::Bool(const wchar_t* member) const { return ToBool(Held().Get(member)); }
ObjectPtr Wrapper::Part(const wchar_t* member) const { return ToObject(Held().Get(member)); }
void Wrapper::PutText(const wchar_t* member, const std::wstring& value) const {
  Held().Put(member, value);
}
void Wrapper::PutLong(const wchar_t* member, std::int32_t value) const {
  Held().Put(member, value);
}
void Wrapper::PutBool(const wchar_t* member, bool value) const { Held().Put(member, value); }

void CommandBarButton::SetCaption(const std::wstring& caption) const {
  PutText(L"Caption", caption);
}
void CommandBarButton::SetStyle(std::int32_t style) const { PutLong(L"Style", style); }
void CommandBarButton::SetFaceId(std::int32_t face) const { PutLong(L"FaceId", face); }
void CommandBarButton::SetBeginGroup(bool begin) const { PutBool(L"BeginGroup", begin); }
void CommandBarButton::SetTag(const std::wstring& tag) const { PutText(L"Tag", tag); }
void CommandBarButton::SetOnAction(const std::wstring& action) const {
  PutText(L"OnAction", action);
}
void CommandBarButton::SetVisible(bool visible) const { PutBool(L"Visible", visible); }
void CommandBarButton::SetDescriptionText(const std::wstring& text) const {
  PutText(L"DescriptionText", text);
}

void CommandBarControl::Delete() const { Held().Call(L"Delete"); }
std::wstring CommandBarControl::DescriptionText() const { return Text(L"DescriptionText"); }
CommandBarButton CommandBarControl::AsButton() const {
  return CommandBarButton(Held().As(kCommandBarButton));
}

void CommandBar::SetVisible(bool visible) const { PutBool(L"Visible", visible); }
void CommandBar::SetProtection(std::int32_t protection) const {
  PutLong(L"Protection", protection);
}
CommandBarControl CommandBar::AddButton(std::int32_t parameter,
                                        std::optional<std::int32_t> before) const {
  const ObjectPtr controls = Part(L"Controls");
  if (!controls) throw Error(kObjectNotSet, L"Controls", L"The command bar has no controls.");
  return CommandBarControl(
      ToObject(controls->Call(L"Add", {kControlButton, Missing{}, parameter,
                                       before ? Value(*before) : Value(Missing{}), true})));
}

CommandBar CommandBars::Item(const std::wstring& name) const {
  return CommandBar(ToObject(Held().Get(L"Item", {name})));
}
CommandBarControl CommandBars::FindControl(const std::wstring& tag) const {
  return CommandBarControl(
      ToObject(Held().Call(L"FindControl", {Missing{}, Missing{}, tag, Missing{}})));
}

std::int32_t Item::Class() const { return Long(L"Class"); }
bool Item::Sent() const { return Bool(L"Sent"); }

std::wstring Attachment::FileName() const { return Text(L"FileName"); }
std::wstring Attachment::DisplayName() const { return Text(L"DisplayName"); }

std::int32_t Attachments::Count() const { return Long(L"Count"); }
Attachment Attachments::Item(std::int32_t index) const {
  return Attachment(ToObject(Held().Call(L"Item", {index})));
}

MailItem MailItem::From(const Item& item) {
  if (!item) throw Error(kObjectNotSet, L"CurrentItem", L"The window shows no message.");
  return MailItem(item.Get()->As(kMailItem));
}
std::wstring MailItem::Subject() const { return Text(L"Subject"); }
void MailItem::SetSubject(const std::wstring& subject) const { PutText(L"Subject", subject); }
std::wstring MailItem::Body() const { return Text(L"Body"); }
void MailItem::SetBody(const std::wstring& body) const { PutText(L"Body", body); }
std::wstring MailItem::HtmlBody() const { return Text(L"HTMLBody"); }
void MailItem::SetHtmlBody(const std::wstring& html) const { PutText(L"HTMLBody", html); }

std::wstring MailItem::SenderName() const { return Text(L"SenderName"); }
std::wstring MailItem::SentOnBehalfOfName() const { return Text(L"SentOnBehalfOfName"); }
std::wstring MailItem::To() const { return Text(L"To"); }
std::wstring MailItem::Cc() const { return Text(L"CC"); }
std::wstring MailItem::Bcc() const { return Text(L"BCC"); }
office::Attachments MailItem::Attachments() const {
  return office::Attachments(Part(L"Attachments"));
}
std::int32_t MailItem::RecipientCount() const {
  const ObjectPtr recipients = Part(L"Recipients");
  if (!recipients) throw Error(kObjectNotSet, L"Recipients", L"The message has no recipients.");
  return ToLong(recipients->Get(L"Count"));
}
void MailItem::SaveAs(const std::wstring& path, std::int32_t type) const {
  Held().Call(L"SaveAs", {path, type});
}
void MailItem::Send() const { Held().Call(L"Send"); }

Item Inspector::CurrentItem() const { return Item(Part(L"CurrentItem")); }
office::CommandBars Inspector::CommandBars() const {
  return office::CommandBars(Part(L"CommandBars"));
}
std::int32_t Inspector::EditorType() const { return Long(L"EditorType"); }
bool Inspector::IsWordMail() const { return ToBool(Held().Call(L"IsWordMail")); }

std::int32_t Inspectors::Count() const { return Long(L"Count"); }
Inspector Inspectors::Item(std::int32_t index) const {
  return Inspector(ToObject(Held().Call(L"Item", {index})));
}

std::wstring Application::Version() const { return Text(L"Version"); }
NameSpace Application::GetNamespace(const std::wstring& type) const {
  return NameSpace(ToObject(Held().Call(L"GetNamespace", {type})));
}
office::Inspectors Application::Inspectors() const {
  return office::Inspectors(Part(L"Inspectors"));
}
Inspector Application::ActiveInspector() const {
  return Inspector(ToObject(Held().Call(L"ActiveInspector")));
}

}  // namespace postrove::office
