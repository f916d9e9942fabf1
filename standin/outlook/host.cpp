#include "outlook/host.h"

#include <objbase.h>

#include "outlook/application.h"
#include "outlook/ids.h"

namespace standin {
namespace {

std::shared_ptr<Session> StartSession(Options options) {
  const HRESULT hr = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (FAILED(hr)) throw HostError{hr, L"No apartment"};
  return std::make_shared<Session>(std::move(options));
}

}  // namespace

Host::Host(Options options) : session_(StartSession(std::move(options))) {}

Host::~Host() {
  try {
    Quit();
  } catch (...) {
    // What could not be closed goes with the process.
  }
  session_.reset();
  CoUninitialize();
}

std::vector<LoadResult> Host::LoadAddIns() {
  std::vector<LoadResult> results;
  for (const auto& addIn : RegisteredAddIns()) {
    session_->AddIns().push_back(addIn);
    results.push_back({addIn->progId, ConnectAddIn(*session_, *addIn, ConnectMode::kStartup)});
  }
  CompleteStartup(*session_);
  return results;
}

HRESULT Host::Connect(IUnknown* unknown, ConnectMode mode, bool requireShutdownNotification) {
  auto addIn = std::make_shared<AddIn>();
  addIn->progId = L"Given.AddIn";
  addIn->requireShutdownNotification = requireShutdownNotification;
  HRESULT hr = unknown->QueryInterface(kExtensibility2Id,
                                       reinterpret_cast<void**>(addIn->instance.GetAddressOf()));
  if (FAILED(hr)) return hr;
  session_->AddIns().push_back(addIn);
  hr = ConnectAddIn(*session_, *addIn, mode);
  if (SUCCEEDED(hr) && mode == ConnectMode::kStartup) CompleteStartup(*session_);
  return hr;
}

void Host::DisconnectAddIns() {
  for (const auto& addIn : session_->AddIns()) DisconnectAddIn(*session_, *addIn);
}

Inspector& Host::Open(MessageData message, bool sent, ItemKind kind, Editor editor) {
  Inspector* inspector = session_->Open(session_->NewItem(kind, std::move(message), sent), editor);
  if (!inspector) throw HostError{E_ABORT, L"Opening was cancelled."};
  PumpMessages();
  return *inspector;
}

Inspector& Host::OpenFolder(const std::wstring& folder, bool sent, Editor editor) {
  return Open(LoadMessage(folder), sent, ItemKind::kMail, editor);
}

bool Host::Click(Inspector& inspector, const std::wstring& tag) {
  session_->Activate(inspector);
  PumpMessages();
  return Execute(inspector, tag);
}

bool Host::Execute(Inspector& inspector, const std::wstring& tag) {
  const ControlPointer control = inspector.FindByTag(tag);
  if (!control || !control->visible || !control->enabled) return false;
  session_->Click(control);
  return true;
}

void Host::Quit() {
  if (quit_) return;
  quit_ = true;
  for (const auto& inspector : session_->OpenInspectors()) session_->Close(*inspector, false);
  PumpMessages();
  ShutDownAddIns(*session_);
  CoFreeUnusedLibrariesEx(0, 0);
}

ComPtr<IDispatch> Host::Application() const { return MakeApplicationObject(*session_); }

void PumpMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace standin
