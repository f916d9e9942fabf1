#include "outlook/add_ins.h"

#include <algorithm>

#include "outlook/add_in_objects.h"
#include "outlook/application.h"
#include "outlook/ids.h"
#include "outlook/session.h"

namespace standin {
namespace {

constexpr wchar_t kAddInsKey[] = L"Software\\Microsoft\\Office\\Outlook\\Addins";
constexpr DWORD kLoadAtStartup = 3;
constexpr DWORD kNotLoaded = 2;
constexpr DISPID kStartupEvent = 61446;
constexpr DISPID kQuitEvent = 61447;
constexpr int kFastShutdownSince = 14;
constexpr int kLastToCountReferences = 11;

std::wstring KeyOf(const AddIn& addIn) { return std::wstring(kAddInsKey) + L'\\' + addIn.progId; }

std::wstring TextValue(const std::wstring& key, const wchar_t* name) {
  wchar_t text[512] = {};
  DWORD size = sizeof text - sizeof(wchar_t);
  const LSTATUS status =
      RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : std::wstring();
}

DWORD NumberValue(const std::wstring& key, const wchar_t* name) {
  DWORD value = 0;
  DWORD size = sizeof value;
  RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_REG_DWORD, nullptr, &value, &size);
  return value;
}

void MarkNotLoaded(const AddIn& addIn) {
  if (!addIn.registered) return;
  RegSetKeyValueW(HKEY_CURRENT_USER, KeyOf(addIn).c_str(), L"LoadBehavior", REG_DWORD, &kNotLoaded,
                  sizeof kNotLoaded);
}

// The custom array of a call: one element that tells how the host was started.
class Custom {
 public:
  Custom() : array_(SafeArrayCreateVector(VT_VARIANT, 1, 1)) {
    LONG index = 1;
    Variant started = Variant::Long(1);
    if (array_) SafeArrayPutElement(array_, &index, const_cast<VARIANT*>(&started.Get()));
  }
  ~Custom() { SafeArrayDestroy(array_); }
  Custom(const Custom&) = delete;
  Custom& operator=(const Custom&) = delete;

  SAFEARRAY** Get() { return &array_; }

 private:
  SAFEARRAY* array_;
};

HRESULT Create(AddIn& addIn) {
  CLSID id;
  HRESULT hr = CLSIDFromProgID(addIn.progId.c_str(), &id);
  if (FAILED(hr)) return hr;
  ComPtr<IUnknown> unknown;
  hr = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                        reinterpret_cast<void**>(unknown.GetAddressOf()));
  if (FAILED(hr)) return hr;
  return unknown->QueryInterface(kExtensibility2Id,
                                 reinterpret_cast<void**>(addIn.instance.GetAddressOf()));
}

}  // namespace

std::vector<std::shared_ptr<AddIn>> RegisteredAddIns() {
  std::vector<std::shared_ptr<AddIn>> result;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kAddInsKey, 0, KEY_READ, &key) != ERROR_SUCCESS) {
    return result;
  }
  wchar_t name[256];
  DWORD length = 256;
  for (DWORD i = 0;
       RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, length = 256) {
    auto addIn = std::make_shared<AddIn>();
    addIn->progId = name;
    addIn->registered = true;
    const std::wstring path = KeyOf(*addIn);
    if (NumberValue(path, L"LoadBehavior") != kLoadAtStartup) continue;
    addIn->friendlyName = TextValue(path, L"FriendlyName");
    addIn->description = TextValue(path, L"Description");
    addIn->requireShutdownNotification = NumberValue(path, L"RequireShutdownNotification") == 1;
    result.push_back(std::move(addIn));
  }
  RegCloseKey(key);
  return result;
}

HRESULT ConnectAddIn(Session& session, AddIn& addIn, ConnectMode mode) {
  HRESULT hr = addIn.instance ? S_OK : Create(addIn);
  if (SUCCEEDED(hr)) {
    const auto known = std::find_if(session.AddIns().begin(), session.AddIns().end(),
                                    [&](const auto& one) { return one.get() == &addIn; });
    const ComPtr<IDispatch> application = MakeApplicationObject(session);
    const ComPtr<IDispatch> self = MakeAddInObject(session, *known);
    Custom custom;
    hr = addIn.instance->OnConnection(application.Get(), mode, self.Get(), custom.Get());
  }
  addIn.connected = SUCCEEDED(hr);
  if (FAILED(hr)) {
    addIn.object.Reset();
    addIn.instance.Reset();
    MarkNotLoaded(addIn);
  }
  return hr;
}

void CompleteStartup(Session& session) {
  for (const auto& addIn : session.AddIns()) {
    Custom custom;
    if (addIn->connected) addIn->instance->OnStartupComplete(custom.Get());
  }
  session.ApplicationEvents()->Raise(kApplicationEventsId, kStartupEvent);
}

void DisconnectAddIn(Session& session, AddIn& addIn) {
  if (!addIn.connected) return;
  Custom custom;
  addIn.instance->OnDisconnection(DisconnectMode::kUserClosed, custom.Get());
  addIn.connected = false;
  addIn.object.Reset();
  addIn.instance.Reset();
  MarkNotLoaded(addIn);
  for (const auto& other : session.AddIns()) {
    Custom update;
    if (other->connected) other->instance->OnAddInsUpdate(update.Get());
  }
}

void ShutDownAddIns(Session& session) {
  session.ApplicationEvents()->Raise(kApplicationEventsId, kQuitEvent);
  // These versions count references: with one left they stay in memory and tell nobody any more.
  const bool stays = session.Version() <= kLastToCountReferences && !session.Living().empty();
  const auto informed = [&](const AddIn& addIn) {
    return addIn.connected && !stays &&
           (session.Version() < kFastShutdownSince || addIn.requireShutdownNotification);
  };
  for (const auto& addIn : session.AddIns()) {
    Custom custom;
    if (informed(*addIn)) addIn->instance->OnBeginShutdown(custom.Get());
  }
  for (const auto& addIn : session.AddIns()) {
    Custom custom;
    if (informed(*addIn)) {
      addIn->instance->OnDisconnection(DisconnectMode::kHostShutdown, custom.Get());
    }
    addIn->connected = false;
    addIn->object.Reset();
    addIn->instance.Reset();
  }
}

}  // namespace standin
