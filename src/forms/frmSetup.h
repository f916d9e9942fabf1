#pragma once

#include <memory>
#include <string>

#include "forms/dialog_form.h"

namespace postrove::forms {

// Events of the defaults setup dialog, in declaration order. The controller implements them.
class frmSetupEvents {
 public:
  virtual void frmSetupEvent_BrowseClicked(int) {}
  virtual void frmSetupEvent_ButtonClicked(int) {}
  virtual void frmSetupEvent_SetupDbTypeOptionClick() {}
  virtual void frmSetupEvent_SetupFieldChange(int) {}
  virtual void frmSetupEvent_SetupFieldGotFocus(int) {}
  virtual void frmSetupEvent_SetupFieldLostFocus(int) {}
  virtual void frmSetupEvent_SetupListChange(const std::wstring&) {}
  virtual void frmSetupEvent_SetupListClick() {}
  virtual void frmSetupEvent_SetupListKeyPress(int&, const std::wstring&) {}
  virtual void frmSetupEvent_SetupWebLabelClick(const std::wstring&) {}
  virtual void frmSetupEvent_FormEscape() {}

 protected:
  ~frmSetupEvents() = default;
};

// Fields: indexes of txtSetup, lblAlert and lblFieldLabel. The work-unit word is in cboWorkType.
// The two delimiters share lblFieldLabel(1). The pair optDbType counts as one more field.
enum SetupField {
  kSetupServerFolder = 0,
  kSetupProjectDelimiter = 1,
  kSetupSubjectDelimiter = 2,
  kSetupEmailFolder = 3,
  kSetupDatabase = 4,
  kSetupSettings = 5,
  kSetupWorkType = 6,
  kSetupSharing = 7,
};

// Labels of the array lblFieldLabel that name no field of that index.
enum SetupLabel { kSetupDelimiterLabel = 1, kSetupDbTypeLabel = 2, kSetupExampleLabel = 7 };

// Indexes of the picture buttons cmdBrowse.
enum SetupBrowse {
  kSetupBrowseServerFolder = 0,
  kSetupBrowseEmailFolder = 1,
  kSetupBrowseDatabase = 2,
  kSetupBrowseSettings = 3,
};

// Indexes of cmdSetup and of optDbType.
enum SetupButton { kSetupReturn = 0, kSetupHelp = 1 };
enum SetupDbType { kSetupOwnDb = 0, kSetupSiblingDb = 1 };

// The defaults setup dialog. It does no work: every control event goes to the events object. Only
// the return button ends it (Enter and the close box press it), because its listener may refuse.
class frmSetup : public DialogForm {
 public:
  // `events` may be gone before the form: events are then dropped.
  explicit frmSetup(std::weak_ptr<frmSetupEvents> events);

  // The row of a folder: its controls in tab order.
  struct FolderRow {
    FolderRow(frmSetup& form, int field, int row, const wchar_t* caption, const wchar_t* tip,
              int browse, const wchar_t* browseCaption);
    Control& label;
    Control& field;
    Control& browse;
    Control& alert;
  };

  // In tab order.
  Control& lblFormTitle;
  Control& lblDbType;
  Control& fraDbOption;
  Control& optOwnDb;
  Control& optSiblingDb;
  Control& fraSettings;
  const FolderRow database;
  const FolderRow settings;
  const FolderRow serverFolder;
  const FolderRow emailFolder;
  Control& lblWorkType;
  Control& cboWorkType;
  Control& lblWorkTypeAlert;
  Control& lblDelimiters;
  Control& lblUnitNumber;  // the tags of these keep the designed text, with "~Unit~" where the
  Control& txtProjDelim;   // work-unit word goes
  Control& lblUnit;
  Control& txtSubjDelim;
  Control& lblSubject;
  Control& lblProjDelimAlert;
  Control& lblSubjDelimAlert;
  Control& lblExample;
  Control& lblSavePathSample;
  Control& rtfFieldHints;
  Control& cmdReturn;
  Control& cmdHelp;
  Control& lblPostroveSite;
  Control& lblQuillionSite;

  const ControlArray lblFieldLabel;
  const ControlArray lblAlert;
  const ControlArray lblDelimLabel;
  const ControlArray lblWebSite;
  const ControlArray txtSetup;
  const ControlArray optDbType;
  const ControlArray cmdBrowse;
  const ControlArray cmdSetup;

  // Shows or hides the row of the settings location and moves what lies below so that no gap
  // stays: the rows close up, and the hint box takes or gives the space.
  void ShowSettingsLocation(bool show);

 private:
  Control& AddCaption(int index, int row, const wchar_t* text, const wchar_t* tip = L"");
  Control& AddOption(int index, const wchar_t* caption, const wchar_t* tip);
  Control& AddSettingAlert(int index, int left, int row, unsigned anchors);
  Control& AddWord(int index, int left, int width, const wchar_t* text, const Design& design);
  Control& AddDelimiter(int index, int left, const wchar_t* tip);
  void Connect(const Raising<frmSetupEvents>& raise);
};

}  // namespace postrove::forms
