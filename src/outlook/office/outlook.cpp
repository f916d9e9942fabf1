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

void CommandBarButton::SetCaption(const std::wstring& caption) const {
  Held().Put(L"Caption", caption);
}
void CommandBarButton::SetStyle(std::int32_t style) const { Held().Put(L"Style", style); }
void CommandBarButton::SetFaceId(std::int32_t face) const { Held().Put(L"FaceId", face); }
void CommandBarButton::SetBeginGroup(bool begin) const { Held().Put(L"BeginGroup", begin); }
void CommandBarButton::SetTag(const std::wstring& tag) const { Held().Put(L"Tag", tag); }
void CommandBarButton::SetOnAction(const std::wstring& action) const {
  Held().Put(L"OnAction", action);
}
void CommandBarButton::SetVisible(bool visible) const { Held().Put(L"Visible", visible); }

void CommandBarControl::Delete() const { Held().Call(L"Delete"); }
std::int32_t CommandBarControl::InstanceId() const { return ToLong(Held().Get(L"InstanceId")); }
CommandBarButton CommandBarControl::AsButton() const {
  return CommandBarButton(Held().As(kCommandBarButton));
}

void CommandBar::SetVisible(bool visible) const { Held().Put(L"Visible", visible); }
void CommandBar::SetProtection(std::int32_t protection) const {
  Held().Put(L"Protection", protection);
}
CommandBarControl CommandBar::AddButton(std::int32_t parameter,
                                        std::optional<std::int32_t> before) const {
  const ObjectPtr controls = ToObject(Held().Get(L"Controls"));
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

std::int32_t Item::Class() const { return ToLong(Held().Get(L"Class")); }
bool Item::Sent() const { return ToBool(Held().Get(L"Sent")); }

MailItem MailItem::From(const Item& item) {
  if (!item) throw Error(kObjectNotSet, L"CurrentItem", L"The window shows no message.");
  return MailItem(item.Get()->As(kMailItem));
}
std::wstring MailItem::Subject() const { return ToText(Held().Get(L"Subject")); }
void MailItem::SetSubject(const std::wstring& subject) const { Held().Put(L"Subject", subject); }
std::wstring MailItem::Body() const { return ToText(Held().Get(L"Body")); }
void MailItem::SetBody(const std::wstring& body) const { Held().Put(L"Body", body); }
std::wstring MailItem::HtmlBody() const { return ToText(Held().Get(L"HTMLBody")); }
void MailItem::SetHtmlBody(const std::wstring& html) const { Held().Put(L"HTMLBody", html); }

namespace {

std::int32_t CountOf(const ObjectPtr& collection, const wchar_t* name) {
  if (!collection) throw Error(kObjectNotSet, name, L"The message has no such collection.");
  return ToLong(collection->Get(L"Count"));
}

}  // namespace

std::int32_t MailItem::AttachmentCount() const {
  return CountOf(ToObject(Held().Get(L"Attachments")), L"Attachments");
}
std::int32_t MailItem::RecipientCount() const {
  return CountOf(ToObject(Held().Get(L"Recipients")), L"Recipients");
}
Inspector MailItem::GetInspector() const {
  return Inspector(ToObject(Held().Get(L"GetInspector")));
}
void MailItem::SaveAs(const std::wstring& path, std::int32_t type) const {
  Held().Call(L"SaveAs", {path, type});
}
void MailItem::Send() const { Held().Call(L"Send"); }

Item Inspector::CurrentItem() const { return Item(ToObject(Held().Get(L"CurrentItem"))); }
office::CommandBars Inspector::CommandBars() const {
  return office::CommandBars(ToObject(Held().Get(L"CommandBars")));
}
std::int32_t Inspector::EditorType() const { return ToLong(Held().Get(L"EditorType")); }
bool Inspector::IsWordMail() const { return ToBool(Held().Call(L"IsWordMail")); }

std::int32_t Inspectors::Count() const { return ToLong(Held().Get(L"Count")); }
Inspector Inspectors::Item(std::int32_t index) const {
  return Inspector(ToObject(Held().Call(L"Item", {index})));
}

std::wstring Application::Version() const { return ToText(Held().Get(L"Version")); }
NameSpace Application::GetNamespace(const std::wstring& type) const {
  return NameSpace(ToObject(Held().Call(L"GetNamespace", {type})));
}
office::Inspectors Application::Inspectors() const {
  return office::Inspectors(ToObject(Held().Get(L"Inspectors")));
}
Inspector Application::ActiveInspector() const {
  return Inspector(ToObject(Held().Call(L"ActiveInspector")));
}

}  // namespace postrove::office
