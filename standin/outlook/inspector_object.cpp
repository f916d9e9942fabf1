#include "outlook/inspector_object.h"

#include "outlook/application.h"
#include "outlook/command_bars.h"
#include "outlook/ids.h"
#include "outlook/items.h"
#include "outlook/session.h"

namespace standin {
namespace {

class InspectorObject final : public Object {
 public:
  explicit InspectorObject(std::shared_ptr<Inspector> shown)
      : Object(shown->Owner().shared_from_this(), L"Inspector", {&Table()},
               {{kInspectorEventsId, shown->Events()}}),
        inspector(std::move(shown)) {}

  Inspector& Open() const {
    inspector->RequireOpen();
    return *inspector;
  }

  const std::shared_ptr<Inspector> inspector;

 private:
  static const Interface& Table();
};

Variant CommandBars(InspectorObject& self) {
  const Inspector& inspector = self.Open();
  if (inspector.Item()->Kind() == ItemKind::kNote) {
    throw HostError{E_FAIL, L"A note has no command bars."};
  }
  const bool early =
      inspector.Owner().Settings().commandBarsFromActivate && !inspector.WasActivated();
  if (early) throw HostError{E_FAIL, L"The command bars are not there yet."};
  return Variant::Object(MakeCommandBarsObject(self.inspector));
}

void CloseInspector(InspectorObject& self) { self.Open().Owner().Close(*self.inspector, true); }

const Interface& InspectorObject::Table() {
  using Self = InspectorObject;
  static const Interface table =
      InterfaceOf<Self>(L"_Inspector", kInspectorId)
          .Get(L"Class", 61450, [](Self&) { return Variant::Long(35); })
          .Get(L"Parent", 61441,
               [](Self& self) {
                 return Variant::Object(MakeApplicationObject(self.inspector->Owner()));
               })
          .Get(L"CommandBars", 8448, CommandBars)
          .Get(L"CurrentItem", 8450,
               [](Self& self) { return Variant::Object(MakeItemObject(self.Open().Item())); })
          .Get(L"EditorType", 8464,
               [](Self& self) { return Variant::Long(self.Open().EditorType()); })
          .Method(L"Close", 8451, {Param::kLong}, CloseInspector)
          .Method(L"IsWordMail", 8453, {},
                  [](Self& self) { return Variant::Bool(self.Open().IsWordMail()); })
          .Get(L"Caption", 8465, [](Self& self) { return Variant::Text(self.Open().Caption()); })
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeInspectorObject(const std::shared_ptr<Inspector>& inspector) {
  return Make<InspectorObject>(inspector);
}

}  // namespace standin
