#pragma once

#include <memory>
#include <string>
#include <vector>

#include "outlook/add_ins.h"
#include "outlook/session.h"

namespace standin {

// The tag of the add-in's button.
inline constexpr wchar_t kAddInButtonTag[] = L"Quillion Postrove Button";

// What became of one registered add-in.
struct LoadResult {
  std::wstring progId;
  HRESULT result = S_OK;
};

// A stand-in Outlook for one run: load add-ins, open items, click, close, quit, look for leaks.
// Thread: the one it was made on, which it makes a single-threaded apartment.
class Host {
 public:
  explicit Host(Options options = {});
  ~Host();  // quits when that was not done
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Loads the add-ins registered for the current user as at start-up. One result per add-in; a
  // failed one is marked as not loaded in the registry, as Outlook does.
  std::vector<LoadResult> LoadAddIns();

  // Connects a given add-in. In mode kStartup OnStartupComplete follows, in others it does not.
  HRESULT Connect(IUnknown* addIn, ConnectMode mode, bool requireShutdownNotification = false);

  // The user unticks every add-in: OnDisconnection only, Outlook goes on.
  void DisconnectAddIns();

  // Opens an item in a window. `sent`: received or sent before; otherwise it is being composed.
  // Throws HostError when a sink cancelled. The inspector stays addressable after it is closed.
  Inspector& Open(MessageData message, bool sent = true, ItemKind kind = ItemKind::kMail,
                  Editor editor = Editor::kFromMessage);
  // The same for a mail item read from a message folder.
  Inspector& OpenFolder(const std::wstring& folder, bool sent = true,
                        Editor editor = Editor::kFromMessage);

  // A press of the add-in's button: activates the inspector, then clicks. False when the inspector
  // has no such button or it is hidden or disabled.
  bool Click(Inspector& inspector, const std::wstring& tag = kAddInButtonTag);
  // The same without activating the inspector, as an assistive tool does.
  bool Execute(Inspector& inspector, const std::wstring& tag = kAddInButtonTag);

  void Activate(Inspector& inspector) { session_->Activate(inspector); }
  bool Close(Inspector& inspector) { return session_->Close(inspector, true); }
  // The user closes a window and then answers "Save changes?" with Cancel: it stays.
  void CloseAndCancel(Inspector& inspector) {
    session_->Close(inspector, true, Session::SaveChanges::kCancel);
  }

  // Closes all inspectors, tells the add-ins as the version does, lets them go and unloads what can
  // be unloaded. Once.
  void Quit();

  // References to the host's objects that are still held, by name.
  std::vector<Leak> Leaks() const { return session_->Living(); }

  // Calls of members in order, "Inspector.CommandBars", "MailItem.SaveAs(C:\a.msg,3)",
  // "MailItem.Subject=Text", and of QueryInterface, FindConnectionPoint and Advise: everything that
  // counts for FailCall.
  const std::vector<std::wstring>& Calls() const { return session_->Calls(); }
  std::size_t CallCount() const { return session_->Calls().size(); }

  // Forgets all calls, files and messages so far, for long runs.
  void Forget() { session_->Forget(); }

  // See Runtime.
  void FailCall(std::size_t n, HRESULT code) { session_->FailCall(n, code); }

  const std::vector<std::wstring>& SavedFiles() const { return session_->SavedFiles(); }
  const std::vector<std::wstring>& SentFiles() const { return session_->SentFiles(); }
  const std::vector<MessageData>& SentMessages() const { return session_->SentMessages(); }

  // A new object of the application, for tests that probe it.
  ComPtr<IDispatch> Application() const;
  Session& Core() const { return *session_; }

 private:
  std::shared_ptr<Session> session_;
  bool quit_ = false;
};

// Dispatches the messages that wait for this thread.
void PumpMessages();

}  // namespace standin
