#include "outlook/probe.h"

#include "outlook/automation_object.h"
#include "outlook/ids.h"

namespace standin::probe {

ComPtr<IDispatch> Reply::Object() const {
  return V_VT(&value.Get()) == VT_DISPATCH ? value.Get().pdispVal : nullptr;
}

Reply Invoke(const ComPtr<IDispatch>& object, DISPID id, WORD flags,
             std::vector<Variant> arguments) {
  std::vector<VARIANT> reversed;
  for (auto one = arguments.rbegin(); one != arguments.rend(); ++one) {
    reversed.push_back(one->Get());
  }
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS given = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if (flags & DISPATCH_PROPERTYPUT) {
    given.rgdispidNamedArgs = &put;
    given.cNamedArgs = 1;
  }
  Reply reply;
  VARIANT value;
  VariantInit(&value);
  EXCEPINFO info = {};
  reply.hr = object->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, flags, &given, &value, &info, nullptr);
  reply.code = reply.hr == DISP_E_EXCEPTION ? info.scode : reply.hr;
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  reply.value = Variant::Copy(value);
  VariantClear(&value);
  return reply;
}

namespace {

Reply ByName(const ComPtr<IDispatch>& object, const wchar_t* name, WORD flags,
             std::vector<Variant> arguments) {
  DISPID id = DISPID_UNKNOWN;
  auto* text = const_cast<wchar_t*>(name);
  const HRESULT hr = object->GetIDsOfNames(GUID{}, &text, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) return {hr, hr, {}};
  return Invoke(object, id, flags, std::move(arguments));
}

}  // namespace

Reply Get(const ComPtr<IDispatch>& object, const wchar_t* name, std::vector<Variant> arguments) {
  return ByName(object, name, DISPATCH_PROPERTYGET, std::move(arguments));
}

Reply Put(const ComPtr<IDispatch>& object, const wchar_t* name, Variant value) {
  return ByName(object, name, DISPATCH_PROPERTYPUT, List(std::move(value)));
}

Reply Call(const ComPtr<IDispatch>& object, const wchar_t* name, std::vector<Variant> arguments) {
  return ByName(object, name, DISPATCH_METHOD, std::move(arguments));
}

ComPtr<IDispatch> As(const ComPtr<IDispatch>& object, const GUID& id) {
  ComPtr<IDispatch> result;
  object->QueryInterface(id, reinterpret_cast<void**>(result.GetAddressOf()));
  return result;
}

MessageData SampleMessage() {
  MessageData message;
  message.subject = L"Site report";
  message.senderName = L"Site office";
  message.senderAddress = L"site@contractor.example";
  message.body = L"First line\r\nSecond line";
  message.recipients = {{RecipientKind::kTo, L"Project office", L"office@engineers.example"}};
  return message;
}

ComPtr<IDispatch> CurrentItem(const Host& host) {
  const ComPtr<IDispatch> inspector = Call(host.Application(), L"ActiveInspector").Object();
  return As(Get(inspector, L"CurrentItem").Object(), kMailItemId);
}

ComPtr<IDispatch> AddButton(const Host& host, const wchar_t* tag) {
  const ComPtr<IDispatch> inspector = Call(host.Application(), L"ActiveInspector").Object();
  const ComPtr<IDispatch> bars = Get(inspector, L"CommandBars").Object();
  const ComPtr<IDispatch> bar = Get(bars, L"Item", List(Variant::Text(L"standard"))).Object();
  const ComPtr<IDispatch> control =
      Call(Get(bar, L"Controls").Object(), L"Add",
           List(Variant::Long(1), Variant::Missing(), Variant::Missing(), Variant::Long(4),
                Variant::Bool(true)))
          .Object();
  Put(control, L"Tag", Variant::Text(tag));
  return control;
}

class Listener::Sink final : public AutomationObject<IDispatch> {
 public:
  Sink(Listener& listener, const GUID& id, const wchar_t* label, std::vector<std::wstring>& log)
      : AutomationObject(id), listener_(listener), label_(label), log_(log) {}

  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    log_.push_back(label_ + L'.' + std::to_wstring(id));
    if (listener_.during) listener_.during(id, *given);
    return S_OK;
  }

 private:
  Listener& listener_;
  const std::wstring label_;
  std::vector<std::wstring>& log_;
};

Listener::Listener(const ComPtr<IDispatch>& source, const GUID& id, const wchar_t* label,
                   std::vector<std::wstring>& log) {
  ComPtr<IConnectionPointContainer> container;
  if (FAILED(source.As(&container))) return;
  if (FAILED(container->FindConnectionPoint(id, &point_))) return;
  const ComPtr<IDispatch> sink = Own<IDispatch>(new Sink(*this, id, label, log));
  point_->Advise(sink.Get(), &cookie_);
}

Listener::~Listener() {
  if (point_ && cookie_) point_->Unadvise(cookie_);
}

}  // namespace standin::probe
