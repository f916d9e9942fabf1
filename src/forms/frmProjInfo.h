#pragma once

#include <memory>
#include <string>

#include "forms/dialog_form.h"

namespace postrove::forms {

// Events of the project information dialog, in declaration order. The controller implements them.
class frmProjInfoEvents {
 public:
  virtual void frmProjInfoEvent_ButtonClicked(int) {}
  virtual void frmProjInfoEvent_ButtonMouseDown(int, int, int, float, float) {}
  virtual void frmProjInfoEvent_BrowseClicked(int) {}
  virtual void frmProjInfoEvent_ProjInfoFieldChange(int) {}
  virtual void frmProjInfoEvent_ProjInfoFieldGotFocus(int) {}
  virtual void frmProjInfoEvent_ProjInfoFieldLostFocus(int) {}
  virtual void frmProjInfoEvent_ProjInfoWebLabelClick(const std::wstring&) {}
  virtual void frmProjInfoEvent_ProjActiveClicked() {}
  virtual void frmProjInfoEvent_FormActivate() {}

 protected:
  ~frmProjInfoEvents() = default;
};

// Indexes of txtProjInfo, lblFieldLabel and lblAlert.
enum ProjInfoField { kProjInfoNumber = 0, kProjInfoName = 1, kProjInfoFolder = 2, kProjInfoFields };

// Indexes of cmdProjInfo.
enum ProjInfoButton { kProjInfoSave = 0, kProjInfoCancel = 1, kProjInfoHelp = 2 };

// The project information dialog, which adds or edits a project. It does no work: every control
// event goes to the events object. Only its buttons end it, and its title bar as Cancel.
class frmProjInfo : public DialogForm {
 public:
  // `events` may be gone before the form: events are then dropped.
  explicit frmProjInfo(std::weak_ptr<frmProjInfoEvents> events);

  // In tab order.
  Control& lblFormTitle;
  Control& lblNumber;
  Control& txtNumber;
  Control& lblNumberAlert;
  Control& lblName;
  Control& txtName;
  Control& lblNameAlert;
  Control& lblFolder;
  Control& txtFolder;
  Control& cmdBrowseFolder;
  Control& lblFolderAlert;
  Control& chkProjActive;
  Control& rtfFieldHints;
  Control& cmdSave;
  Control& cmdCancel;
  Control& cmdHelp;
  Control& lblWebSite;

  const ControlArray lblFieldLabel;
  const ControlArray txtProjInfo;
  const ControlArray lblAlert;
  const ControlArray cmdBrowse;
  const ControlArray cmdProjInfo;

 private:
  Control& AddCaption(int index, int top, const wchar_t* text, const wchar_t* tip);
  Control& AddAction(int index, int left, const wchar_t* caption, const Design& design);
  void Connect(const Raising<frmProjInfoEvents>& raise);
};

}  // namespace postrove::forms
