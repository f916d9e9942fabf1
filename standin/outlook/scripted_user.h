#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "threads.h"

namespace standin {

// What the user types, picks and answers.
struct UserScript {
  std::optional<std::wstring> project;
  std::optional<std::wstring> folder;
  std::optional<std::wstring> name;
  // Title in lower case -> button without "&", or "BUTTON:NAME" with the name to type first into
  // the dialog's last text box. Several of one title are given in order, the last one again and
  // again.
  std::multimap<std::wstring, std::wstring> answers;
  std::wstring screenshots;                         // folder for pictures; empty: none
  std::function<void(const std::wstring&)> report;  // one line; called on the user's thread
  DWORD patience = 60000;  // milliseconds without progress before the process is ended
};

// A user at the dialogs of the thread that makes it. A helper thread watches for dialogs and acts
// on them through their windows:
// - message boxes are reported as "Message: TITLE | TEXT" and answered: the scripted button, else
//   OK, No or Cancel;
// - the dialog with a combo box is the save dialog: it is filled and its default button pressed;
//   when it is still open after that work ended, it is closed;
// - other dialogs are reported with the text of their first text box and answered: the scripted
//   button, else OK for "Folder Not Found" and Cancel for others.
// An answer with a button or a name that the dialog has no place for is reported as "Fault: ...",
// and the dialog is then answered as if there were none; answers that were never given are reported
// as "Unused: TITLE=ANSWER" when the user leaves.
// Line breaks of a text are reported as " / ".
class ScriptedUser {
 public:
  explicit ScriptedUser(UserScript script);
  ~ScriptedUser();  // the user leaves
  ScriptedUser(const ScriptedUser&) = delete;
  ScriptedUser& operator=(const ScriptedUser&) = delete;

  // Dialogs that were answered or acted on.
  int Acts() const { return acts_; }
  // True when a "Fault:" was reported.
  bool Faulty() const { return faulty_; }

 private:
  struct Known {
    int presses = 0;
  };

  static LRESULT CALLBACK HelperProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Watch();
  void Act(HWND dialog);
  void FillSaveDialog(HWND dialog);
  void TypeInto(HWND edit, const std::wstring& text);
  void Answer(HWND dialog);
  HWND ScriptedButton(HWND dialog, const std::wstring& title);
  void Replace(HWND edit, const std::wstring& text);
  void Fault(const std::wstring& text);
  void Press(HWND button);
  void Picture(HWND dialog, const std::wstring& title);
  bool Settle();  // waits until the dialogs' thread handles messages again
  void Progress();
  void CheckPatience() const;

  const UserScript script_;
  HWND helper_ = nullptr;  // belongs to the dialogs' thread
  HANDLE stop_ = nullptr;  // set: the user is to leave
  std::atomic<LPARAM> settled_ = 0;
  LPARAM asked_ = 0;
  std::map<HWND, Known> known_;
  ULONGLONG progress_ = 0;
  std::multimap<std::wstring, std::wstring> answers_;  // as scripted, less those given
  std::set<std::wstring> answered_;                    // titles whose last answer was given
  std::atomic<int> acts_ = 0;
  std::atomic<bool> faulty_ = false;
  int pictures_ = 0;
  std::optional<Thread> thread_;
};

}  // namespace standin
