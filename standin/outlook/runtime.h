#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace standin {

class Tracked;

// References that were not given back.
struct Leak {
  std::wstring name;
  unsigned long references = 0;
};

// What all objects of one stand-in share: the version played, the list of living objects, the log
// of calls and the faults to inject. Every counted call passes Enter first: Invoke on an object,
// QueryInterface for anything but IUnknown, FindConnectionPoint and Advise.
// Thread: the one it was made on.
class Runtime {
 public:
  explicit Runtime(int version) : version_(version), thread_(GetCurrentThreadId()) {}
  virtual ~Runtime() = default;
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  int Version() const { return version_; }
  bool OnThread() const { return GetCurrentThreadId() == thread_; }

  // Logs and counts a call, with its arguments ("MailItem.SaveAs(C:\a.msg,3)"); answers the failure
  // that it must return, bare, or S_OK.
  HRESULT Enter(std::wstring call);

  // The n-th call from now on, counted from 1, fails once with a bare HRESULT.
  void FailCall(std::size_t n, HRESULT code);

  const std::vector<std::wstring>& Calls() const { return calls_; }
  void ForgetCalls() { calls_.clear(); }

  // An event sink answered an event with a failure, which Outlook ignores.
  void NoteEventFailure(std::wstring text) { eventFailures_.push_back(std::move(text)); }
  const std::vector<std::wstring>& EventFailures() const { return eventFailures_; }

  // The living objects, one entry per name with the sum of their references.
  std::vector<Leak> Living() const;

 private:
  friend class Tracked;

  const int version_;
  const DWORD thread_;
  std::vector<Tracked*> living_;
  std::vector<std::wstring> calls_;
  std::vector<std::wstring> eventFailures_;
  std::size_t failingCall_ = 0;  // 0 is none
  HRESULT failingCode_ = S_OK;
};

// A counted object with a name. It starts with one reference, which its maker owns, keeps its
// runtime alive and deletes itself with the last reference.
class Tracked {
 public:
  Tracked(std::shared_ptr<Runtime> runtime, std::wstring name);
  virtual ~Tracked();
  Tracked(const Tracked&) = delete;
  Tracked& operator=(const Tracked&) = delete;

  ULONG Retain() { return ++references_; }
  ULONG Drop();

  ULONG References() const { return references_; }
  const std::wstring& Name() const { return name_; }
  Runtime& Shared() const { return *runtime_; }
  const std::shared_ptr<Runtime>& SharedPointer() const { return runtime_; }

 private:
  std::shared_ptr<Runtime> runtime_;
  std::wstring name_;
  ULONG references_ = 1;
};

}  // namespace standin
