// bare_add_in.dll: the least that an add-in with the product's button can be.
#include <windows.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "outlook/add_ins.h"
#include "outlook/automation_object.h"
#include "outlook/ids.h"
#include "outlook/probe.h"

namespace postrove::bench {
namespace {

using namespace standin::probe;
using standin::ComPtr;
using standin::Variant;

Reply Good(Reply reply) {
  if (FAILED(reply.hr)) throw std::runtime_error("a call failed");
  return reply;
}

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

class AddIn final : public standin::AutomationObject<standin::Extensibility2> {
 public:
  AddIn() : AutomationObject(standin::kExtensibility2Id) {}

  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP OnConnection(IDispatch* application, standin::ConnectMode, IDispatch*,
                            SAFEARRAY**) override {
    for (const wchar_t* name : {L"Postrove.ini", L"Postrove.cnt"}) {
      ReadFileWhole((std::wstring(L"C:\\ProgramData\\Postrove\\") + name).c_str());
    }
    inspectors_ = Get(application, L"Inspectors").Object();
    Listen(inspectors_, standin::kInspectorsEventsId);
    heard_.back()->during = [this](DISPID, const DISPPARAMS& arguments) {
      try {
        PutButton(arguments.rgvarg[0].pdispVal);
      } catch (const std::exception& error) {
        std::fprintf(stderr, "bare_add_in: %s\n", error.what());
      }
    };
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
  void Listen(const ComPtr<IDispatch>& source, const GUID& events) {
    heard_.push_back(std::make_unique<Listener>(source, events, L"", log_));
    if (!heard_.back()->Hears()) throw std::runtime_error("no such events");
  }

  void PutButton(const ComPtr<IDispatch>& window) {
    const auto text = [](const wchar_t* value) { return Variant::Text(value); };
    log_.clear();
    const ComPtr<IDispatch> item = Good(Get(window, L"CurrentItem")).Object();
    Good(Get(item, L"Class"));
    Good(Get(item, L"Sent"));
    const ComPtr<IDispatch> bars = Good(Get(window, L"CommandBars")).Object();
    const ComPtr<IDispatch> earlier = Good(Call(bars, L"FindControl",
                                                List(Variant::Missing(), Variant::Missing(),
                                                     text(L"Bare Button"), Variant::Missing())))
                                          .Object();
    if (earlier) Good(Call(earlier, L"Delete"));
    const ComPtr<IDispatch> bar = Good(Get(bars, L"Item", List(text(L"Standard")))).Object();
    const ComPtr<IDispatch> controls = Good(Get(bar, L"Controls")).Object();
    const Reply made = Good(Call(controls, L"Add",
                                 List(Variant::Long(1), Variant::Missing(), Variant::Missing(),
                                      Variant::Long(4), Variant::Bool(true))));
    const ComPtr<IDispatch> button = As(made.Object(), standin::kCommandBarButtonId);
    Good(Put(button, L"Tag", text(L"Bare Button")));
    Good(Put(button, L"Caption", text(L"Postrove")));
    Good(Put(button, L"Style", Variant::Long(3)));
    Good(Put(button, L"FaceId", Variant::Long(3)));
    Good(Put(button, L"BeginGroup", Variant::Bool(true)));
    Good(Put(button, L"OnAction", text(L"!<Bare.Connect>")));
    Good(Put(button, L"Visible", Variant::Bool(true)));
    heard_.resize(1);  // of the last window
    Listen(button, standin::kCommandBarButtonEventsId);
    Listen(window, standin::kInspectorEventsId);
    Listen(item, standin::kItemEventsId);
  }

  ComPtr<IDispatch> inspectors_;
  std::vector<std::wstring> log_;
  std::vector<std::unique_ptr<Listener>> heard_;
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
