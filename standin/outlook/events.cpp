#include "outlook/events.h"

#include <olectl.h>

#include <algorithm>

#include "outlook/dispatch.h"
#include "outlook/ids.h"

namespace standin {
namespace {

class ConnectionPoint final : public Tracked, public IConnectionPoint {
 public:
  ConnectionPoint(const Object& owner, IConnectionPointContainer* container, const GUID& id,
                  std::shared_ptr<EventHub> hub)
      : Tracked(owner.SharedPointer(), L"ConnectionPoint(" + InterfaceName(id) + L')'),
        owner_(owner),
        container_(container),
        id_(id),
        hub_(std::move(hub)) {}

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualGUID(id, IID_IUnknown) && !IsEqualGUID(id, IID_IConnectionPoint)) {
      return E_NOINTERFACE;
    }
    *object = static_cast<IConnectionPoint*>(this);
    Retain();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return Retain(); }
  STDMETHODIMP_(ULONG) Release() override { return Drop(); }

  STDMETHODIMP GetConnectionInterface(IID* id) override {
    if (!id) return E_POINTER;
    *id = id_;
    return S_OK;
  }
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override {
    return container ? container_.CopyTo(container) : E_POINTER;
  }
  STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
    if (!sink || !cookie) return E_POINTER;
    *cookie = 0;
    try {
      const HRESULT fault = Shared().Enter(owner_.Name() + L":Advise(" + InterfaceName(id_) + L')');
      if (FAILED(fault)) return fault;
      ComPtr<IDispatch> target;
      if (FAILED(sink->QueryInterface(id_, reinterpret_cast<void**>(target.GetAddressOf())))) {
        return CONNECT_E_CANNOTCONNECT;
      }
      *cookie = hub_->Advise(id_, &owner_, std::move(target));
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
  STDMETHODIMP Unadvise(DWORD cookie) override {
    return hub_->Unadvise(cookie, &owner_) ? S_OK : CONNECT_E_NOCONNECTION;
  }

 private:
  const Object& owner_;
  ComPtr<IConnectionPointContainer> container_;
  const GUID id_;
  std::shared_ptr<EventHub> hub_;
};

}  // namespace

DWORD EventHub::Advise(const GUID& id, const Object* owner, ComPtr<IDispatch> sink) {
  sinks_.push_back({id, nextCookie_, owner, std::move(sink)});
  return nextCookie_++;
}

bool EventHub::Unadvise(DWORD cookie, const Object* owner) {
  const auto found = std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& sink) {
    return sink.cookie == cookie && sink.owner == owner;
  });
  if (found == sinks_.end()) return false;
  // Out of the list before it is let go, which may call back in.
  const ComPtr<IDispatch> target = std::move(found->target);
  sinks_.erase(found);
  return true;
}

void EventHub::Forget(const Object* owner) {
  std::vector<ComPtr<IDispatch>> gone;
  for (Sink& sink : sinks_) {
    if (sink.owner == owner) gone.push_back(std::move(sink.target));
  }
  std::erase_if(sinks_, [&](const Sink& sink) { return sink.owner == owner; });
}

void EventHub::Raise(const GUID& id, DISPID event, std::vector<Variant> arguments) const {
  std::vector<VARIANT> reversed;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    reversed.push_back(argument->Get());
  }
  std::vector<DWORD> cookies;
  for (const Sink& sink : sinks_) {
    if (IsEqualGUID(sink.id, id)) cookies.push_back(sink.cookie);
  }
  for (const DWORD cookie : cookies) {
    const auto sink = std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& candidate) {
      return candidate.cookie == cookie;
    });
    if (sink == sinks_.end()) continue;
    const ComPtr<IDispatch> target = sink->target;
    DISPPARAMS given = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXCEPINFO info = {};
    UINT badArgument = 0;
    const HRESULT hr = target->Invoke(event, GUID{}, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &given,
                                      nullptr, &info, &badArgument);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    if (FAILED(hr)) {
      runtime_.NoteEventFailure(InterfaceName(id) + L'.' + std::to_wstring(event) + L" -> " +
                                std::to_wstring(hr));
    }
  }
}

bool EventHub::RaiseCancellable(const GUID& id, DISPID event,
                                std::vector<Variant> arguments) const {
  VARIANT_BOOL cancel = VARIANT_FALSE;
  arguments.push_back(Variant::BoolReference(&cancel));
  Raise(id, event, std::move(arguments));
  return cancel != VARIANT_FALSE;
}

ComPtr<IConnectionPoint> MakeConnectionPoint(const Object& owner,
                                             IConnectionPointContainer* container, const GUID& id,
                                             std::shared_ptr<EventHub> hub) {
  return Own<IConnectionPoint>(new ConnectionPoint(owner, container, id, std::move(hub)));
}

}  // namespace standin
