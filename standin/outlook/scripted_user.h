#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>

namespace standin {

// What the user types, picks and answers.
struct UserScript {
  std::optional<std::wstring> project;
  std::optional<std::wstring> folder;
  std::optional<std::wstring> name;
  std::map<std::wstring, std::wstring> answers;     // title in lower case -> button without "&"
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
// Line breaks of a text are reported as " / ".
class ScriptedUser {
 public:
  explicit ScriptedUser(UserScript script);
  ~ScriptedUser();  // the user leaves
  ScriptedUser(const ScriptedUser&) = delete;
  ScriptedUser& operator=(const ScriptedUser&) = delete;

  // Dialogs that were answered or acted on.
  int Acts() const { return acts_; }

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
  HWND ScriptedButton(HWND dialog, const std::wstring& title) const;
  void Press(HWND button);
  void Picture(HWND dialog, const std::wstring& title);
  bool Settle();  // waits until the dialogs' thread handles messages again
  void Progress();
  void CheckPatience() const;

  const UserScript script_;
  HWND helper_ = nullptr;  // belongs to the dialogs' thread
  HANDLE stop_ = nullptr;  // set: the user is to leave
  HANDLE left_ = nullptr;  // set: the user has left
  std::atomic<LPARAM> settled_ = 0;
  LPARAM asked_ = 0;
  std::map<HWND, Known> known_;
  ULONGLONG progress_ = 0;
  std::atomic<int> acts_ = 0;
  int pictures_ = 0;
  std::thread thread_;
};

}  // namespace standin
