#include "oledb/com_object.h"
#include "oledb/data_source.h"
#include "oledb/registration.h"

namespace {

using namespace standin;

HMODULE thisModule;

class Factory : public ComObject<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    return Entry("CreateInstance", [&]() -> HRESULT {
      if (outer) return CLASS_E_NOAGGREGATION;
      return Give<DataSource>(iid, object);
    });
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    openObjects += lock ? 1 : -1;
    return S_OK;
  }
};

}  // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) thisModule = module;
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
  if (clsid != kProviderClass) return CLASS_E_CLASSNOTAVAILABLE;
  return Give<Factory>(iid, object);
}

STDAPI DllCanUnloadNow() { return openObjects == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
  return Entry("DllRegisterServer", [] { return Register(thisModule); });
}

STDAPI_(void) SetFaultHook(FaultHook* hook) { faultHook = hook; }
