#pragma once

#include <windows.h>

#include <oledb.h>
#include <oledberr.h>
#include <wrl/client.h>

#include <atomic>
#include <utility>

#include "oledb/error.h"

namespace standin {

using Microsoft::WRL::ComPtr;

// The objects of this provider that are alive; the module cannot be unloaded while there are any.
inline std::atomic<long> openObjects{0};

// The identifier of an interface, for headers that do not declare it for __uuidof.
template <typename Interface>
inline constexpr const IID* kIid = nullptr;
template <>
inline constexpr const IID* kIid<IClassFactory> = &IID_IClassFactory;
template <>
inline constexpr const IID* kIid<IPersist> = &IID_IPersist;
template <>
inline constexpr const IID* kIid<ISupportErrorInfo> = &IID_ISupportErrorInfo;
template <>
inline constexpr const IID* kIid<IDBInitialize> = &IID_IDBInitialize;
template <>
inline constexpr const IID* kIid<IDBProperties> = &IID_IDBProperties;
template <>
inline constexpr const IID* kIid<IDBCreateSession> = &IID_IDBCreateSession;
template <>
inline constexpr const IID* kIid<IDBCreateCommand> = &IID_IDBCreateCommand;
template <>
inline constexpr const IID* kIid<IGetDataSource> = &IID_IGetDataSource;
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

// Identity, counting and error support of an object with these interfaces. Made by Make only.
template <typename First, typename... Others>
class ComObject : public First, public Others..., public ISupportErrorInfo {
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
    *object = nullptr;
    if (iid == IID_IUnknown) {
      *object = static_cast<First*>(this);
    } else {
      (Is<First>(iid, object) || ... || Is<Others>(iid, object)) ||
          Is<ISupportErrorInfo>(iid, object);
    }
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == *kIid<First> || (... || (iid == *kIid<Others>)) ? S_OK : S_FALSE;
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

  std::atomic<ULONG> references_{0};
};

template <typename Object, typename... Arguments>
ComPtr<Object> Make(Arguments&&... arguments) {
  return ComPtr<Object>(new Object(std::forward<Arguments>(arguments)...));
}

}  // namespace standin
