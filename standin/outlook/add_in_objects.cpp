#include "outlook/add_in_objects.h"

#include "outlook/ids.h"
#include "outlook/session.h"

namespace standin {
namespace {

class AddInObject final : public Object {
 public:
  AddInObject(Session& owner, std::shared_ptr<AddIn> shown)
      : Object(owner.shared_from_this(), L"COMAddIn", {&Table()}), addIn(std::move(shown)) {}

  const std::shared_ptr<AddIn> addIn;

 private:
  static const Interface& Table();
};

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
          .Done();
  return table;
}

}  // namespace

ComPtr<IDispatch> MakeAddInObject(Session& session, const std::shared_ptr<AddIn>& addIn) {
  return Make<AddInObject>(session, addIn);
}

}  // namespace standin
