#pragma once

#include <windows.h>

#include <oaidl.h>

namespace standin {

// What an object of Automation that others call through one interface needs besides its members:
// identity, counting, and no type information. Made with one reference, which is the maker's.
template <class Interface>
class AutomationObject : public Interface {
 public:
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override {
    const bool known = id == IID_IUnknown || id == IID_IDispatch || id == own_;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    ++references_;
    return S_OK;
  }
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
  explicit AutomationObject(const GUID& own) : own_(own) {}
  virtual ~AutomationObject() = default;

 private:
  const GUID own_;
  ULONG references_ = 1;
};

}  // namespace standin
