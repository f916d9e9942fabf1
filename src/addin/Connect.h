#pragma once

#include <windows.h>

#include <atomic>

#include "addin/Postrove_h.h"
#include "outlook/com/live_object.h"

namespace postrove::addin {

// The add-in class, "Postrove.Connect": Outlook's IDTExtensibility2, through the vtable and through
// IDispatch. It only passes on: Application to the tracker at connection, and the releases of the
// shared objects at the end.
//
// Errors are dropped: the IDTExtensibility2 methods answer S_OK whatever happens, because a failure
// would make Outlook switch the add-in off. The one exception is a call by IDispatch whose
// arguments do not fit.
class Connect final : public IDTExtensibility2, private com::LiveObject {
 public:
  Connect() = default;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  // Names without regard to case; parameter names are not known.
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) override;
  // `custom` may be left out and may be anything.
  STDMETHODIMP Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override;

  STDMETHODIMP OnConnection(IDispatch* Application, ext_ConnectMode ConnectMode,
                            IDispatch* AddInInst, SAFEARRAY** custom) override;
  STDMETHODIMP OnDisconnection(ext_DisconnectMode RemoveMode, SAFEARRAY** custom) override;
  STDMETHODIMP OnAddInsUpdate(SAFEARRAY** custom) override;
  STDMETHODIMP OnStartupComplete(SAFEARRAY** custom) override;
  STDMETHODIMP OnBeginShutdown(SAFEARRAY** custom) override;

 private:
  ~Connect() = default;

  std::atomic<ULONG> references_{0};
};

}  // namespace postrove::addin
