#include "controller/project_choice.h"

#include <algorithm>

#include "controller/parse_subject.h"
#include "controller/project_box.h"
#include "controller/project_folder.h"
#include "controller/save_dialog_look.h"
#include "shared/file_name.h"
#include "shared/raised.h"
#include "shared/text.h"

namespace postrove {

void ProjectChoice::ProposeFromSubject() {
  if (filing_.subject.empty()) return;
  filing_.saveAsName = filing_.subject;
  const Settings& settings = data_.settings;
  if (!settings.UseQuillion()) return;
  const SubjectParts parts =
      ParseSubject(filing_.subject, {settings.ProjDelim, settings.SubjDelim, settings.WorkUnit});
  filing_.saveAsName = parts.AreComplete() ? parts.saveAsName : parts.subject;
  filing_.project.number = parts.projectNumber;
  filing_.project.name = parts.projectName;
  if (!filing_.project.number.empty()) ResolveSubjectProject();
}

void ProjectChoice::ResolveSubjectProject() {
  Project& current = filing_.project;
  if (const Project* listed = data_.projects.FindProject(current.number, current.name)) {
    if (filing_.typedProject) {
      current.filePath = FolderOf(data_.settings, *listed);
    } else {
      SelectProject(*listed);
    }
    return;
  }
  if (data_.settings.UseQuillion()) {
    TellTemporaryProject();
  } else if (AskToAddProject()) {
    Project proposal = current;
    if (proposal.filePath.empty()) {
      proposal.filePath = text::NormaliseFolder(FolderOfNumber(data_.settings, proposal.number));
    }
    proposal.active = true;
    OpenProjectInfo(ProjInfoMode::addmanual, proposal);
    if (CurrentRow()) return;  // added
  }
  AddTemporaryProject();
}

void ProjectChoice::TellTemporaryProject() const {
  const std::wstring& unit = data_.settings.WorkUnit;
  const Project& current = filing_.project;
  utility_.ShowMessage(text::Quoted(current.number + data_.settings.ProjDelim + current.name) +
                           L" is not an existing project. \r\n\r\nIt will be added to the " + unit +
                           L" List as a temporary " + unit +
                           L" for this Email. \r\nTo make it a permanent " + unit + L", Add the " +
                           unit + L" in Quillion.",
                       unit + L" Not Found", MessageButtons::Ok, MessageIcon::Information);
}

bool ProjectChoice::AskToAddProject() const {
  const std::wstring& unit = data_.settings.WorkUnit;
  const std::wstring quoted = text::Quoted(filing_.project.name);
  return utility_.ShowMessage(unit + L" name " + quoted +
                                  L" was not found in the Database . \r\n\r\nYou may:\r\n"
                                  L"   -Click 'Yes' to add it to the Postrove database or\r\n"
                                  L"   -Click 'No' to use it as a temporary " +
                                  unit + L" for this Email.\r\n\r\nDo you want to add " + quoted +
                                  L" to the database?",
                              unit + L" Not Found", MessageButtons::YesNo,
                              MessageIcon::Question) == MessageAnswer::Yes;
}

void ProjectChoice::AddTemporaryProject() {
  Project& current = filing_.project;
  // One that had a row keeps its folder: the list may only be out of reach for a moment.
  if (current.id == 0) {
    current.filePath = text::NormaliseFolder(FolderOfNumber(data_.settings, current.number));
  }
  std::vector<Project>& list = data_.projects.ProjectList;
  list.push_back({current.number, current.name, current.filePath, false, 0, true});
  if (!form_.IsUnloaded()) AppendToProjectCombo(form_.cboPostrove, list);
}

void ProjectChoice::SelectProject(const Project& listed) {
  const std::wstring folder = FolderOf(data_.settings, listed);
  filing_.project = listed;
  filing_.project.filePath = folder;
}

const Project* ProjectChoice::CurrentRow() const {
  return data_.projects.FindProject(filing_.project.number, filing_.project.name);
}

void ProjectChoice::ResolveTypedProject() {
  if (!filing_.typedProject) return;
  filing_.project = TypedProject(form_.cboPostrove.Text());
  if (text::IsBlank(filing_.project.number) && text::IsBlank(filing_.project.name)) return;  // none
  ResolveSubjectProject();
  filing_.typedProject = false;  // asked about once
  // The folder of the project before is not that of the typed one; one that the user chose stays.
  if (!form_.IsUnloaded() && FolderIsProposed()) ProposeFolder();
}

void ProjectChoice::TextChanged(const std::wstring& text) {
  if (!filling_) filing_.typedProject = !text.empty();
}

void ProjectChoice::ChooseListedProject(int row) {
  const std::vector<Project>& list = data_.projects.ProjectList;
  if (row >= 0 && static_cast<std::size_t>(row) < list.size()) {
    SelectProject(list[static_cast<std::size_t>(row)]);
  } else if (row != 0 || !list.empty()) {
    return;  // without a list the box has one item, the current project
  }
  const Raised filling(filling_);
  FillSaveFields();
  filing_.typedProject = false;
}

// A text that was typed or pasted whole may name a listed project: then it is chosen.
void ProjectChoice::ChooseTypedItem() {
  if (!filing_.typedProject) return;
  const std::vector<std::wstring>& items = form_.cboPostrove.Items();
  const auto item = std::find_if(items.begin(), items.end(), [&](const std::wstring& one) {
    return text::EqualsIgnoreCase(one, form_.cboPostrove.Text());
  });
  if (item != items.end()) ChooseListedProject(static_cast<int>(item - items.begin()));
}

void ProjectChoice::FillProjects() {
  const Raised filling(filling_);
  const std::vector<Project>& list = data_.projects.ProjectList;
  FillProjectCombo(form_.cboPostrove, list, filing_.project);
  // A subject without a number can still name a listed project: the one shown is the one meant.
  const int named = form_.cboPostrove.ListIndex();
  if (filing_.project.number.empty() && named >= 0) {
    SelectProject(list[static_cast<std::size_t>(named)]);
  }
  FillSaveFields();
}

void ProjectChoice::FillSaveFields() {
  ShowProject();
  ProposeFolder();
  form_.txtSaveAsName.SetText(filing_.saveAsName);
  MarkSaveAsName(form_);
}

void ProjectChoice::ShowProject() {
  if (!filing_.project.number.empty()) form_.cboPostrove.SetText(ItemText(filing_.project));
}

void ProjectChoice::ProposeFolder() {
  filing_.proposedFolder = MessageFolder(data_.settings, filing_.project);
  form_.txtSaveFolder.SetText(filing_.proposedFolder);
  MarkSaveFolder(form_);
}

bool ProjectChoice::FolderIsProposed() const {
  return text::EqualsIgnoreCase(CleanFolder(form_.txtSaveFolder.Text()),
                                CleanFolder(filing_.proposedFolder));
}

void ProjectChoice::AddProject() { OpenProjectInfo(ProjInfoMode::add, filing_.project); }

void ProjectChoice::EditProject() {
  // A project that was typed or is temporary has no row that could be edited; a row without a key
  // cannot be told from the others.
  if (!filing_.typedProject && filing_.project.id != 0) {
    OpenProjectInfo(ProjInfoMode::edit, filing_.project);
    return;
  }
  const std::wstring& unit = data_.settings.WorkUnit;
  const Project* row = filing_.typedProject ? nullptr : CurrentRow();
  utility_.ShowMessage(
      row && !row->temporary
          ? L"This " + unit +
                L" cannot be edited here: its row in the database has no number in the column "
                L"ProjectID."
          : L"Select the " + unit + L" to edit from the list first.",
      L"Edit a " + unit, MessageButtons::Ok, MessageIcon::Information);
}

void ProjectChoice::OpenProjectInfo(ProjInfoMode mode, const Project& proposal) {
  filing_.saveAsName = form_.txtSaveAsName.Text();
  // Cancelled, it has changed nothing of what is shown here.
  ProjectDialog::Show(data_, utility_, dialogs_, mode, proposal,
                      [&](const Project& saved) { ShowSavedProject(saved, mode); });
  if (!dialogs_.IsOver()) dialogs_.Host().SetFocus(form_.cboPostrove);
}

void ProjectChoice::ShowSavedProject(const Project& saved, ProjInfoMode mode) {
  SelectProject(data_.projects.Reread(saved));
  if (form_.IsUnloaded()) return;  // Outlook quit during a report
  const Raised filling(filling_);
  FillProjectCombo(form_.cboPostrove, data_.projects.ProjectList, filing_.project);
  // A message that is being filed keeps the folder and the name that the user gave it.
  if (mode == ProjInfoMode::addmanual) {
    ShowProject();
  } else {
    FillSaveFields();
  }
  filing_.typedProject = false;
}

void ProjectChoice::FindAgain() {
  // A typed project is looked up when the message is saved.
  if (filing_.typedProject) return;
  const Project& current = filing_.project;
  const std::vector<Project>& list = data_.projects.ProjectList;
  const auto row = std::find_if(list.begin(), list.end(), [&](const Project& one) {
    return one.id == current.id && one.number == current.number &&
           (one.id != 0 || one.name == current.name);
  });
  if (row != list.end()) return SelectProject(*row);
  // A row that nobody can look for now is not one that is gone.
  const bool outOfReach = current.id != 0 && !data_.projects.ListIsKnown();
  if (current.number.empty() || outOfReach) return;
  {
    // The question may bring the project dialog, which looks at the list.
    const Raised filling(filling_);
    const std::wstring shown = form_.cboPostrove.Text();
    FillProjectCombo(form_.cboPostrove, list, current);
    form_.cboPostrove.SetText(shown);
  }
  ResolveSubjectProject();
}

void ProjectChoice::ShowAgain() {
  const Raised filling(filling_);
  forms::Control& combo = form_.cboPostrove;
  const Project& current = filing_.project;
  // Emptied with the change to another database.
  const bool none = current.number.empty() && current.name.empty();
  const std::wstring shown = filing_.typedProject ? combo.Text() : std::wstring();
  FillProjectCombo(combo, data_.projects.ProjectList, current);
  if (filing_.typedProject || none) {
    combo.SetText(shown);
  } else {
    ShowProject();
  }
  if (FolderIsProposed()) ProposeFolder();
}

}  // namespace postrove
