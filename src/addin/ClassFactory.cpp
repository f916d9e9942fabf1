#include "addin/ClassFactory.h"

#include <wrl/client.h>

#include "addin/Connect.h"
#include "addin/modMain.h"
#include "addin/module.h"

namespace postrove::addin {

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  if (iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory)) {
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() { return ++references_; }

STDMETHODIMP_(ULONG) ClassFactory::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  Guarded([] {
    modMain::Main();
    return S_OK;
  });
  return Guarded([&] {
    Microsoft::WRL::ComPtr<Connect> connect(new Connect);
    return connect->QueryInterface(iid, object);
  });
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
  if (lock) {
    com::LiveObject::Lock();
  } else {
    com::LiveObject::Unlock();
  }
  return S_OK;
}

}  // namespace postrove::addin
