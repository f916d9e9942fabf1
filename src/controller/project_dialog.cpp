#include "controller/project_dialog.h"

#include <utility>

#include "controller/drive_check.h"
#include "controller/folder_questions.h"
#include "controller/handler.h"
#include "controller/required_fields.h"
#include "data/label_places.h"
#include "forms/kit/wait_cursor.h"
#include "forms/web_site.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

ProjectDialog::ProjectDialog(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs,
                             ProjInfoMode mode, const Project& proposal, Saved saved)
    : data_(data),
      utility_(utility),
      dialogs_(dialogs),
      mode_(mode),
      proposal_(proposal),
      saved_(std::move(saved)),
      events_(Listening<forms::frmProjInfoEvents>(*this)),
      form_(std::make_shared<forms::frmProjInfo>(events_)) {}

void ProjectDialog::Show(OfficeData& data, clsSharedUtil& utility, DialogStack& dialogs,
                         ProjInfoMode mode, const Project& proposal, Saved saved) {
  if (dialogs.IsOver()) return;  // Outlook quit during the question
  ProjectDialog dialog(data, utility, dialogs, mode, proposal, std::move(saved));
  dialog.Fill();
  dialogs.ShowAbove(dialog.form_);
}

void ProjectDialog::Fill() {
  const bool add = mode_ == ProjInfoMode::add;
  form_->SetCaption((mode_ == ProjInfoMode::edit ? L"Edit a " : L"Add a ") +
                    data_.settings.WorkUnit);
  form_->chkProjActive.SetVisible(!add);
  form_->chkProjActive.SetChecked(proposal_.active);

  std::wstring hints;
  for (int field = 0; field < forms::kProjInfoFields; ++field) {
    const auto label = static_cast<std::size_t>(field);
    forms::Control& caption = form_->lblFieldLabel(field);
    caption.SetText(data_.labels.Text(labels::kProjectDialog, label, caption.Text()));
    hints +=
        L"\r\n" + data_.labels.Text(labels::kProjectDialog, label + forms::kProjInfoFields, {});
  }
  form_->rtfFieldHints.SetText(L"Hint:" + hints);

  const bool proposes = add || (mode_ == ProjInfoMode::addmanual && proposal_.number.empty());
  form_->txtProjInfo(forms::kProjInfoNumber)
      .SetText(proposes ? data_.projects.GetNewProjectNumber() : proposal_.number);
  form_->txtProjInfo(forms::kProjInfoName).SetText(add ? L"New Project" : proposal_.name);
  form_->txtProjInfo(forms::kProjInfoFolder)
      .SetText(add ? data_.settings.Root : proposal_.filePath);
  for (int field = 0; field < forms::kProjInfoFields; ++field) Mark(field);
}

void ProjectDialog::Mark(int field) {
  CheckRequired(form_->txtProjInfo(field), form_->lblFieldLabel(field), form_->lblAlert(field));
}

std::wstring ProjectDialog::Entry(int field) const {
  return text::Trim(form_->txtProjInfo(field).Text());
}

void ProjectDialog::frmProjInfoEvent_ButtonClicked(int Index) {
  Handle(utility_, *form_, L"frmProjInfoEvent_ButtonClicked()", [&] {
    form_->rtfFieldHints.SetText({});
    switch (Index) {
      case forms::kProjInfoSave:
        return SaveClicked();
      case forms::kProjInfoCancel:
        form_->Unload();
        return;
      default:
        utility_.OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp_files/howtouse.htm");
    }
  });
}

void ProjectDialog::SaveClicked() {
  const std::wstring& unit = data_.settings.WorkUnit;
  const std::wstring faults = Faults();
  if (form_->IsUnloaded()) return;  // Outlook quit during a question
  if (!faults.empty()) {
    utility_.ShowMessage(
        L"The " + unit + L" Information cannot be saved... \r\n" + faults.substr(2), L"Cannot Save",
        MessageButtons::Ok, MessageIcon::Information);
    return;
  }
  const bool edited = mode_ == ProjInfoMode::edit;
  const Project project{Entry(forms::kProjInfoNumber), Entry(forms::kProjInfoName),
                        Entry(forms::kProjInfoFolder), !edited || form_->chkProjActive.Checked(),
                        edited ? proposal_.id : 0};
  {
    const forms::WaitCursor wait(dialogs_.Host());
    if (!data_.projects.ProjectInfoSave(project, edited)) return;
  }
  saved_(project);
  form_->Unload();
}

// What keeps the project from being saved, a line each.
std::wstring ProjectDialog::Faults() {
  const std::wstring& unit = data_.settings.WorkUnit;
  std::wstring faults;
  const auto require = [&faults](bool present, const std::wstring& message) {
    if (!present) faults += L"\r\n" + message;
  };
  const std::wstring number = Entry(forms::kProjInfoNumber);
  // Any count of projects may do without a number.
  if (mode_ != ProjInfoMode::edit && !number.empty() &&
      data_.projects.IsExisitingProjectNumber(number)) {
    require(false, L"-Select a different " + unit + L" Number.");
    forms::Control& box = form_->txtProjInfo(forms::kProjInfoNumber);
    box.Select(0, static_cast<int>(box.Text().size()));
    dialogs_.Host().SetFocus(box);
  }
  require(!text::IsBlank(form_->txtProjInfo(forms::kProjInfoName).Text()),
          L"-You must select a " + unit + L" Name.");
  const std::wstring folder = Entry(forms::kProjInfoFolder);
  require(!folder.empty(), L"-You must select a " + unit + L" Folder.");
  const std::wstring fault = FolderFault(folder);
  require(folder.empty() || fault.empty(), L"-" + fault);
  const std::wstring drive = DriveProblem(utility_, folder, unit + L" Folder");
  require(drive.empty(), drive);
  return faults;
}

void ProjectDialog::frmProjInfoEvent_BrowseClicked(int) {
  Handle(utility_, *form_, L"frmProjInfoEvent_BrowseClicked()", [this] {
    const auto folder = BrowseForFolder(
        dialogs_, utility_,
        L"Select the Folder for the " + data_.settings.WorkUnit + L" Files and Emails:");
    if (folder) form_->txtProjInfo(forms::kProjInfoFolder).SetText(text::NormaliseFolder(*folder));
  });
}

void ProjectDialog::frmProjInfoEvent_ProjInfoFieldChange(int Index) {
  Handle(utility_, *form_, L"frmProjInfoEvent_ProjInfoFieldChange()", [&] { Mark(Index); });
}

void ProjectDialog::frmProjInfoEvent_FormActivate() {
  Handle(utility_, *form_, L"frmProjInfoEvent_FormActivate()", [this] {
    forms::Control& name = form_->txtProjInfo(forms::kProjInfoName);
    dialogs_.Host().SetFocus(name);
    // What is typed replaces a name that is only a proposal.
    if (mode_ == ProjInfoMode::add) name.Select(0, static_cast<int>(name.Text().size()));
  });
}

void ProjectDialog::frmProjInfoEvent_ProjInfoWebLabelClick(const std::wstring& Caption) {
  Handle(utility_, *form_, L"frmProjInfoEvent_ProjInfoWebLabelClick()",
         [&] { utility_.OpenDocument(forms::LinkTarget(Caption)); });
}

}  // namespace postrove
