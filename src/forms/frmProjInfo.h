#pragma once

#include <memory>
#include <string>

#include "forms/kit/form.h"

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
class frmProjInfo : public Form {
 public:
  // `events` may be gone before the form: events are then dropped.
  explicit frmProjInfo(std::weak_ptr<frmProjInfoEvents> events);

  Control& chkProjActive;
  Control& rtfFieldHints;
  Control& lblWebSite;
  Control& lblFieldLabel(int index) const { return Find(L"lblFieldLabel", index); }
  Control& lblAlert(int index) const { return Find(L"lblAlert", index); }
  Control& txtProjInfo(int index) const { return Find(L"txtProjInfo", index); }
  Control& cmdBrowse(int index) const { return Find(L"cmdBrowse", index); }
  Control& cmdProjInfo(int index) const { return Find(L"cmdProjInfo", index); }

 private:
  Control& Design();
  void DesignFields();
  void DesignFoot();
  void Connect(std::weak_ptr<frmProjInfoEvents> events);
};

}  // namespace postrove::forms
