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

const Interface& ApplicationObject::Table() {
  using Self = ApplicationObject;
  static const Interface table =
      InterfaceOf<Self>(L"_Application", kApplicationId)
          .Get(L"Class", 61450, [](Self&) { return Variant::Long(0); })
          .Get(L"Parent", 61441, ApplicationOf)
          .Get(L"Version", 278,
               [](Self& self) { return Variant::Text(SessionOf(self).VersionText()); })
          .Method(L"ActiveInspector", 274, {}, ActiveInspector)
          .Method(L"GetNamespace", 272, {Param::kText}, GetNamespace)
          .Get(L"Inspectors", 282,
               [](Self& self) { return Variant::Object(MakeInspectorsObject(SessionOf(self))); })
          .Done();
  return table;
}

const Interface& NameSpaceObject::Table() {
  using Self = NameSpaceObject;
  static const Interface table =
      InterfaceOf<Self>(L"_NameSpace", kNameSpaceId)
          .Get(L"Type", 8452, [](Self&) { return Variant::Text(L"MAPI"); })
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
          .Get(L"Count", 80,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(SessionOf(self).OpenInspectors().size()));
               })
          .Method(L"Item", 81, {Param::kAny}, InspectorAt)
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
