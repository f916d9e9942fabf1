#pragma once

#include <memory>
#include <string>

#include "controller/dialog_stack.h"
#include "controller/filing.h"
#include "controller/project_choice.h"
#include "controller/version.h"
#include "data/office_data.h"
#include "forms/frmPostrove.h"
#include "outlook/shared_objects.h"

namespace postrove {

// The save dialog of one filing: fills it, handles its events, opens the others, and files the
// message with its main button.
//
// Thread: Outlook's user-interface thread only. Event handlers never throw.
class SaveDialog final : public forms::frmPostroveEvents {
 public:
  // All but the filing outlive the dialog; `shared` supplies gOutlook when the message is written.
  SaveDialog(const SharedObjects& shared, OfficeData& data, clsSharedUtil& utility,
             forms::FormHost& forms, Filing filing);

  // Proposes what can be proposed, shows the dialog and returns when it was closed. Throws Error
  // when it could not be shown.
  void Show(const ProductVersion& version);

  // A second click brings it to the front.
  void BringToFront() { dialogs_.BringToFront(); }

  // Lets go of every object of Outlook and closes it with those above it, unanswered.
  void Close();

  void frmPostroveEvent_ButtonClicked(int Index) override;
  void frmPostroveEvent_FormUnload(bool& Cancel) override;
  void frmPostroveEvent_FormActivate() override;
  void frmPostroveEvent_ProjectComboChange(const std::wstring& Text) override;
  void frmPostroveEvent_ProjectComboClick() override;
  void frmPostroveEvent_ProjectComboGotFocus() override;
  void frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) override;
  void frmPostroveEvent_ProjectComboLostFocus() override;
  void frmPostroveEvent_SaveAsNameChanged() override;
  void frmPostroveEvent_SaveAsNameGotFocus() override;
  void frmPostroveEvent_SaveAsNameLostFocus() override;
  void frmPostroveEvent_SaveFolderChanged() override;
  void frmPostroveEvent_SaveFolderGotFocus() override;
  void frmPostroveEvent_WebLabelClick(const std::wstring& Caption) override;

 private:
  void SaveButtonClicked();
  std::wstring Faults();
  std::wstring BrowsePrompt() const;
  void OpenSetup();
  void TakeNewDefaults(bool databaseChanged);

  const SharedObjects& shared_;
  OfficeData& data_;
  clsSharedUtil& utility_;
  Filing filing_;
  const std::shared_ptr<forms::frmPostroveEvents> events_;
  const std::shared_ptr<forms::frmPostrove> form_;
  DialogStack dialogs_;
  ProjectChoice project_;
  bool writing_ = false;  // Outlook writes or sends the message
};

}  // namespace postrove
