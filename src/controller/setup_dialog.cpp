#include "controller/setup_dialog.h"

#include <optional>
#include <utility>

#include "controller/drive_check.h"
#include "controller/folder_questions.h"
#include "controller/handler.h"
#include "controller/setup_fields.h"
#include "controller/type_ahead.h"
#include "data/label_places.h"
#include "forms/web_site.h"
#include "shared/raised.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr int kBackspace = 8;
constexpr int kTab = 9;
constexpr int kEnter = 13;

constexpr wchar_t kBreak[] = L"\r\n";
constexpr wchar_t kCorrect[] = L"Please correct the following errors... \r\n";

// A browse button, its field and what the folder picker says.
constexpr struct {
  int field;
  const wchar_t* prompt;
} kBrowses[] = {{forms::kSetupServerFolder, L"Select Default Root Folder:"},
                {forms::kSetupEmailFolder, L"Select Default Email Folder:"},
                {forms::kSetupDatabase, L"Select the Postrove Database Location:"},
                {forms::kSetupSettings, L"Select the Settings File Location:"}};

}  // namespace

SetupDialog::SetupDialog(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs,
                         Returned returned)
    : data_(data),
      utility_(utility),
      dialogs_(dialogs),
      returned_(std::move(returned)),
      events_(Listening<forms::frmSetupEvents>(*this)),
      form_(std::make_shared<forms::frmSetup>(events_)) {}

void SetupDialog::Show() {
  ListWorkUnitTypes();
  form_->optDbType(forms::kSetupSiblingDb).SetEnabled(data_.settings.QuillionInstalled());
  Fill();
  dialogs_.ShowAbove(form_);
}

void SetupDialog::ListWorkUnitTypes() {
  Reporting(utility_, L"clsPostrove", L"FillWorkUnitTypes()",
            [this] { form_->cboWorkType.SetItems(data_.labels.WorkUnitTypes()); });
}

void SetupDialog::Fill() {
  const Raised filling(filling_);
  refusedField_ = -1;
  const bool shared = data_.settings.UseQuillion();
  form_->optDbType(shared ? forms::kSetupSiblingDb : forms::kSetupOwnDb).SetChecked(true);
  for (int index = forms::kSetupServerFolder; index <= forms::kSetupWorkType; ++index) {
    forms::Control& field = FieldOf(*form_, index);
    field.SetText(data_.CurrentDefault(index));
    MarkField(*form_, index);
    if (field.Locked()) ShowLocked(*form_, index);
  }
  ShowWord(*form_, data_.settings.WorkUnit);
  ShowSample(*form_);
  ShowHint();
}

void SetupDialog::ShowHint() {
  const std::wstring word = form_->cboWorkType.Text();
  const std::wstring hint =
      data_.labels.Text(labels::kSetupDialog, static_cast<std::size_t>(hintedField_),
                        FieldOf(*form_, hintedField_).ToolTip());
  const bool database = hintedField_ == forms::kSetupDatabase;
  form_->rtfFieldHints.SetText((database ? L"***IMPORTANT***:" : L"Hint:") + std::wstring(kBreak) +
                               WithWord(hint, word.empty() ? data_.settings.WorkUnit : word));
}

void SetupDialog::frmSetupEvent_SetupDbTypeOptionClick() {
  Handle(utility_, *form_, L"frmSetupEvent_SetupDbTypeOptionClick()", [this] { ChangeSharing(); });
}

void SetupDialog::ChangeSharing() {
  const bool before = data_.settings.UseQuillion();
  const bool shared = form_->optDbType(forms::kSetupSiblingDb).Checked();
  data_.settings.SetUseQuillion(shared);
  LockByMode(*form_, shared);
  if (filling_) return;  // the dialog is being opened, or the choice taken back

  const bool stored = data_.PostroveDefaultsSave(forms::kSetupSharing, shared ? L"1" : L"0");
  if (form_->IsUnloaded()) return;
  const Raised filling(filling_);
  if (stored) {
    databaseChanged_ = true;
  } else {
    // It may have been stored before something else failed.
    data_.settings.SetUseQuillion(before);
    data_.settings.ForgetSharing();
    data_.Reload();
    if (form_->IsUnloaded()) return;
  }
  Fill();
}

