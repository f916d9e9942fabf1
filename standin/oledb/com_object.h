#pragma once

#include <windows.h>

#include <oledb.h>
#include <oledberr.h>
#include <wrl/client.h>

#include <utility>

#include "oledb/error.h"

namespace standin {

using Microsoft::WRL::ComPtr;

// The objects of this provider that are alive; the module cannot be unloaded while there are any.
inline long openObjects = 0;

// The identifier of an interface, for headers that do not declare it for __uuidof.
template <typename Interface>
inline constexpr const IID* kIid = nullptr;
template <>
inline constexpr const IID* kIid<IClassFactory> = &IID_IClassFactory;
template <>
inline constexpr const IID* kIid<IDBInitialize> = &IID_IDBInitialize;
template <>
inline constexpr const IID* kIid<IDBProperties> = &IID_IDBProperties;
template <>
inline constexpr const IID* kIid<IDBCreateSession> = &IID_IDBCreateSession;
template <>
inline constexpr const IID* kIid<IDBCreateCommand> = &IID_IDBCreateCommand;
template <>
inline constexpr const IID* kIid<ICommandText> = &IID_ICommandText;
template <>
inline constexpr const IID* kIid<ICommandProperties> = &IID_ICommandProperties;
template <>
inline constexpr const IID* kIid<IAccessor> = &IID_IAccessor;
template <>
inline constexpr const IID* kIid<IColumnsInfo> = &IID_IColumnsInfo;
template <>
inline constexpr const IID* kIid<IRowset> = &IID_IRowset;

// Identity and counting of an object with these interfaces, for one thread. Made by Give only.
template <typename First, typename... Others>
class ComObject : public First, public Others... {
 public:
  ComObject() { ++openObjects; }
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_INVALIDARG;
    *object = iid == IID_IUnknown ? static_cast<First*>(this) : nullptr;
    (*object || ... || Is<Others>(iid, object)) || Is<First>(iid, object);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 protected:
  virtual ~ComObject() { --openObjects; }

 private:
  template <typename Interface>
  bool Is(REFIID iid, void** object) {
    if (iid != *kIid<Interface>) return false;
    *object = static_cast<Interface*>(this);
    return true;
  }

  ULONG references_ = 0;
};

// Hands a new object out by one of its interfaces.
template <typename Object, typename... Arguments>
HRESULT Give(REFIID iid, void** object, Arguments&&... arguments) {
  return ComPtr<Object>(new Object(std::forward<Arguments>(arguments)...))
      ->QueryInterface(iid, object);
}

}  // namespace standin
