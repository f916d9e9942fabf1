#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <string>
#include <vector>

#include "outlook/variant.h"

namespace standin {

class Session;

enum class ConnectMode : long { kAfterStartup = 0, kStartup = 1, kExternal = 2, kCommandLine = 3 };
enum class DisconnectMode : long { kHostShutdown = 0, kUserClosed = 1 };

// _IDTExtensibility2, called through its vtable.
struct Extensibility2 : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* application, ConnectMode mode,
                                                 IDispatch* addIn, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnDisconnection(DisconnectMode mode, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) = 0;

 protected:
  ~Extensibility2() = default;
};

// One add-in, connected or not.
struct AddIn {
  std::wstring progId;
  std::wstring friendlyName;
  std::wstring description;
  bool registered = false;  // has a key under Outlook's Addins
  bool requireShutdownNotification = false;
  bool connected = false;
  ComPtr<Extensibility2> instance;
  ComPtr<IDispatch> object;  // COMAddIn.Object, set by the add-in
};

// The add-ins registered for the current user whose LoadBehavior is 3, not yet created.
std::vector<std::shared_ptr<AddIn>> RegisteredAddIns();

// Creates the add-in when it has no instance and connects it. A failure marks a registered add-in
// as not loaded (LoadBehavior 2) and is answered.
HRESULT ConnectAddIn(Session& session, AddIn& addIn, ConnectMode mode);

// OnStartupComplete of every connected add-in, then the application's Startup event.
void CompleteStartup(Session& session);

// The user unticks the add-in in the list of COM add-ins.
void DisconnectAddIn(Session& session, AddIn& addIn);

// Outlook ends: the Quit event; then, in versions before 14 or when the add-in asks for it,
// OnBeginShutdown and OnDisconnection. Lets the add-ins go.
void ShutDownAddIns(Session& session);

}  // namespace standin
