#pragma once

#include <memory>
#include <string>

#include "forms/dialog_form.h"

namespace postrove::forms {

// Events of the save dialog, in declaration order. The controller implements them.
class frmPostroveEvents {
 public:
  virtual void frmPostroveEvent_ButtonClicked(int) {}
  virtual void frmPostroveEvent_FormUnload(bool&) {}
  virtual void frmPostroveEvent_FormActivate() {}
  virtual void frmPostroveEvent_ProjectComboChange(const std::wstring&) {}
  virtual void frmPostroveEvent_ProjectComboClick() {}
  virtual void frmPostroveEvent_ProjectComboGotFocus() {}
  virtual void frmPostroveEvent_ProjectComboKeyPress(int&) {}
  virtual void frmPostroveEvent_ProjectComboLostFocus() {}
  virtual void frmPostroveEvent_SaveAsNameChanged() {}
  virtual void frmPostroveEvent_SaveAsNameGotFocus() {}
  virtual void frmPostroveEvent_SaveAsNameLostFocus() {}
  virtual void frmPostroveEvent_SaveFolderChanged() {}
  virtual void frmPostroveEvent_SaveFolderGotFocus() {}
  virtual void frmPostroveEvent_SaveFolderLostFocus() {}
  virtual void frmPostroveEvent_WebLabelClick(const std::wstring&) {}

 protected:
  ~frmPostroveEvents() = default;
};

// Indexes of the command-button array cmdPostrove.
enum PostroveButton {
  kMainButton = 0,
  kBrowseFolderButton = 1,
  kAddProjectButton = 2,
  kDefaultsButton = 3,
  kCloseButton = 4,
  kHelpButton = 5,
  kEditProjectButton = 8,
};

// Labels of the array lblFieldLabel; kFolderLabel and kNameLabel of lblAlert as well.
enum PostroveLabel { kProjectLabel = 0, kFolderLabel = 1, kNameLabel = 2 };

// The save dialog. It does no work: every control event goes to the events object. Behind the
// fields the main button comes first: whoever types needs nothing else.
class frmPostrove : public DialogForm {
 public:
  // `events` may be gone before the form: events are then dropped.
  explicit frmPostrove(std::weak_ptr<frmPostroveEvents> events);

  // In tab order.
  Control& lblFormTitle;
  Control& lblProjectLabel;  // lblFieldLabel(0)
  Control& cboPostrove;
  Control& lblFolderLabel;  // lblFieldLabel(1)
  Control& txtSaveFolder;
  Control& cmdBrowse;
  Control& lblNameLabel;  // lblFieldLabel(2)
  Control& txtSaveAsName;
  Control& lblFolderAlert;  // the markers of the required fields
  Control& lblNameAlert;
  Control& rtfFieldHints;
  Control& cmdMain;
  Control& cmdClose;
  Control& cmdAddProject;
  Control& cmdEditProject;
  Control& cmdDefaults;
  Control& cmdHelp;
  Control& lblWebSite;
  Control& lblVersion;

  const ControlArray lblAlert;  // by the label of the field
  const ControlArray cmdPostrove;

 private:
  Control& AddAction(int index, int left, int top, int width, const wchar_t* caption,
                     const wchar_t* tip, const Design& design);
  void Connect(const Raising<frmPostroveEvents>& raise);
};

}  // namespace postrove::forms
