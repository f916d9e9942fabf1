#include "outlook/items.h"

#include "outlook/application.h"
#include "outlook/ids.h"
#include "outlook/inspector_object.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

class ItemObject final : public Object {
 public:
  explicit ItemObject(std::shared_ptr<Item> shown);

  std::shared_ptr<Item> item;

  Session& Owner() const { return item->Owner(); }
  const MessageData& Data() const { return item->Message(); }

  static const Interface& Table(ItemKind kind);
};

template <class F>
auto Text(F field) {
  return [field](ItemObject& self) { return Variant::Text(self.Data().*field); };
}

template <class F>
auto PutText(F field) {
  return [field](ItemObject& self, const Arguments& arguments) {
    self.item->Change().*field = arguments.Text(0);
  };
}

auto Names(RecipientKind kind) {
  return [kind](ItemObject& self) { return Variant::Text(self.Data().Names(kind)); };
}

auto PutNames(RecipientKind kind) {
  return [kind](ItemObject& self, const Arguments& arguments) {
    std::vector<RecipientData>& recipients = self.item->Change().recipients;
    std::erase_if(recipients, [&](const RecipientData& one) { return one.kind == kind; });
    const std::wstring list = arguments.Text(0) + L';';
    for (std::size_t at = 0, end; (end = list.find(L';', at)) != std::wstring::npos; at = end + 1) {
      const std::wstring name = postrove::text::Trim(list.substr(at, end - at));
      if (!name.empty()) recipients.push_back({kind, name, name});
    }
  };
}

void SetSubject(ItemObject& self, const Arguments& arguments) {
  self.item->Change().subject = arguments.Text(0);
  if (const auto inspector = self.Owner().Find(*self.item)) inspector->Changed();
}

void CloseItem(ItemObject& self) {
  self.Data();
  if (const auto inspector = self.Owner().Find(*self.item)) self.Owner().Close(*inspector, true);
}

// The members that have the same numbers on every kind of item.
InterfaceOf<ItemObject> Common(const wchar_t* name, const GUID& id) {
  InterfaceOf<ItemObject> table(name, id);
  table
      .Get(L"Class", 61450,
           [](ItemObject& self) {
             self.Data();
             return Variant::Long(self.item->Class());
           })
      .Get(L"Body", 37120, Text(&MessageData::body))
      .Put(L"Body", 37120, Param::kText,
           [](ItemObject& self, const Arguments& arguments) {
             self.item->SetBody(arguments.Text(0));
           })
      .Get(L"GetInspector", 61502,
           [](ItemObject& self) {
             self.Data();
             return Variant::Object(MakeInspectorObject(self.Owner().InspectorOf(self.item)));
           })
      .Get(L"MessageClass", 26, Text(&MessageData::messageClass))
      .Put(L"MessageClass", 26, Param::kText, PutText(&MessageData::messageClass))
      .Method(L"Close", 61475, {Param::kLong}, CloseItem)
      .Method(L"Save", 61512, {}, [](ItemObject& self) { self.item->Save(); })
      .Method(L"SaveAs", 61521, {Param::kText, Param::kOptional},
              [](ItemObject& self, const Arguments& arguments) {
                self.item->SaveAs(arguments.Text(0), arguments.LongOr(1, kSaveMsg));
              });
  return table;
}

void AddSubjectAndAttachments(InterfaceOf<ItemObject>& table) {
  table.Get(L"Subject", 55, Text(&MessageData::subject))
      .Put(L"Subject", 55, Param::kText, SetSubject)
      .Get(L"Attachments", 63509, [](ItemObject& self) {
        self.Data();
        return Variant::Object(MakeAttachmentsObject(self.item));
      });
}