void SetupDialog::frmSetupEvent_SetupFieldChange(int Index) {
  Handle(utility_, *form_, L"frmSetupEvent_SetupFieldChange()", [&] { MarkField(*form_, Index); });
}

void SetupDialog::frmSetupEvent_SetupFieldGotFocus(int Index) {
  hintedField_ = Index;
  Handle(utility_, *form_, L"frmSetupEvent_SetupFieldGotFocus()", [this] { ShowHint(); });
}

void SetupDialog::frmSetupEvent_SetupFieldLostFocus(int Index) {
  Handle(utility_, *form_, L"frmSetupEvent_SetupFieldLostFocus()", [&] { LeaveField(Index); });
}

void SetupDialog::LeaveField(int index) {
  if (index == forms::kSetupWorkType) typeAhead_ = false;
  forms::Control& field = FieldOf(*form_, index);
  if (!IsDelimiter(index)) field.SetText(text::Trim(field.Text()));
  if (!text::EqualsIgnoreCase(field.Text(), data_.CurrentDefault(index))) CheckField(index);
  if (!form_->IsUnloaded()) ShowSample(*form_);
}

void SetupDialog::CheckField(int index) {
  forms::Control& field = FieldOf(*form_, index);
  const std::wstring name = NameOf(*form_, index);
  std::wstring errors;
  bool refused = false;
  if (!MarkField(*form_, index)) {
    errors = kBreak + ValueMissing(name);
  } else if (index == forms::kSetupServerFolder || index == forms::kSetupDatabase ||
             index == forms::kSetupSettings) {
    // Left again with the same text, the field must not hold the user any longer.
    if (index == refusedField_ && field.Text() == refusedFolder_) {
      refusedField_ = -1;
      return field.SetText(data_.CurrentDefault(index));
    }
    errors = FolderProblem(index);
    if (form_->IsUnloaded()) return;
    refused = !errors.empty();
    refusedField_ = refused ? index : -1;
    refusedFolder_ = field.Text();
  }
  if (errors.empty()) {
    if (!filling_) StoreField(index);
    return;
  }
  utility_.ShowMessage(kCorrect + errors, L"Invalid " + name, MessageButtons::Ok,
                       MessageIcon::Information);
  if (!refused || form_->IsUnloaded()) return;
  dialogs_.Host().SetFocus(field);
  field.Select(0, static_cast<int>(field.Text().size()));
}

// Why a folder will not do, as lines of the error list; a folder that the user had made instead is
// then in the field.
std::wstring SetupDialog::FolderProblem(int index) {
  forms::Control& field = FieldOf(*form_, index);
  const std::wstring name = NameOf(*form_, index);
  if (!text::IsRootedPath(field.Text())) return {};
  std::wstring errors;
  const std::wstring drive = DriveProblem(utility_, field.Text(), name);
  if (!drive.empty()) {
    errors = kBreak + drive;
  } else {
    try {
      if (const auto folder = EnsureFolder(dialogs_, utility_, field.Text())) {
        field.SetText(*folder);
        return {};
      }
    } catch (const Error& error) {
      errors = std::wstring(kBreak) + L"-" + error.Description();
    }
  }
  return errors + kBreak + L"-Select a different " + name;
}

void SetupDialog::StoreField(int index) {
  const bool wereRead = data_.settings.AreRead();
  const bool stored = data_.PostroveDefaultsSave(index, FieldOf(*form_, index).Text());
  if (!stored) data_.Reload();
  if (form_->IsUnloaded()) return;
  forms::Control& field = FieldOf(*form_, index);
  const bool readBack =
      data_.settings.UseQuillion() || !(IsDelimiter(index) || index == forms::kSetupEmailFolder);
  if (readBack || !stored) {
    field.SetText(data_.CurrentDefault(index));
  } else if (index == forms::kSetupEmailFolder) {
    field.SetText(text::NormaliseFolder(field.Text()));
  }
  if (index == forms::kSetupWorkType) ListWorkUnitTypes();
  // Another file, or one that can be read by now, has other settings.
  if (index == forms::kSetupSettings || !wereRead) Fill();
}

