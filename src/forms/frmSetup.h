#pragma once

#include <memory>
#include <string>

#include "forms/kit/form.h"

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
class frmSetup : public Form {
 public:
  // `events` may be gone before the form: events are then dropped.
  explicit frmSetup(std::weak_ptr<frmSetupEvents> events);

  Control& fraDbOption;
  Control& fraSettings;
  Control& cboWorkType;
  Control& lblSavePathSample;
  Control& rtfFieldHints;
  Control& lblFieldLabel(int index) const { return Find(L"lblFieldLabel", index); }
  Control& lblAlert(int index) const { return Find(L"lblAlert", index); }
  // Its tag keeps the designed text, with "~Unit~" where the work-unit word goes.
  Control& lblDelimLabel(int index) const { return Find(L"lblDelimLabel", index); }
  Control& lblWebSite(int index) const { return Find(L"lblWebSite", index); }
  Control& txtSetup(int index) const { return Find(L"txtSetup", index); }
  Control& optDbType(int index) const { return Find(L"optDbType", index); }
  Control& cmdBrowse(int index) const { return Find(L"cmdBrowse", index); }
  Control& cmdSetup(int index) const { return Find(L"cmdSetup", index); }

  // Shows or hides the row of the settings location and moves what lies below so that no gap
  // stays: the rows close up, and the hint box takes or gives the space.
  void ShowSettingsLocation(bool show);

 private:
  Control& Design();
  void DesignDbType();
  void DesignFolders();
  void DesignSubjectLine();
  void DesignFoot();
  Control& AddLabel(int index, int row, const wchar_t* text);
  Control& AddField(int index, Box place, const wchar_t* tip);
  void AddAlert(int index, int left, int row, unsigned side);
  void AddFolder(int index, int row, const wchar_t* label, const wchar_t* tip, int browseIndex,
                 const wchar_t* browseCaption);
  void Connect(std::weak_ptr<frmSetupEvents> events);
};

}  // namespace postrove::forms
