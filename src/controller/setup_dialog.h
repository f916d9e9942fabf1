#pragma once

#include <functional>
#include <memory>
#include <string>

#include "controller/dialog_stack.h"
#include "data/office_data.h"
#include "forms/frmSetup.h"

namespace postrove {

// The defaults setup dialog: stores each setting as its field is left.
class SetupDialog final : public forms::frmSetupEvents {
 public:
  // `returned` is called while the dialog is still shown, when its user goes back to the save
  // dialog; it is told whether the other database was chosen meanwhile.
  using Returned = std::function<void(bool databaseChanged)>;
  SetupDialog(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs, Returned returned);

  // Shows the dialog above the save dialog and returns when it is closed.
  void Show();

  void frmSetupEvent_BrowseClicked(int Index) override;
  void frmSetupEvent_ButtonClicked(int Index) override;
  void frmSetupEvent_SetupDbTypeOptionClick() override;
  void frmSetupEvent_SetupFieldChange(int Index) override;
  void frmSetupEvent_SetupFieldGotFocus(int Index) override;
  void frmSetupEvent_SetupFieldLostFocus(int Index) override;
  void frmSetupEvent_SetupListChange(const std::wstring& Text) override;
  void frmSetupEvent_SetupListClick() override;
  void frmSetupEvent_SetupListKeyPress(int& KeyAscii, const std::wstring& Text) override;
  void frmSetupEvent_SetupWebLabelClick(const std::wstring& Caption) override;
  void frmSetupEvent_FormEscape() override;

 private:
  void Fill();
  void ListWorkUnitTypes();
  void ShowHint();
  void ChangeSharing();
  void LeaveField(int index);
  void CheckField(int index);
  std::wstring FolderProblem(int index);
  void StoreField(int index);
  void ReturnClicked();
  void Return();

  OfficeData& data_;
  clsSharedUtil& utility_;
  DialogStack& dialogs_;
  const Returned returned_;
  const std::shared_ptr<forms::frmSetupEvents> events_;
  const std::shared_ptr<forms::frmSetup> form_;
  int hintedField_ = forms::kSetupServerFolder;  // whose hint is shown
  int refusedField_ = -1;                        // left with a folder which was refused
  std::wstring refusedFolder_;
  bool filling_ = false;
  bool typeAhead_ = false;  // the work-unit box completes what is typed
  bool databaseChanged_ = false;
};

}  // namespace postrove
