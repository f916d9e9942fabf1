#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

// A late-bound host object for tests: strict about names and reference counts, with one connection
// point. It lives on the test's stack; References() is 1 when nobody else holds it.
class FakeServer final : public IDispatch,
                         public IConnectionPointContainer,
                         public IConnectionPoint {
 public:
  // Arguments stay as the caller passed them: in reverse order.
  using Member = std::function<HRESULT(WORD flags, DISPPARAMS& parameters, VARIANT* result,
                                       EXCEPINFO* exception)>;

  std::map<std::wstring, Member> members;
  GUID eventInterface{};          // of the connection point
  HRESULT adviseResult = S_OK;    // a failure refuses, after having taken and let go the sink
  bool keepRefusedSink = false;   // ... or keeps it, as a faulty host
  std::vector<IDispatch*> sinks;  // held
  std::vector<ULONG> referencesAtUnadvise;

  FakeServer() = default;
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;
  ~FakeServer() {
    for (IDispatch* sink : sinks) sink->Release();
  }

  ULONG References() const { return references_; }
  IDispatch* Dispatch() { return this; }

  // A getter or method that answers one object, whatever it is asked.
  static Member Returns(FakeServer& object) {
    return [&object](WORD, DISPPARAMS&, VARIANT* result, EXCEPINFO*) {
      result->vt = VT_DISPATCH;
      result->pdispVal = object.Dispatch();
      object.AddRef();
      return S_OK;
    };
  }

  // Raises an event to every sink; arguments in reverse order. The last sink's answer.
  HRESULT Fire(DISPID id, std::vector<VARIANT> reversed) {
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    HRESULT result = S_OK;
    const std::vector<IDispatch*> targets = sinks;
    for (IDispatch* sink : targets) sink->AddRef();
    for (IDispatch* sink : targets) {
      result = sink->Invoke(id, GUID{}, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
      sink->Release();
    }
    return result;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch)) {
      *object = static_cast<IDispatch*>(this);
    } else if (iid == __uuidof(IConnectionPointContainer)) {
      *object = static_cast<IConnectionPointContainer*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }

  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    DISPID id = 100;
    for (const auto& [name, member] : members) {
      if (count == 1 && name == names[0]) {
        *ids = id;
        return S_OK;
      }
      ++id;
    }
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    if (id < 100 || id >= 100 + static_cast<DISPID>(members.size())) return DISP_E_MEMBERNOTFOUND;
    return std::next(members.begin(), id - 100)->second(flags, *parameters, result, exception);
  }

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
    *point = nullptr;
    if (iid != eventInterface) return CONNECT_E_NOCONNECTION;
    *point = this;
    AddRef();
    return S_OK;
  }

  STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
    void* events = nullptr;
    if (FAILED(sink->QueryInterface(eventInterface, &events))) return CONNECT_E_CANNOTCONNECT;
    auto* dispatch = static_cast<IDispatch*>(events);
    if (FAILED(adviseResult) && !keepRefusedSink) {
      dispatch->Release();
      return adviseResult;
    }
    *cookie = ++lastCookie_;
    sinks.push_back(dispatch);
    cookies_.push_back(*cookie);
    return adviseResult;
  }
  STDMETHODIMP Unadvise(DWORD cookie) override {
    referencesAtUnadvise.push_back(references_);
    for (std::size_t i = 0; i < sinks.size(); ++i) {
      if (cookies_[i] != cookie) continue;
      IDispatch* sink = sinks[i];
      sinks.erase(sinks.begin() + static_cast<std::ptrdiff_t>(i));
      cookies_.erase(cookies_.begin() + static_cast<std::ptrdiff_t>(i));
      sink->Release();
      return S_OK;
    }
    return CONNECT_E_NOCONNECTION;
  }
  STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 private:
  ULONG references_ = 1;
  DWORD lastCookie_ = 0;
  std::vector<DWORD> cookies_;  // of the sinks
};
