// bare_add_in.dll: the least that an add-in with the product's button can be.
#include <windows.h>

#include <olectl.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation.h"
#include "outlook/add_ins.h"
#include "outlook/ids.h"

using standin::ComPtr;
using standin::Variant;

namespace postrove::bench {
namespace {

// One object of Automation that counts its references and does nothing else.
template <class Interface>
class Counted : public Interface {
 public:
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

 protected:
  virtual ~Counted() = default;
  HRESULT Answer(REFIID id, const GUID& own, void** object) {
    const bool known = id == IID_IUnknown || id == IID_IDispatch || id == own;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }

 private:
  ULONG references_ = 1;
};

class Sink final : public Counted<IDispatch> {
 public:
  Sink(const GUID& id, std::function<void(DISPPARAMS&)> heard)
      : id_(id), heard_(std::move(heard)) {}
  STDMETHODIMP QueryInterface(REFIID id, void** object) override { return Answer(id, id_, object); }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    try {
      heard_(*arguments);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "bare_add_in: %s\n", error.what());
      return E_FAIL;
    }
    return S_OK;
  }

 private:
  const GUID id_;
  const std::function<void(DISPPARAMS&)> heard_;
};

// A subscription that ends with its object.
class Heard {
 public:
  Heard(IDispatch* source, const GUID& events, std::function<void(DISPPARAMS&)> heard) {
    ComPtr<IConnectionPointContainer> points;
    Check(source->QueryInterface(IID_IConnectionPointContainer,
                                 reinterpret_cast<void**>(points.GetAddressOf())));
    Check(points->FindConnectionPoint(events, point_.GetAddressOf()));
    const auto sink = standin::Own(new Sink(events, std::move(heard)));
    Check(point_->Advise(sink.Get(), &cookie_));
  }
  ~Heard() { point_->Unadvise(cookie_); }
  Heard(const Heard&) = delete;
  Heard& operator=(const Heard&) = delete;

 private:
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

void ReadFileWhole(const wchar_t* path) {
  const HANDLE file =
      CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  char bytes[4096];
  DWORD count = 0;
  while (ReadFile(file, bytes, sizeof bytes, &count, nullptr) && count > 0) {
  }
  CloseHandle(file);
}

class AddIn final : public Counted<standin::Extensibility2> {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    return Answer(id, standin::kExtensibility2Id, object);
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP OnConnection(IDispatch* application, standin::ConnectMode, IDispatch*,
                            SAFEARRAY**) override {
    for (const wchar_t* name : {L"Postrove.ini", L"Postrove.cnt"}) {
      ReadFileWhole((std::wstring(L"C:\\ProgramData\\Postrove\\") + name).c_str());
    }
    inspectors_ = Get(application, L"Inspectors");
    heard_.push_back(std::make_unique<Heard>(
        inspectors_.Get(), standin::kInspectorsEventsId,
        [this](DISPPARAMS& arguments) { PutButton(arguments.rgvarg[0].pdispVal); }));
    return S_OK;
  }
  STDMETHODIMP OnDisconnection(standin::DisconnectMode, SAFEARRAY**) override {
    heard_.clear();
    inspectors_.Reset();
    return S_OK;
  }
  STDMETHODIMP OnAddInsUpdate(SAFEARRAY**) override { return S_OK; }
  STDMETHODIMP OnStartupComplete(SAFEARRAY**) override { return S_OK; }
  STDMETHODIMP OnBeginShutdown(SAFEARRAY**) override { return S_OK; }

 private:
  void PutButton(IDispatch* window) {
    const auto text = [](const wchar_t* value) { return Variant::Text(value); };
    const ComPtr<IDispatch> item = Get(window, L"CurrentItem");
    Call(item.Get(), L"Class", DISPATCH_PROPERTYGET);
    Call(item.Get(), L"Sent", DISPATCH_PROPERTYGET);
    const ComPtr<IDispatch> bars = Get(window, L"CommandBars");
    const Variant none = Variant::Missing(), tag = text(L"Bare Button");
    const Variant earlier = Call(bars.Get(), L"FindControl", DISPATCH_METHOD,
                                 {none.Get(), none.Get(), tag.Get(), none.Get()});
    if (earlier.Get().vt == VT_DISPATCH && earlier.Get().pdispVal) {
      Call(earlier.Get().pdispVal, L"Delete", DISPATCH_METHOD);
    }
    const Variant name = text(L"Standard");
    const ComPtr<IDispatch> bar = Get(bars.Get(), L"Item", {name.Get()});
    const ComPtr<IDispatch> controls = Get(bar.Get(), L"Controls");
    const Variant kind = Variant::Long(1), place = Variant::Long(4),
                  temporary = Variant::Bool(true);
    const Variant made = Call(controls.Get(), L"Add", DISPATCH_METHOD,
                              {kind.Get(), none.Get(), none.Get(), place.Get(), temporary.Get()});
    ComPtr<IDispatch> button;
    Check(made.Get().pdispVal->QueryInterface(standin::kCommandBarButtonId,
                                              reinterpret_cast<void**>(button.GetAddressOf())));
    const auto put = [&](const wchar_t* member, const Variant& value) {
      Call(button.Get(), member, DISPATCH_PROPERTYPUT, {value.Get()});
    };
    put(L"Tag", text(L"Bare Button"));
    put(L"Caption", text(L"Postrove"));
    put(L"Style", Variant::Long(3));
    put(L"FaceId", Variant::Long(3));
    put(L"BeginGroup", Variant::Bool(true));
    put(L"OnAction", text(L"!<Bare.Connect>"));
    put(L"Visible", Variant::Bool(true));
    heard_.resize(1);  // of the last window
    const auto nothing = [](DISPPARAMS&) {};
    heard_.push_back(
        std::make_unique<Heard>(button.Get(), standin::kCommandBarButtonEventsId, nothing));
    heard_.push_back(std::make_unique<Heard>(window, standin::kInspectorEventsId, nothing));
    heard_.push_back(std::make_unique<Heard>(item.Get(), standin::kItemEventsId, nothing));
  }

  ComPtr<IDispatch> inspectors_;
  std::vector<std::unique_ptr<Heard>> heard_;
};

class Factory final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    const bool known = id == IID_IUnknown || id == IID_IClassFactory;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 1; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID id, void** object) override {
    return standin::Own(new AddIn)->QueryInterface(id, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};

}  // namespace
}  // namespace postrove::bench

extern "C" __declspec(dllexport) HRESULT WINAPI
    DllGetClassObject(REFCLSID, REFIID id, void** object) {
  static postrove::bench::Factory factory;
  return factory.QueryInterface(id, object);
}