Interface MailTable() {
  InterfaceOf<ItemObject> table = Common(L"_MailItem", kMailItemId);
  AddSubjectAndAttachments(table);
  table.Get(L"CC", 3587, Names(RecipientKind::kCc))
      .Put(L"CC", 3587, Param::kText, PutNames(RecipientKind::kCc))
      .Get(L"BCC", 3586, Names(RecipientKind::kBcc))
      .Put(L"BCC", 3586, Param::kText, PutNames(RecipientKind::kBcc))
      .Get(L"To", 3588, Names(RecipientKind::kTo))
      .Put(L"To", 3588, Param::kText, PutNames(RecipientKind::kTo))
      .Get(L"HTMLBody", 62468,
           [](ItemObject& self) { return Variant::Text(self.item->HtmlBody()); })
      .Put(L"HTMLBody", 62468, Param::kText,
           [](ItemObject& self, const Arguments& arguments) {
             self.item->SetHtmlBody(arguments.Text(0));
           })
      .Get(L"Recipients", 63508,
           [](ItemObject& self) {
             self.Data();
             return Variant::Object(MakeRecipientsObject(self.item));
           })
      .Get(L"SenderName", 3098, Text(&MessageData::senderName))
      .Get(L"SentOnBehalfOfName", 66, Text(&MessageData::senderName))
      .Get(L"Sent", 62466,
           [](ItemObject& self) {
             self.Data();
             return Variant::Bool(self.item->Sent());
           })
      .Get(L"UnRead", 61468,
           [](ItemObject& self) {
             self.Data();
             return Variant::Bool(self.item->UnRead());
           })
      .Put(L"UnRead", 61468, Param::kBool,
           [](ItemObject& self, const Arguments& arguments) {
             self.Data();
             self.item->SetUnRead(arguments.Bool(0));
           })
      .Method(L"Send", 61557, {}, [](ItemObject& self) { self.item->Send(); })
      .Get(L"BodyFormat", 64073,
           [](ItemObject& self) {
             const bool html = self.Data().IsHtml();
             return Variant::Long(self.item->IsRichText() ? 3 : html ? 2 : 1);
           })
      .Since(10)
      .Put(L"BodyFormat", 64073, Param::kLong,
           [](ItemObject& self, const Arguments& arguments) {
             const long format = arguments.Long(0);
             if (format == 1) {
               self.item->MakePlain();
             } else if (format == 2) {
               self.item->MakeHtml();
             } else if (format == 3) {
               self.item->MakeRichText();
             } else {
               throw HostError{E_INVALIDARG, L"There is no such body format."};
             }
           })
      .Since(10)
      .Get(L"SenderEmailAddress", 3103, Text(&MessageData::senderAddress))
      .Since(11);
  return table.Done();
}

Interface NoteTable() {
  InterfaceOf<ItemObject> table = Common(L"_NoteItem", kNoteItemId);
  table.Get(L"Subject", 63392, Text(&MessageData::subject));
  return table.Done();
}

Interface OtherTable(const wchar_t* name, const GUID& id) {
  InterfaceOf<ItemObject> table = Common(name, id);
  AddSubjectAndAttachments(table);
  return table.Done();
}

const wchar_t* KindName(ItemKind kind) {
  static constexpr const wchar_t* kNames[] = {L"MailItem", L"AppointmentItem", L"ContactItem",
                                              L"NoteItem"};
  return kNames[static_cast<std::size_t>(kind)];
}

const Interface& ItemObject::Table(ItemKind kind) {
  static const Interface mail = MailTable();
  static const Interface appointment = OtherTable(L"_AppointmentItem", kAppointmentItemId);
  static const Interface contact = OtherTable(L"_ContactItem", kContactItemId);
  static const Interface note = NoteTable();
  switch (kind) {
    case ItemKind::kAppointment:
      return appointment;
    case ItemKind::kContact:
      return contact;
    case ItemKind::kNote:
      return note;
    default:
      return mail;
  }
}

ItemObject::ItemObject(std::shared_ptr<Item> shown)
    : Object(shown->Owner().shared_from_this(), KindName(shown->Kind()), {&Table(shown->Kind())},
             {{kItemEventsId, shown->Events()}}),
      item(std::move(shown)) {}

}  // namespace

ComPtr<IDispatch> MakeItemObject(const std::shared_ptr<Item>& item) {
  return Make<ItemObject>(item);
}

std::vector<Variant> ItemArgument(Item& item) {
  std::vector<Variant> result;
  result.push_back(Variant::Object(MakeItemObject(item.shared_from_this())));
  return result;
}

}  // namespace standin
