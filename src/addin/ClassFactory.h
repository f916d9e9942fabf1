#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

#include "outlook/com/live_object.h"

namespace postrove::addin {

// Makes Connect objects. Runs modMain::Main before each one; when that fails, the object is made
// all the same, so that the add-in stays loaded and silent.
class ClassFactory final : public IClassFactory, private com::LiveObject {
 public:
  ClassFactory() = default;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  std::atomic<ULONG> references_{0};
};

}  // namespace postrove::addin
