#pragma once

#include <memory>

#include "forms/dialog_form.h"

namespace postrove::forms {

// Events of the folder message dialog, in declaration order. The controller implements them.
class frmFolderMessageEvents {
 public:
  virtual void frmFolderMessageEvent_ButtonClicked(int) {}
  virtual void frmFolderMessageEvent_ButtonMouseDown(int, int, int, float, float) {}
  virtual void frmFolderMessageEvent_FolderMessageFieldChange(int) {}
  virtual void frmFolderMessageEvent_FolderMessageFieldGotFocus(int) {}
  virtual void frmFolderMessageEvent_FolderMessageFieldLostFocus(int) {}
  virtual void frmFolderMessageEvent_FormActivate() {}
  virtual void frmFolderMessageEvent_FormHelp() {}

 protected:
  ~frmFolderMessageEvents() = default;
};

// States a problem with a file or folder name and lets the user correct it. The caller writes
// message, name, instructions and caption; the answer comes back through the controller.
class frmFolderMessage : public DialogForm {
 public:
  explicit frmFolderMessage(std::weak_ptr<frmFolderMessageEvents> events);

  // In tab order.
  Control& txtMessage;
  Control& lblWarning;  // before the name, which it describes
  Control& txtName;
  Control& cmdOk;
  Control& cmdCancel;

  const ControlArray txtFolderMessage;
  const ControlArray cmdFolderMessage;
};

}  // namespace postrove::forms
