#include "outlook/application.h"

#include "outlook/add_in_objects.h"
#include "outlook/ids.h"
#include "outlook/inspector_object.h"
#include "outlook/items.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

Session& SessionOf(const Object& object) { return static_cast<Session&>(object.Shared()); }

class ApplicationObject final : public Object {
 public:
  explicit ApplicationObject(Session& session)
      : Object(session.shared_from_this(), L"Application", {&Table()},
               {{kApplicationEventsId, session.ApplicationEvents()}}) {}

 private:
  static const Interface& Table();
};

class NameSpaceObject final : public Object {
 public:
  explicit NameSpaceObject(Session& session)
      : Object(session.shared_from_this(), L"NameSpace", {&Table()}) {}

 private:
  static const Interface& Table();
};

class InspectorsObject final : public Object {
 public:
  explicit InspectorsObject(Session& session)
      : Object(session.shared_from_this(), L"Inspectors", {&Table()},
               {{kInspectorsEventsId, session.InspectorsEvents()}}) {}

 private:
  static const Interface& Table();
};

Variant ApplicationOf(Object& self) {
  return Variant::Object(MakeApplicationObject(SessionOf(self)));
}

Variant NameSpaceOf(Object& self) { return Variant::Object(MakeNameSpaceObject(SessionOf(self))); }

Variant ActiveInspector(ApplicationObject& self) {
  const std::shared_ptr<Inspector> active = SessionOf(self).Active();
  return Variant::Object(active ? MakeInspectorObject(active) : nullptr);
}

Variant GetNamespace(ApplicationObject& self, const Arguments& arguments) {
  if (!postrove::text::EqualsIgnoreCase(arguments.Text(0), L"MAPI")) {
    throw HostError{E_INVALIDARG, L"There is no such name space."};
  }
  return NameSpaceOf(self);
}

Variant CreateItem(ApplicationObject& self, const Arguments& arguments) {
  ItemKind kind;
  switch (arguments.Long(0)) {  // OlItemType
    case 0:
      kind = ItemKind::kMail;
      break;
    case 1:
      kind = ItemKind::kAppointment;
      break;
    case 2:
      kind = ItemKind::kContact;
      break;
    case 5:
      kind = ItemKind::kNote;
      break;
    default:
      throw HostError{E_INVALIDARG, L"The stand-in makes no such item."};
  }
  return Variant::Object(MakeItemObject(SessionOf(self).NewItem(kind, {}, false)));
}

const Interface& ApplicationObject::Table() {
  using Self = ApplicationObject;
  static const Interface table =
      InterfaceOf<Self>(L"_Application", kApplicationId)
          .Get(L"Application", 61440, ApplicationOf)
          .Get(L"Class", 61450, [](Self&) { return Variant::Long(0); })
          .Get(L"Session", 61451, NameSpaceOf)
          .Get(L"Parent", 61441, ApplicationOf)
          .Get(L"Version", 278,
               [](Self& self) { return Variant::Text(SessionOf(self).VersionText()); })
          .Method(L"ActiveExplorer", 273, {}, [](Self&) { return Variant::Object(nullptr); })
          .Method(L"ActiveInspector", 274, {}, ActiveInspector)
          .Method(L"CreateItem", 266, {Param::kLong}, CreateItem)
          .Method(L"GetNamespace", 272, {Param::kText}, GetNamespace)
          .NotPlayed(L"Quit", 275, Kind::kMethod)
          .Get(L"COMAddIns", 280,
               [](Self& self) { return Variant::Object(MakeAddInsObject(SessionOf(self))); })
          .NotPlayed(L"Explorers", 281, Kind::kGet)
          .Get(L"Inspectors", 282,
               [](Self& self) { return Variant::Object(MakeInspectorsObject(SessionOf(self))); })
          .Method(L"ActiveWindow", 287, {}, ActiveInspector)
          .Done();
  return table;
}

const Interface& NameSpaceObject::Table() {
  using Self = NameSpaceObject;
  static const Interface table =
      InterfaceOf<Self>(L"_NameSpace", kNameSpaceId)
          .Get(L"Application", 61440, ApplicationOf)
          .NotPlayed(L"CurrentUser", 8449, Kind::kGet)
          .NotPlayed(L"Folders", 8451, Kind::kGet)
          .Get(L"Type", 8452, [](Self&) { return Variant::Text(L"MAPI"); })
          .NotPlayed(L"GetDefaultFolder", 8459, Kind::kMethod, {Param::kLong})
          .NotPlayed(L"GetItemFromID", 8457, Kind::kMethod, {Param::kText, Param::kOptional})
          .Method(L"Logon", 8453,
                  {Param::kOptional, Param::kOptional, Param::kOptional, Param::kOptional},
                  [](Self&) {})
          .Method(L"Logoff", 8454, {}, [](Self&) {})
          .Done();
  return table;
}

Variant InspectorAt(InspectorsObject& self, const Arguments& arguments) {
  const auto open = SessionOf(self).OpenInspectors();
  if (V_VT(&arguments.Any(0)) == VT_BSTR) {
    for (const auto& inspector : open) {
      if (inspector->Caption() == arguments.Text(0)) {
        return Variant::Object(MakeInspectorObject(inspector));
      }
    }
    throw HostError{E_INVALIDARG, L"There is no such inspector."};
  }
  const long index = arguments.LongOr(0, 0);
  if (index < 1 || index > static_cast<long>(open.size())) {
    throw HostError{E_INVALIDARG, L"Array index out of bounds."};
  }
  return Variant::Object(MakeInspectorObject(open[static_cast<std::size_t>(index - 1)]));
}

const Interface& InspectorsObject::Table() {
  using Self = InspectorsObject;
  static const Interface table =
      InterfaceOf<Self>(L"_Inspectors", kInspectorsId)
          .Get(L"Application", 61440, ApplicationOf)
          .Get(L"Session", 61451, NameSpaceOf)
          .Get(L"Count", 80,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(SessionOf(self).OpenInspectors().size()));
               })
          .Method(L"Item", 81, {Param::kAny}, InspectorAt)
          .NotPlayed(L"Add", 95, Kind::kMethod, {Param::kObject})
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeApplicationObject(Session& session) {
  return Make<ApplicationObject>(session);
}

ComPtr<IDispatch> MakeNameSpaceObject(Session& session) { return Make<NameSpaceObject>(session); }

ComPtr<IDispatch> MakeInspectorsObject(Session& session) { return Make<InspectorsObject>(session); }

}  // namespace standin
