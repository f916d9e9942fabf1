#include "outlook/add_in_objects.h"

#include "outlook/application.h"
#include "outlook/ids.h"
#include "outlook/session.h"
#include "shared/text.h"

namespace standin {
namespace {

class AddInObject final : public Object {
 public:
  AddInObject(Session& owner, std::shared_ptr<AddIn> shown)
      : Object(owner.shared_from_this(), L"COMAddIn", {&Table()}),
        session(owner),
        addIn(std::move(shown)) {}

  Session& session;
  const std::shared_ptr<AddIn> addIn;

 private:
  static const Interface& Table();
};

class AddInsObject final : public Object {
 public:
  explicit AddInsObject(Session& owner)
      : Object(owner.shared_from_this(), L"COMAddIns", {&Table()}), session(owner) {}

  Session& session;

 private:
  static const Interface& Table();
};

Variant ClassId(AddInObject& self) {
  CLSID id = {};
  CLSIDFromProgID(self.addIn->progId.c_str(), &id);
  wchar_t text[40] = {};
  StringFromGUID2(id, text, 40);
  return Variant::Text(text);
}

const Interface& AddInObject::Table() {
  using Self = AddInObject;
  static const Interface table =
      InterfaceOf<Self>(L"COMAddIn", kComAddInId)
          .Get(L"Description", 0,
               [](Self& self) { return Variant::Text(self.addIn->friendlyName); })
          .Put(L"Description", 0, Param::kText,
               [](Self& self, const Arguments& arguments) {
                 self.addIn->friendlyName = arguments.Text(0);
               })
          .Get(L"ProgId", 3, [](Self& self) { return Variant::Text(self.addIn->progId); })
          .Get(L"Guid", 4, ClassId)
          .Get(L"Connect", 6, [](Self& self) { return Variant::Bool(self.addIn->connected); })
          .NotPlayed(L"Connect", 6, Kind::kPut, {Param::kBool})
          .Get(L"Object", 7, [](Self& self) { return Variant::Object(self.addIn->object); })
          .Put(L"Object", 7, Param::kObject,
               [](Self& self, const Arguments& arguments) {
                 self.addIn->object = arguments.Object(0);
               })
          .Get(L"Parent", 8,
               [](Self& self) { return Variant::Object(MakeApplicationObject(self.session)); })
          .Done();
  return table;
}

Variant AddInAt(AddInsObject& self, const Arguments& arguments) {
  const auto& all = self.session.AddIns();
  std::shared_ptr<AddIn> found;
  if (V_VT(&arguments.Any(0)) == VT_BSTR) {
    for (const auto& addIn : all) {
      if (postrove::text::EqualsIgnoreCase(addIn->progId, arguments.Text(0))) found = addIn;
    }
  } else {
    const long index = arguments.LongOr(0, 0);
    if (index >= 1 && index <= static_cast<long>(all.size())) {
      found = all[static_cast<std::size_t>(index - 1)];
    }
  }
  if (!found) throw HostError{E_INVALIDARG, L"There is no such add-in."};
  return Variant::Object(MakeAddInObject(self.session, found));
}

const Interface& AddInsObject::Table() {
  using Self = AddInsObject;
  static const Interface table =
      InterfaceOf<Self>(L"COMAddIns", kComAddInsId)
          .Method(L"Item", 0, {Param::kAny}, AddInAt)
          .Get(L"Count", 1,
               [](Self& self) {
                 return Variant::Long(static_cast<long>(self.session.AddIns().size()));
               })
          .Method(L"Update", 2, {}, [](Self&) {})
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeAddInsObject(Session& session) { return Make<AddInsObject>(session); }

ComPtr<IDispatch> MakeAddInObject(Session& session, const std::shared_ptr<AddIn>& addIn) {
  return Make<AddInObject>(session, addIn);
}

}  // namespace standin
