#pragma once

#include <windows.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "forms/kit/form.h"
#include "gtest/gtest.h"
#include "outlook/dialog_windows.h"
#include "threads.h"
#include "windows/util/user.h"

namespace postrove::forms::testing {

using DialogUser = postrove::User;
using standin::WaitFor;

// What happened, written by the dialog's thread and waited for by the user's.
class EventLog {
 public:
  void Add(const std::string& event) {
    const std::lock_guard lock(mutex_);
    events_.push_back(event);
  }
  std::vector<std::string> All() const {
    const std::lock_guard lock(mutex_);
    return events_;
  }
  std::size_t Count() const { return All().size(); }
  bool Has(const std::string& event) const {
    for (const std::string& one : All()) {
      if (one == event) return true;
    }
    return false;
  }

 private:
  mutable standin::Mutex mutex_;
  std::vector<std::string> events_;
};

// A shown dialog as its user sees it. Used on the user's thread.
class Dialog {
 public:
  explicit Dialog(const std::wstring& caption) {
    WaitFor("the dialog", [&] {
      window_ = FindWindowW(L"PostroveForm", caption.c_str());
      return window_ && IsWindowVisible(window_);
    });
  }

  HWND Window() const { return window_; }

  // The window of a control: the children stand in the order of the controls.
  HWND Item(const Control& control) const {
    HWND child = GetWindow(window_, GW_CHILD);
    for (const auto& one : control.Owner().Controls()) {
      if (one.get() == &control) return child;
      child = GetWindow(child, GW_HWNDNEXT);
    }
    return nullptr;
  }

  // The text field of a control.
  HWND Edit(const Control& control) const {
    const HWND item = Item(control);
    return control.Kind() == ControlKind::ComboBox ? GetWindow(item, GW_CHILD) : item;
  }

  void Type(const Control& control, const std::wstring& text) const {
    for (const wchar_t character : text) PostMessageW(Edit(control), WM_CHAR, character, 1);
  }
  void Press(const Control& control, WORD key) const {
    PostMessageW(Edit(control), WM_KEYDOWN, key, 1);
  }
  void PressAlt(wchar_t letter) const { PostMessageW(Focus(), WM_SYSCHAR, letter, 1 | (1 << 29)); }
  void Click(const Control& control) const { PostMessageW(Item(control), BM_CLICK, 0, 0); }

  HWND Focus() const { return standin::FocusIn(window_); }
  void WaitForFocus(const Control& control) const {
    const HWND edit = Edit(control);
    WaitFor("the focus", [&] { return Focus() == edit; });
  }

  std::wstring TextOf(const Control& control) const { return standin::TextOf(Item(control)); }

  void Close() const {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    WaitForEnd();
  }
  void WaitForEnd() const {
    WaitFor("the end of the dialog", [this] { return !IsWindow(window_); });
  }

 private:
  HWND window_ = nullptr;
};

// Writes the events of every control, and of the form, into the log as "name event". The cancel
// button ends the form.
inline void Record(Form& form, EventLog& log) {
  for (const auto& item : form.Controls()) {
    Control& control = *item;
    std::string name(control.Name().begin(), control.Name().end());
    if (control.Index() >= 0) name += std::to_string(control.Index());
    control.onChange = [&log, &control, name] {
      log.Add(name + " change " + std::string(control.Text().begin(), control.Text().end()));
    };
    control.onClick = [&form, &log, &control, name] {
      log.Add(name + " click");
      if (control.isCancel) form.Unload();
    };
    control.onGotFocus = [&log, name] { log.Add(name + " got"); };
    control.onLostFocus = [&log, name] { log.Add(name + " lost"); };
  }
  form.onActivate = [&log] { log.Add("activate"); };
  form.onUnload = [&log](bool&) { log.Add("unload"); };
}

// A window of the test that can own dialogs; active when made.
class OwnerWindow {
 public:
  OwnerWindow()
      : window_(CreateWindowExW(0, L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10,
                                400, 300, nullptr, nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
  }
  ~OwnerWindow() { Destroy(); }
  OwnerWindow(const OwnerWindow&) = delete;
  OwnerWindow& operator=(const OwnerWindow&) = delete;

  HWND Window() const { return window_; }
  void Destroy() {
    if (window_) DestroyWindow(window_);
    window_ = nullptr;
  }

 private:
  HWND window_;
};

}  // namespace postrove::forms::testing
