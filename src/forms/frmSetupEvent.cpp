#include <algorithm>

#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "data/label_places.h"
#include "forms/kit/guards.h"
#include "forms/type_ahead.h"
#include "forms/web_site.h"
#include "shared/text.h"

// The controller's handlers of the defaults setup dialog's events.
namespace postrove {

namespace {

constexpr int kBackspace = 8;
constexpr int kTab = 9;
constexpr int kEnter = 13;

constexpr wchar_t kBreak[] = L"\r\n";
constexpr wchar_t kCorrect[] = L"Please correct the following errors... \r\n";

forms::Control& FieldOf(const forms::frmSetup& form, int index) {
  return index == forms::kSetupWorkType ? form.cboWorkType : form.txtSetup(index);
}

bool IsDelimiter(int index) {
  return index == forms::kSetupProjectDelimiter || index == forms::kSetupSubjectDelimiter;
}

forms::Control& LabelOf(const forms::frmSetup& form, int index) {
  return form.lblFieldLabel(IsDelimiter(index) ? forms::kSetupDelimiterLabel : index);
}

// A field's name in messages: its label without the mark of its key and what follows the name.
std::wstring NameOf(const forms::frmSetup& form, int index) {
  const std::wstring name = text::Replace(LabelOf(form, index).Text(), L"&", L"");
  return name.substr(0, name.find(L':'));
}

std::wstring ValueMissing(const std::wstring& name) {
  return L"-The " + name + L" must have a value.";
}

std::wstring WithWord(const std::wstring& pattern, const std::wstring& word) {
  return text::ReplaceIgnoreCase(pattern, L"~Unit~", word);
}

void ShowWord(const forms::frmSetup& form, const std::wstring& word) {
  for (const int index : {0, 1}) {
    forms::Control& label = form.lblDelimLabel(index);
    label.SetText(WithWord(label.Tag(), word));
  }
}

void ShowSample(const forms::frmSetup& form) {
  const auto folder = [&](int index) { return text::NormaliseFolder(form.txtSetup(index).Text()); };
  form.lblSavePathSample.SetText(
      folder(forms::kSetupServerFolder) + folder(forms::kSetupEmailFolder) +
      form.lblDelimLabel(0).Text() + form.txtSetup(forms::kSetupProjectDelimiter).Text() +
      form.lblDelimLabel(1).Text() + form.txtSetup(forms::kSetupSubjectDelimiter).Text() +
      L"<email subject>");
}

// What the user cannot fill in is not asked for.
void ShowLocked(const forms::frmSetup& form, int index) {
  FieldOf(form, index).SetBackColor(forms::kSystemButtonFace);
  LabelOf(form, index).SetForeColor(forms::kSystemButtonText);
  form.lblAlert(index).SetVisible(false);
}

// Quillion decides on its database and folders.
void LockByMode(forms::frmSetup& form, bool shared) {
  form.txtSetup(forms::kSetupServerFolder).SetLocked(shared);
  form.cmdBrowse(forms::kSetupBrowseServerFolder).SetVisible(!shared);
  form.txtSetup(forms::kSetupDatabase).SetLocked(shared);
  form.cmdBrowse(forms::kSetupBrowseDatabase).SetVisible(!shared);
  form.ShowSettingsLocation(!shared);
}

}  // namespace

void clsPostrove::WithSetup(const wchar_t* procedure,
                            const std::function<void(forms::frmSetup& form)>& body) {
  const auto self = shared_from_this();
  const std::shared_ptr<forms::frmSetup> form = frmSetupEvent_;
  if (form) Reporting(*utility_, L"clsPostrove", procedure, [&] { body(*form); });
}

void clsPostrove::OpenSetup() {
  const std::shared_ptr<forms::frmPostrove> saveDialog = frmPostroveEvent_;
  const auto form = std::make_shared<forms::frmSetup>(weak_from_this());
  frmSetupEvent_ = form;
  hintedField_ = forms::kSetupServerFolder;
  workUnitTypeAhead_ = false;  // Esc leaves without a word
  FillWorkUnitTypes(form->cboWorkType);
  {
    const Raised opening(ignoreFieldEvents_);
    form->optDbType(forms::kSetupSiblingDb).SetEnabled(quillionInstalled_);
    form->optDbType(useQuillion_ ? forms::kSetupSiblingDb : forms::kSetupOwnDb).SetChecked(true);
    FillSetup(*form);
  }
  {
    const forms::Lowered lowered(*forms_, saveDialog, lowered_);
    forms_->ShowModal(*form);
  }
  frmSetupEvent_.reset();
  if (!saveDialog->IsUnloaded()) forms_->SetFocus(saveDialog->cboPostrove);
}

// What a field is compared with, and shows again when its text is not taken.
std::wstring clsPostrove::CurrentDefault(int field) const {
  switch (field) {
    case forms::kSetupServerFolder:
      return Root;
    case forms::kSetupProjectDelimiter:
      return ProjDelim;
    case forms::kSetupSubjectDelimiter:
      return SubjDelim;
    case forms::kSetupEmailFolder:
      return EmailFolder;
    case forms::kSetupDatabase:
      return database_->DBPath;
    case forms::kSetupSettings:
      return utility_->IniFile().substr(0, utility_->IniFile().rfind(L'\\') + 1);
    default:
      return WorkUnit;
  }
}

void clsPostrove::FillSetup(forms::frmSetup& form) {
  refusedField_ = -1;
  for (int index = forms::kSetupServerFolder; index <= forms::kSetupWorkType; ++index) {
    forms::Control& field = FieldOf(form, index);
    field.SetText(CurrentDefault(index));
    MarkSetupField(form, index);
    if (field.Locked()) ShowLocked(form, index);
  }
  ShowWord(form, WorkUnit);
  ShowSample(form);
  ShowSetupHint(form);
}

void clsPostrove::frmSetupEvent_SetupDbTypeOptionClick() {
  WithSetup(L"frmSetupEvent_SetupDbTypeOptionClick()",
            [this](forms::frmSetup& form) { ChangeSharing(form); });
}

void clsPostrove::ChangeSharing(forms::frmSetup& form) {
  const bool before = useQuillion_;
  useQuillion_ = form.optDbType(forms::kSetupSiblingDb).Checked();
  // In own mode these are not read from the settings.
  if (before && !useQuillion_) {
    EmailFolder = kStartEmailFolder;
    ProjDelim = kStartProjDelim;
    SubjDelim = kStartSubjDelim;
  }
  LockByMode(form, useQuillion_);
  if (ignoreFieldEvents_) return;  // the dialog is being opened, or the choice taken back

  const bool stored = PostroveDefaultsSave(forms::kSetupSharing, form);
  if (form.IsUnloaded()) return;
  const Raised filling(ignoreFieldEvents_);
  if (stored) {
    ClearProject();
  } else {
    // It may have been stored before something else failed.
    useQuillion_ = before;
    sharingKnown_ = false;
    ReloadDefaults();
    if (form.IsUnloaded()) return;
    form.optDbType(useQuillion_ ? forms::kSetupSiblingDb : forms::kSetupOwnDb).SetChecked(true);
  }
  FillSetup(form);
}

bool clsPostrove::MarkSetupField(const forms::frmSetup& form, int index) {
  forms::Control& label = LabelOf(form, index);
  const bool filled = CheckRequired(FieldOf(form, index), label, form.lblAlert(index));
  // The caption of both delimiters is red while either is missing.
  constexpr int kBoth = forms::kSetupProjectDelimiter + forms::kSetupSubjectDelimiter;
  if (IsDelimiter(index) && form.txtSetup(kBoth - index).Text().empty()) {
    label.SetForeColor(forms::kRed);
  }
  return filled;
}

void clsPostrove::frmSetupEvent_SetupFieldChange(int Index) {
  WithSetup(L"frmSetupEvent_SetupFieldChange()",
            [&](forms::frmSetup& form) { MarkSetupField(form, Index); });
}

void clsPostrove::frmSetupEvent_SetupFieldGotFocus(int Index) {
  hintedField_ = Index;
  WithSetup(L"frmSetupEvent_SetupFieldGotFocus()",
            [this](forms::frmSetup& form) { ShowSetupHint(form); });
}

void clsPostrove::ShowSetupHint(const forms::frmSetup& form) const {
  const std::wstring word = form.cboWorkType.Text();
  const std::wstring hint = Label(labels::kSetupDialog, static_cast<std::size_t>(hintedField_),
                                  FieldOf(form, hintedField_).ToolTip());
  const bool database = hintedField_ == forms::kSetupDatabase;
  form.rtfFieldHints.SetText((database ? L"***IMPORTANT***:" : L"Hint:") + std::wstring(kBreak) +
                             WithWord(hint, word.empty() ? WorkUnit : word));
}

void clsPostrove::frmSetupEvent_SetupFieldLostFocus(int Index) {
  WithSetup(L"frmSetupEvent_SetupFieldLostFocus()",
            [&](forms::frmSetup& form) { LeaveSetupField(form, Index); });
}

void clsPostrove::LeaveSetupField(forms::frmSetup& form, int index) {
  if (index == forms::kSetupWorkType) workUnitTypeAhead_ = false;
  forms::Control& field = FieldOf(form, index);
  if (!IsDelimiter(index)) field.SetText(text::Trim(field.Text()));
  if (!text::EqualsIgnoreCase(field.Text(), CurrentDefault(index))) CheckSetupField(form, index);
  if (!form.IsUnloaded()) ShowSample(form);
}

void clsPostrove::CheckSetupField(forms::frmSetup& form, int index) {
  forms::Control& field = FieldOf(form, index);
  const std::wstring name = NameOf(form, index);
  std::wstring errors;
  bool refused = false;
  if (!MarkSetupField(form, index)) {
    errors = kBreak + ValueMissing(name);
  } else if (index == forms::kSetupServerFolder || index == forms::kSetupDatabase ||
             index == forms::kSetupSettings) {
    // Left again with the same text, the field must not hold the user any longer.
    if (index == refusedField_ && field.Text() == refusedFolder_) {
      refusedField_ = -1;
      return field.SetText(CurrentDefault(index));
    }
    errors = SetupFolderProblem(field, name);
    if (form.IsUnloaded()) return;
    refused = !errors.empty();
    refusedField_ = refused ? index : -1;
    refusedFolder_ = field.Text();
  }
  if (errors.empty()) {
    if (!ignoreFieldEvents_) StoreSetupField(form, index);
    return;
  }
  utility_->ShowMessage(kCorrect + errors, L"Invalid " + name, MessageButtons::Ok,
                        MessageIcon::Information);
  if (!refused || form.IsUnloaded()) return;
  forms_->SetFocus(field);
  field.Select(0, static_cast<int>(field.Text().size()));
}

// Why a folder will not do, as lines of the error list; a folder that the user had made instead is
// then in the field.
std::wstring clsPostrove::SetupFolderProblem(forms::Control& field, const std::wstring& fieldName) {
  std::wstring folder = field.Text();
  if (!text::IsRootedPath(folder)) return {};
  std::wstring errors;
  bool accepted = false;
  const std::wstring drive = DriveProblem(folder, fieldName);
  if (!drive.empty()) {
    errors = kBreak + drive;
  } else {
    try {
      accepted = EnsureFolder(folder);
    } catch (const Error& error) {
      errors = std::wstring(kBreak) + L"-" + error.Description();
    }
  }
  if (!accepted) return errors + kBreak + L"-Select a different " + fieldName;
  field.SetText(folder);
  return {};
}

// After a setting that could not be stored whole: what the files hold is in force.
void clsPostrove::ReloadDefaults() {
  TryToReadSettings(Search::Ask);
  GetProjectList();
  TellTroubles();
}

void clsPostrove::StoreSetupField(forms::frmSetup& form, int index) {
  const bool wereRead = settingsRead_;
  const bool stored = PostroveDefaultsSave(index, form);
  if (!stored) ReloadDefaults();
  if (form.IsUnloaded()) return;
  forms::Control& field = FieldOf(form, index);
  const bool readBack = useQuillion_ || !(IsDelimiter(index) || index == forms::kSetupEmailFolder);
  if (readBack || !stored) {
    field.SetText(CurrentDefault(index));
  } else if (index == forms::kSetupEmailFolder) {
    field.SetText(text::NormaliseFolder(field.Text()));
  }
  if (index == forms::kSetupWorkType) {
    field.SetItems({});
    FillWorkUnitTypes(field);
  }
  if (index == forms::kSetupSettings || !wereRead) {
    const Raised filling(ignoreFieldEvents_);
    FillSetup(form);  // another file, or one that can be read by now, has other settings
  }
}

void clsPostrove::frmSetupEvent_SetupListChange(const std::wstring& Text) {
  if (ignoreFieldEvents_) return;
  WithSetup(L"frmSetupEvent_SetupListChange()", [&](forms::frmSetup& form) {
    if (MarkSetupField(form, forms::kSetupWorkType)) ShowWord(form, Text);
  });
}

void clsPostrove::frmSetupEvent_SetupListClick() {
  if (frmSetupEvent_) frmSetupEvent_SetupListChange(frmSetupEvent_->cboWorkType.Text());
}

void clsPostrove::frmSetupEvent_SetupListKeyPress(int& KeyAscii, const std::wstring&) {
  if (ignoreFieldEvents_) return;
  WithSetup(L"frmSetupEvent_SetupListKeyPress()", [&](forms::frmSetup& form) {
    if (forms::IsCharacter(KeyAscii) || (KeyAscii == kBackspace && workUnitTypeAhead_)) {
      workUnitTypeAhead_ = true;
      forms::CompleteTyping(*forms_, form.cboWorkType, KeyAscii);
    } else if (KeyAscii == kTab || KeyAscii == kEnter) {
      workUnitTypeAhead_ = false;
      if (KeyAscii == kEnter) {
        KeyAscii = 0;
        forms_->SendTab(form);
      }
    }
  });
}

void clsPostrove::frmSetupEvent_BrowseClicked(int Index) {
  constexpr BrowseTarget kTargets[] = {BrowseTarget::ServerFolder, BrowseTarget::EmailFolder,
                                       BrowseTarget::Database, BrowseTarget::Settings};
  WithSetup(L"frmSetupEvent_BrowseClicked()", [&](forms::frmSetup& form) {
    const BrowseTarget target = kTargets[Index];
    if (BrowseFor(target)) LeaveSetupField(form, BrowsedField(target).Index());
  });
}

void clsPostrove::frmSetupEvent_ButtonClicked(int Index) {
  WithSetup(L"frmSetupEvent_ButtonClicked()", [&](forms::frmSetup& form) {
    if (Index == forms::kSetupHelp) {
      utility_->OpenDocument(std::wstring(forms::kWebSite) +
                             L"/PostroveHelp_files/programsetup.htm");
    } else {
      ReturnClicked(form);
    }
  });
}

std::wstring clsPostrove::ValidateDefaults(const forms::frmSetup& form) const {
  std::wstring errors;
  if (!settingsRead_) return errors;  // there is nothing that could be filled in
  for (const int index : {forms::kSetupWorkType, forms::kSetupProjectDelimiter,
                          forms::kSetupSubjectDelimiter, forms::kSetupServerFolder,
                          forms::kSetupEmailFolder, forms::kSetupDatabase, forms::kSetupSettings}) {
    const forms::Control& field = FieldOf(form, index);
    // What the user cannot fill in must not keep the dialog open.
    if (!field.Text().empty() || field.Locked() || !field.Visible()) continue;
    if (!errors.empty()) errors += kBreak;
    if (index == forms::kSetupWorkType) {
      errors += L"-You must select a Work Unit Type.";
    } else if (index == forms::kSetupProjectDelimiter) {
      errors += ValueMissing(WorkUnit + L" Delimiter");
    } else if (index == forms::kSetupSubjectDelimiter) {
      errors += ValueMissing(L"Subject Delimiter");
    } else {
      errors += ValueMissing(NameOf(form, index));
    }
  }
  return errors;
}

void clsPostrove::ReturnClicked(forms::frmSetup& form) {
  const std::wstring errors = ValidateDefaults(form);
  if (!errors.empty()) {
    utility_->ShowMessage(kCorrect + errors, L"Invalid Form Entries", MessageButtons::Ok,
                          MessageIcon::Information);
    return;
  }
  ReturnToSaveDialog(form);
}

// Nothing of what is not stored yet is meant: neither what is being typed nor what was emptied.
void clsPostrove::frmSetupEvent_FormEscape() {
  WithSetup(L"frmSetupEvent_FormEscape()", [this](forms::frmSetup& form) {
    for (int index = forms::kSetupServerFolder; index <= forms::kSetupWorkType; ++index) {
      forms::Control& field = FieldOf(form, index);
      if (index == hintedField_ || field.Text().empty()) field.SetText(CurrentDefault(index));
    }
    ReturnToSaveDialog(form);
  });
}

// The save dialog gets the new words and projects; what the user entered there stays.
void clsPostrove::ReturnToSaveDialog(forms::frmSetup& form) {
  const std::shared_ptr<forms::frmPostrove> saveDialog = frmPostroveEvent_;
  SaveAsName = saveDialog->txtSaveAsName.Text();
  // A typed project is looked up when the message is saved.
  const auto row = std::find_if(ProjectList.begin(), ProjectList.end(), [this](const Project& one) {
    return one.id == ProjectID && one.number == ProjectNumber &&
           (one.id != 0 || one.name == ProjectName);
  });
  if (!typedProject_ && row != ProjectList.end()) {
    SelectProject(static_cast<int>(row - ProjectList.begin()));
  } else if (!typedProject_ && !ProjectNumber.empty()) {
    {
      // The question may bring the project dialog, which looks at the list.
      const Raised filling(filling_);
      const std::wstring shown = saveDialog->cboPostrove.Text();
      FillProjectCombo(saveDialog->cboPostrove);
      saveDialog->cboPostrove.SetText(shown);
    }
    ResolveSubjectProject();
  }
  if (form.IsUnloaded()) return;
  FillSaveLabels(*saveDialog);
  ArrangeByMode(*saveDialog);
  {
    const Raised filling(filling_);
    forms::Control& combo = saveDialog->cboPostrove;
    // Emptied with the change to another database.
    const bool none = ProjectNumber.empty() && ProjectName.empty();
    const std::wstring shown = typedProject_ ? combo.Text() : std::wstring();
    FillProjectCombo(combo);
    if (typedProject_ || none) {
      combo.SetText(shown);
    } else {
      ShowProject(*saveDialog);
    }
    if (FolderIsProposed(*saveDialog)) ProposeFolder(*saveDialog);
  }
  form.Unload();
}

void clsPostrove::frmSetupEvent_SetupWebLabelClick(const std::wstring& Caption) {
  WithSetup(L"frmSetupEvent_SetupWebLabelClick()",
            [&](forms::frmSetup&) { utility_->OpenDocument(forms::LinkTarget(Caption)); });
}

}  // namespace postrove
