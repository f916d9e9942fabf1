#include <cwchar>

#include "outlook/ids.h"
#include "outlook/items.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

constexpr HRESULT kOutOfBounds = static_cast<HRESULT>(0x80020009);

// Position of a 1-based index or of a name, from 0. Throws when there is none.
template <class NameOf>
std::size_t Position(const VARIANT& index, std::size_t count, NameOf nameOf) {
  if (V_VT(&index) == VT_BSTR) {
    const std::wstring name = FromBstr(index.bstrVal);
    for (std::size_t i = 0; i < count; ++i) {
      if (postrove::text::EqualsIgnoreCase(nameOf(i), name)) return i;
    }
    throw HostError{kOutOfBounds, L"An object could not be found: " + name};
  }
  Variant number = Variant::Copy(index);
  number.ChangeType(VT_I4);
  const long value = number.Get().lVal;
  if (value < 1 || static_cast<std::size_t>(value) > count) {
    throw HostError{kOutOfBounds, L"Array index out of bounds."};
  }
  return static_cast<std::size_t>(value) - 1;
}

// What Attachments, Recipients and their elements share: they live in the item's message.
class PartObject : public Object {
 public:
  PartObject(std::shared_ptr<Item> whole, const wchar_t* name, const Interface& table)
      : Object(whole->Owner().shared_from_this(), name, {&table}), item(std::move(whole)) {}

  Variant Parent() { return Variant::Object(MakeItemObject(item)); }

  std::shared_ptr<Item> item;
};

class AttachmentObject final : public PartObject {
 public:
  AttachmentObject(std::shared_ptr<Item> whole, std::size_t number)
      : PartObject(std::move(whole), L"Attachment", Table()), position(number) {}

  const AttachmentData& Data() const {
    const auto& all = item->Message().attachments;
    if (position >= all.size()) throw HostError{E_FAIL, L"The attachment was removed."};
    return all[position];
  }

  const std::size_t position;

 private:
  static const Interface& Table();
};

const Interface& AttachmentObject::Table() {
  using Self = AttachmentObject;
  static const Interface table =
      InterfaceOf<Self>(L"Attachment", kAttachmentId)
          .Get(L"DisplayName", 12289, [](Self& self) { return Variant::Text(self.Data().name); })
          .Get(L"FileName", 14084, [](Self& self) { return Variant::Text(self.Data().name); })
          .Get(L"Index", 91,
               [](Self& self) { return Variant::Long(static_cast<long>(self.position) + 1); })
          .Get(L"Type", 14085, [](Self&) { return Variant::Long(1); })
          .Done();
  return table;
}

class AttachmentsObject final : public PartObject {
 public:
  explicit AttachmentsObject(std::shared_ptr<Item> whole)
      : PartObject(std::move(whole), L"Attachments", Table()) {}

 private:
  static const Interface& Table();
};

Variant AddAttachment(AttachmentsObject& self, const Arguments& arguments) {
  if (V_VT(&arguments.Any(0)) != VT_BSTR) {
    throw HostError{E_NOTIMPL, L"The stand-in attaches files only."};
  }
  const std::wstring path = FromBstr(arguments.Any(0).bstrVal);
  AttachmentData attachment;
  attachment.name = path.substr(path.find_last_of(L"\\/") + 1);
  attachment.bytes = ReadWholeFile(path);
  auto& all = self.item->Change().attachments;
  all.push_back(std::move(attachment));
  return Variant::Object(Make<AttachmentObject>(self.item, all.size() - 1));
}

const Interface& AttachmentsObject::Table() {
  using Self = AttachmentsObject;
  static const auto position = [](Self& self, const Arguments& arguments) {
    const auto& all = self.item->Message().attachments;
    return Position(arguments.Any(0), all.size(), [&](std::size_t i) { return all[i].name; });
  };
  static const Interface table =
      InterfaceOf<Self>(L"Attachments", kAttachmentsId)
          .Get(L"Parent", 61441, [](Self& self) { return self.Parent(); })
          .Get(L"Count", 80,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(self.item->Message().attachments.size()));
               })
          .Method(L"Item", 81, {Param::kAny},
                  [](Self& self, const Arguments& arguments) {
                    return Variant::Object(
                        Make<AttachmentObject>(self.item, position(self, arguments)));
                  })
          .Method(L"Add", 101, {Param::kAny, Param::kOptional, Param::kOptional, Param::kOptional},
                  AddAttachment)
          .Done();
  return table;
}

class RecipientObject final : public PartObject {
 public:
  RecipientObject(std::shared_ptr<Item> whole, std::size_t number)
      : PartObject(std::move(whole), L"Recipient", Table()), position(number) {}

  const RecipientData& Data() const {
    const auto& all = item->Message().recipients;
    if (position >= all.size()) throw HostError{E_FAIL, L"The recipient was removed."};
    return all[position];
  }

  const std::size_t position;

 private:
  static const Interface& Table();
};

const Interface& RecipientObject::Table() {
  using Self = RecipientObject;
  static const Interface table =
      InterfaceOf<Self>(L"Recipient", kRecipientId)
          .Get(L"Index", 91,
               [](Self& self) { return Variant::Long(static_cast<long>(self.position) + 1); })
          .Get(L"Resolved", 100, [](Self&) { return Variant::Bool(true); })
          .Get(L"Type", 3093,
               [](Self& self) { return Variant::Long(static_cast<long>(self.Data().kind)); })
          .Put(L"Type", 3093, Param::kLong,
               [](Self& self, const Arguments& arguments) {
                 const long kind = arguments.Long(0);
                 if (kind < 1 || kind > 3) throw HostError{E_INVALIDARG, L"Unknown type."};
                 self.Data();
                 self.item->Change().recipients[self.position].kind =
                     static_cast<RecipientKind>(kind);
               })
          .Done();
  return table;
}

class RecipientsObject final : public PartObject {
 public:
  explicit RecipientsObject(std::shared_ptr<Item> whole)
      : PartObject(std::move(whole), L"Recipients", Table()) {}

 private:
  static const Interface& Table();
};

const Interface& RecipientsObject::Table() {
  using Self = RecipientsObject;
  static const auto position = [](Self& self, const Arguments& arguments) {
    const auto& all = self.item->Message().recipients;
    return Position(arguments.Any(0), all.size(), [&](std::size_t i) { return all[i].name; });
  };
  static const Interface table =
      InterfaceOf<Self>(L"Recipients", kRecipientsId)
          .Get(L"Parent", 61441, [](Self& self) { return self.Parent(); })
          .Get(L"Count", 80,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(self.item->Message().recipients.size()));
               })
          .Method(
              L"Item", 81, {Param::kAny},
              [](Self& self, const Arguments& arguments) {
                return Variant::Object(Make<RecipientObject>(self.item, position(self, arguments)));
              })
          .Method(L"Add", 111, {Param::kText},
                  [](Self& self, const Arguments& arguments) {
                    const std::wstring name = arguments.Text(0);
                    auto& all = self.item->Change().recipients;
                    all.push_back({RecipientKind::kTo, name, name});
                    return Variant::Object(Make<RecipientObject>(self.item, all.size() - 1));
                  })
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeAttachmentsObject(const std::shared_ptr<Item>& item) {
  return Make<AttachmentsObject>(item);
}

ComPtr<IDispatch> MakeRecipientsObject(const std::shared_ptr<Item>& item) {
  return Make<RecipientsObject>(item);
}

}  // namespace standin
