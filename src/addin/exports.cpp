// The entry points of the in-process server. There is no DllMain of our own: nothing happens when
// the DLL is loaded or unloaded.
#include <windows.h>

#include <wrl/client.h>

#include "addin/ClassFactory.h"
#include "addin/Postrove_h.h"
#include "addin/modMain.h"
#include "addin/module.h"
#include "addin/registration.h"
#include "outlook/com/live_object.h"

using postrove::addin::Guarded;
using postrove::com::LiveObject;

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (clsid != __uuidof(::Connect)) return CLASS_E_CLASSNOTAVAILABLE;
  return Guarded([&] {
    Microsoft::WRL::ComPtr<postrove::addin::ClassFactory> factory(
        new postrove::addin::ClassFactory);
    return factory->QueryInterface(iid, object);
  });
}

// The module is in use while the host holds one of its objects or locks, and while it holds one of
// the host's: the tracker's references and event sinks count as well. When none is left, the shared
// objects are idle, and since a yes is followed by the unloading of the code that could release
// them, they go now. Should the DLL stay loaded after all, the next Connect makes them again.
STDAPI DllCanUnloadNow() {
  if (LiveObject::Count() != 0) return S_FALSE;
  const HRESULT released = Guarded([] {
    postrove::modMain::ReleaseAll();
    return S_OK;
  });
  return released == S_OK && LiveObject::Count() == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() { return Guarded(postrove::addin::RegisterServer); }

STDAPI DllUnregisterServer() { return Guarded(postrove::addin::UnregisterServer); }
