#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/kit/form.h"
#include "forms/kit/form_host.h"

namespace postrove {

// The open dialogs of one click: the save dialog, which is topmost, and those that it opens, below
// which it lies meanwhile.
class DialogStack {
 public:
  DialogStack(forms::FormHost& host, std::shared_ptr<forms::Form> saveDialog);
  DialogStack(const DialogStack&) = delete;
  DialogStack& operator=(const DialogStack&) = delete;

  forms::FormHost& Host() const { return host_; }

  // Shows the save dialog, or another one above it, and returns when it was unloaded. Throws Error
  // when no window can be made. Nothing is shown above a save dialog that is gone: Outlook can quit
  // during a message that comes before the other one.
  void ShowSaveDialog();
  void ShowAbove(const std::shared_ptr<forms::Form>& dialog);

  // The save dialog was activated: it is topmost, unless it lies below another dialog.
  void SaveDialogActivated();

  // True when the save dialog is gone, and with it whatever waits for its user: Outlook quits.
  bool IsOver() const { return saveDialog_->IsUnloaded(); }

  // Closes all of them, unanswered, the last opened first.
  void Close();

  void BringToFront() { host_.BringToFront(*saveDialog_); }

  // The save dialog below others for a scope, also below those of Windows and of Outlook. Scopes
  // nest; it rises again with the last one.
  class Lowered {
   public:
    explicit Lowered(DialogStack& dialogs);
    ~Lowered();
    Lowered(const Lowered&) = delete;
    Lowered& operator=(const Lowered&) = delete;

   private:
    DialogStack& dialogs_;
  };

 private:
  forms::FormHost& host_;
  const std::shared_ptr<forms::Form> saveDialog_;
  std::vector<std::shared_ptr<forms::Form>> above_;
  int lowered_ = 0;
};

}  // namespace postrove
