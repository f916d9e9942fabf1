#pragma once

#include <cstdint>

namespace postrove::forms {

class Control;
class Form;

// Shows forms. The product's renderer makes real windows; a test scripts a user.
// Thread: Outlook's user-interface thread only.
class FormHost {
 public:
  virtual ~FormHost() = default;

  // Shows the form, owned by and modal to the window that is active, and returns when the form was
  // unloaded. When its owner's window is destroyed meanwhile (a sent mail closes its inspector),
  // the form's windows survive. Throws Error when no window can be made; the form is then not
  // shown and not unloaded.
  virtual void ShowModal(Form& form) = 0;

  // Puts the shown form above all windows, or back among them. Nothing when it is not shown.
  virtual void SetTopmost(Form& form, bool topmost) = 0;

  // Brings the shown form to the front and gives it the focus. Nothing when it is not shown.
  virtual void BringToFront(Form& form) = 0;

  // Gives the focus to a control of a shown form. Nothing when it is not shown or cannot take it.
  virtual void SetFocus(Control& control) = 0;

  // Drops down the list of a combo box.
  virtual void DropDownList(Control& combo) = 0;

  // Moves the focus on as the Tab key does.
  virtual void SendTab(Form& form) = 0;

  // The wait cursor. It is on until it was switched off as often as on; a form shown meanwhile
  // has the usual cursor while it is up.
  virtual void SetWaitCursor(bool on) = 0;

  // Tells what the user does from what was done before: the same as long as the thread handles one
  // input.
  virtual std::uint32_t InputTime() const = 0;
};

}  // namespace postrove::forms