void SetupDialog::frmSetupEvent_SetupListChange(const std::wstring& Text) {
  if (filling_) return;
  Handle(utility_, *form_, L"frmSetupEvent_SetupListChange()", [&] {
    if (MarkField(*form_, forms::kSetupWorkType)) ShowWord(*form_, Text);
  });
}

void SetupDialog::frmSetupEvent_SetupListClick() {
  frmSetupEvent_SetupListChange(form_->cboWorkType.Text());
}

void SetupDialog::frmSetupEvent_SetupListKeyPress(int& KeyAscii, const std::wstring&) {
  if (filling_) return;
  Handle(utility_, *form_, L"frmSetupEvent_SetupListKeyPress()", [&] {
    if (IsCharacter(KeyAscii) || (KeyAscii == kBackspace && typeAhead_)) {
      typeAhead_ = true;
      CompleteTyping(dialogs_.Host(), form_->cboWorkType, KeyAscii);
    } else if (KeyAscii == kTab || KeyAscii == kEnter) {
      typeAhead_ = false;
      if (KeyAscii == kEnter) {
        KeyAscii = 0;
        dialogs_.Host().SendTab(*form_);
      }
    }
  });
}

void SetupDialog::frmSetupEvent_BrowseClicked(int Index) {
  Handle(utility_, *form_, L"frmSetupEvent_BrowseClicked()", [&] {
    const auto& [field, prompt] = kBrowses[Index];
    std::optional<std::wstring> folder = BrowseForFolder(dialogs_, utility_, prompt);
    if (!folder) return;
    // It lies below each project's own folder, so only its name counts.
    if (field == forms::kSetupEmailFolder) folder->erase(0, folder->rfind(L'\\') + 1);
    if (folder->empty()) return;
    FieldOf(*form_, field).SetText(text::NormaliseFolder(*folder));
    LeaveField(field);
  });
}

void SetupDialog::frmSetupEvent_ButtonClicked(int Index) {
  Handle(utility_, *form_, L"frmSetupEvent_ButtonClicked()", [&] {
    if (Index == forms::kSetupHelp) {
      utility_.OpenDocument(std::wstring(forms::kWebSite) +
                            L"/PostroveHelp_files/programsetup.htm");
    } else {
      ReturnClicked();
    }
  });
}

void SetupDialog::ReturnClicked() {
  // Without settings there is nothing that could be filled in.
  const std::wstring errors =
      data_.settings.AreRead() ? MissingFields(*form_, data_.settings.WorkUnit) : std::wstring();
  if (!errors.empty()) {
    utility_.ShowMessage(kCorrect + errors, L"Invalid Form Entries", MessageButtons::Ok,
                         MessageIcon::Information);
    return;
  }
  Return();
}

// Nothing of what is not stored yet is meant: neither what is being typed nor what was emptied.
void SetupDialog::frmSetupEvent_FormEscape() {
  Handle(utility_, *form_, L"frmSetupEvent_FormEscape()", [this] {
    for (int index = forms::kSetupServerFolder; index <= forms::kSetupWorkType; ++index) {
      forms::Control& field = FieldOf(*form_, index);
      if (index == hintedField_ || field.Text().empty()) {
        field.SetText(data_.CurrentDefault(index));
      }
    }
    Return();
  });
}

void SetupDialog::Return() {
  returned_(databaseChanged_);
  form_->Unload();
}

void SetupDialog::frmSetupEvent_SetupWebLabelClick(const std::wstring& Caption) {
  Handle(utility_, *form_, L"frmSetupEvent_SetupWebLabelClick()",
         [&] { utility_.OpenDocument(forms::LinkTarget(Caption)); });
}

}  // namespace postrove
