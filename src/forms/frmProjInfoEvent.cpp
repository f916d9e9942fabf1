#include <algorithm>

#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "data/label_places.h"
#include "forms/kit/guards.h"
#include "forms/web_site.h"
#include "shared/file_name.h"
#include "shared/text.h"

// The controller's handlers of the project information dialog's events, and how it is opened.
namespace postrove {

namespace {

constexpr int kLeftMouseButton = 1;

constexpr wchar_t kAdd[] = L"add";
constexpr wchar_t kAddManual[] = L"addmanual";
constexpr wchar_t kEdit[] = L"edit";

}  // namespace

void clsPostrove::OpenProjectInfo() {
  const std::shared_ptr<forms::frmPostrove> saveDialog = frmPostroveEvent_;
  if (!saveDialog) return;  // Outlook quit during the question
  const auto form = std::make_shared<forms::frmProjInfo>(weak_from_this());
  frmProjInfoEvent_ = form;
  projectBefore_ = CurrentProject();
  FillProjectInfo(*form);
  {
    const forms::Lowered lowered(*forms_, saveDialog, lowered_);
    forms_->ShowModal(*form);
  }
  frmProjInfoEvent_.reset();
  ignoreFieldEvents_ = false;
  if (!saveDialog->IsUnloaded()) forms_->SetFocus(saveDialog->cboPostrove);
}

void clsPostrove::FillProjectInfo(forms::frmProjInfo& form) {
  const bool add = text::EqualsIgnoreCase(ProjInfoMode, kAdd);
  const bool manual = text::EqualsIgnoreCase(ProjInfoMode, kAddManual);
  form.SetCaption((add || manual ? L"Add a " : L"Edit a ") + WorkUnit);
  form.chkProjActive.SetVisible(!add);
  form.chkProjActive.SetChecked(Active);

  std::wstring hints;
  for (int field = 0; field < forms::kProjInfoFields; ++field) {
    const auto label = static_cast<std::size_t>(field);
    forms::Control& caption = form.lblFieldLabel(field);
    caption.SetText(Label(labels::kProjectDialog, label, caption.Text()));
    hints += L"\r\n" + Label(labels::kProjectDialog, label + forms::kProjInfoFields, {});
  }
  form.rtfFieldHints.SetText(L"Hint:" + hints);

  const bool proposes = add || (manual && ProjectNumber.empty());
  form.txtProjInfo(forms::kProjInfoNumber)
      .SetText(proposes ? GetNewProjectNumber() : ProjectNumber);
  form.txtProjInfo(forms::kProjInfoName).SetText(add ? L"New Project" : ProjectName);
  form.txtProjInfo(forms::kProjInfoFolder).SetText(add ? Root : ProjFilePath);
  for (int field = 0; field < forms::kProjInfoFields; ++field) MarkProjectInfoField(form, field);
}

void clsPostrove::MarkProjectInfoField(const forms::frmProjInfo& form, int index) {
  CheckRequired(form.txtProjInfo(index), form.lblFieldLabel(index), form.lblAlert(index));
}

void clsPostrove::WithProjectInfo(const wchar_t* procedure,
                                  const std::function<void(forms::frmProjInfo& form)>& body) {
  const auto self = shared_from_this();
  const std::shared_ptr<forms::frmProjInfo> form = frmProjInfoEvent_;
  if (form) Reporting(*utility_, L"clsPostrove", procedure, [&] { body(*form); });
}

void clsPostrove::frmProjInfoEvent_ButtonClicked(int Index) {
  WithProjectInfo(L"frmProjInfoEvent_ButtonClicked()", [&](forms::frmProjInfo& form) {
    form.rtfFieldHints.SetText({});
    switch (Index) {
      case forms::kProjInfoSave:
        SaveProjectInfo(form);
        break;
      case forms::kProjInfoCancel:
        TakeProject(projectBefore_);
        ChooseListedProject(frmPostroveEvent_->cboPostrove.ListIndex());
        form.Unload();
        break;
      default:
        utility_->OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp_files/howtouse.htm");
    }
  });
}

void clsPostrove::SaveProjectInfo(forms::frmProjInfo& form) {
  const std::wstring errors = ValidateProjectInfo(form);
  if (form.IsUnloaded()) return;  // Outlook quit during a question
  if (!errors.empty()) {
    utility_->ShowMessage(
        L"The " + WorkUnit + L" Information cannot be saved... \r\n" + errors.substr(2),
        L"Cannot Save", MessageButtons::Ok, MessageIcon::Information);
    return;
  }
  if (!WriteProjectInfo(form)) return;
  ShowSavedProject();
  form.Unload();
}

std::wstring clsPostrove::ValidateProjectInfo(forms::frmProjInfo& form) {
  std::wstring errors;
  const auto require = [&errors](bool present, const std::wstring& message) {
    if (!present) errors += L"\r\n" + message;
  };
  forms::Control& box = form.txtProjInfo(forms::kProjInfoNumber);
  const std::wstring number = text::Trim(box.Text());
  // Any count of projects may do without a number.
  if (!text::EqualsIgnoreCase(ProjInfoMode, kEdit) && !number.empty() &&
      IsExisitingProjectNumber(number)) {
    require(false, L"-Select a different " + WorkUnit + L" Number.");
    box.Select(0, static_cast<int>(box.Text().size()));
    forms_->SetFocus(box);
  }
  require(!text::IsBlank(form.txtProjInfo(forms::kProjInfoName).Text()),
          L"-You must select a " + WorkUnit + L" Name.");
  const std::wstring folder = text::Trim(form.txtProjInfo(forms::kProjInfoFolder).Text());
  require(!folder.empty(), L"-You must select a " + WorkUnit + L" Folder.");
  const std::wstring fault = FolderFault(folder);
  require(folder.empty() || fault.empty(), L"-" + fault);
  const std::wstring drive = DriveProblem(folder, WorkUnit + L" Folder");
  require(drive.empty(), drive);
  return errors;
}

bool clsPostrove::WriteProjectInfo(forms::frmProjInfo& form) {
  const forms::WaitCursor wait(*forms_);
  ProjectNumber = text::Trim(form.txtProjInfo(forms::kProjInfoNumber).Text());
  ProjectName = text::Trim(form.txtProjInfo(forms::kProjInfoName).Text());
  ProjFilePath = text::Trim(form.txtProjInfo(forms::kProjInfoFolder).Text());
  const bool edited = text::EqualsIgnoreCase(ProjInfoMode, kEdit);
  Active = !edited || form.chkProjActive.Checked();
  if (!edited) ProjectID = 0;
  return ProjectInfoSave(edited);
}

void clsPostrove::ShowSavedProject() {
  std::vector<Project> temporary;
  for (const Project& project : ProjectList) {
    if (project.temporary) temporary.push_back(project);
  }
  GetProjectList();

  // The very row that was written: another one may have its number.
  const Project saved = CurrentProject();
  const auto row = std::find_if(ProjectList.rbegin(), ProjectList.rend(), [&](const Project& one) {
    return one.number == saved.number && one.name == saved.name && one.filePath == saved.filePath;
  });
  if (row != ProjectList.rend()) {
    SelectProject(static_cast<int>(ProjectList.rend() - row) - 1);
  } else if (Active) {
    ProjectList.push_back(saved);  // written, but the list cannot be read
  }
  ProjectList.insert(ProjectList.end(), temporary.begin(), temporary.end());
  if (!frmPostroveEvent_) return;  // Outlook quit during a report
  const Raised filling(filling_);
  FillProjectCombo(frmPostroveEvent_->cboPostrove);
  // A message that is being filed keeps the folder and the name that the user gave it.
  if (ProjInfoMode == kAddManual) {
    ShowProject(*frmPostroveEvent_);
  } else {
    FillSaveFields(*frmPostroveEvent_);
  }
  typedProject_ = false;
}

void clsPostrove::frmProjInfoEvent_ButtonMouseDown(int Index, int Button, int, float, float) {
  ignoreFieldEvents_ = Index == forms::kProjInfoCancel && Button == kLeftMouseButton;
}

void clsPostrove::frmProjInfoEvent_BrowseClicked(int) {
  WithProjectInfo(L"frmProjInfoEvent_BrowseClicked()",
                  [this](forms::frmProjInfo&) { BrowseFor(BrowseTarget::ProjectFolder); });
}

void clsPostrove::frmProjInfoEvent_ProjInfoFieldChange(int Index) {
  WithProjectInfo(L"frmProjInfoEvent_ProjInfoFieldChange()",
                  [Index](forms::frmProjInfo& form) { MarkProjectInfoField(form, Index); });
}

void clsPostrove::frmProjInfoEvent_FormActivate() {
  WithProjectInfo(L"frmProjInfoEvent_FormActivate()", [this](forms::frmProjInfo& form) {
    forms::Control& name = form.txtProjInfo(forms::kProjInfoName);
    forms_->SetFocus(name);
    // What is typed replaces a name that is only a proposal.
    if (text::EqualsIgnoreCase(ProjInfoMode, kAdd)) {
      name.Select(0, static_cast<int>(name.Text().size()));
    }
  });
}

void clsPostrove::frmProjInfoEvent_ProjInfoWebLabelClick(const std::wstring& Caption) {
  WithProjectInfo(L"frmProjInfoEvent_ProjInfoWebLabelClick()",
                  [&](forms::frmProjInfo&) { utility_->OpenDocument(forms::LinkTarget(Caption)); });
}

void clsPostrove::frmProjInfoEvent_ProjActiveClicked() {}
void clsPostrove::frmProjInfoEvent_ProjInfoFieldGotFocus(int) {}
void clsPostrove::frmProjInfoEvent_ProjInfoFieldLostFocus(int) {}

}  // namespace postrove
