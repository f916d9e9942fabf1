#pragma once

#include <functional>
#include <queue>
#include <string>
#include <vector>

#include "forms/kit/form.h"
#include "forms/kit/form_host.h"
#include "gtest/gtest.h"
#include "memory/Memory.h"

namespace postrove::testing {

// Shows no window: each shown form is handed to the next scripted user, who must leave it unloaded.
class ScriptedFormHost : public forms::FormHost {
 public:
  using User = std::function<void(forms::Form& form)>;

  void Expect(User user) { users_.push(std::move(user)); }
  // Who acts on the forms that nobody else waits for; without one they fail the test.
  User everyone;

  bool Finished() const { return users_.empty(); }

  void ShowModal(forms::Form& form) override {
    const memory::Scope host(false);
    shown.push_back(form.Caption());
    if (users_.empty() && !everyone) {
      ADD_FAILURE() << "A form was shown that no user waits for: " << form.Controls().size();
      form.Unload();
      return;
    }
    const User user = users_.empty() ? everyone : users_.front();
    if (!users_.empty()) users_.pop();
    form.UserActivated();
    user(form);
    EXPECT_TRUE(form.IsUnloaded()) << "the user left the form open";
    form.Unload();
  }
  void SetTopmost(forms::Form& form, bool topmost) override {
    Note(topmost ? L"topmost " : L"lower ", form.Name());
  }
  void BringToFront(forms::Form& form) override { Note(L"front ", form.Name()); }
  void SetFocus(forms::Control& control) override { Note(L"focus ", control.Name()); }
  void DropDownList(forms::Control& combo) override { Note(L"drop ", combo.Name()); }
  void SendTab(forms::Form& form) override { Note(L"tab ", form.Name()); }
  void SetWaitCursor(bool on) override { waiting += on ? 1 : -1; }

  std::uint32_t InputTime() const override { return inputTime(); }

  std::function<std::uint32_t()> inputTime = [] { return 0u; };
  std::vector<std::wstring> shown;
  std::vector<std::wstring> actions;
  int waiting = 0;

 private:
  void Note(const wchar_t* action, const std::wstring& name) {
    const memory::Scope host(false);
    actions.push_back(action + name);
  }

  std::queue<User> users_;
};

}  // namespace postrove::testing
