#include "controller/clsPostrove.h"
#include "shared/text.h"

namespace postrove {

namespace {

// A combo item or text: "name: number", the name alone without a number.
std::wstring ItemText(const std::wstring& name, const std::wstring& number) {
  if (number.empty()) return name;
  constexpr std::wstring_view kBetween = L": ";
  std::wstring item;
  item.reserve(name.size() + kBetween.size() + number.size());  // there can be very many items
  return item.append(name).append(kBetween).append(number);
}

// Takes a prefix of exactly these letters off a text.
void StripPrefix(std::wstring& subject, std::wstring_view prefix) {
  if (subject.starts_with(prefix)) subject.erase(0, prefix.size());
}

}  // namespace

bool clsPostrove::ParseSubject(std::wstring& subject) {
  constexpr auto npos = std::wstring::npos;
  StripPrefix(subject, L"RE: ");
  StripPrefix(subject, L"FW: ");

  // An empty delimiter separates nothing.
  const std::size_t projectAt = ProjDelim.empty() ? npos : subject.find(ProjDelim);
  const std::size_t subjectAt = SubjDelim.empty() ? npos : subject.find(SubjDelim);

  // With the hyphen a project number may itself hold one, so it ends at the second. -1: no number.
  long long numberLength = -1;
  if (projectAt != npos) {
    std::size_t end = projectAt;
    if (ProjDelim == L"-") end = subject.find(L'-', projectAt + 1);
    if (end != npos) numberLength = static_cast<long long>(end);
    if (numberLength > 0) ProjectNumber = subject.substr(0, end);
  }
  if (subjectAt != npos) {
    SaveAsName = subject.substr(subjectAt + SubjDelim.size());
    if (projectAt != npos) {
      const long long nameAt = static_cast<long long>(ProjDelim.size()) + numberLength;
      const long long nameLength = static_cast<long long>(subjectAt) - nameAt;
      if (nameLength < 0) {
        throw Error(kInvalidArgument, L"clsPostrove.ParseSubject()",
                    L"The subject " + text::Quoted(subject) + L" has " + text::Quoted(SubjDelim) +
                        L" before the end of the " + WorkUnit + L". Take " +
                        text::Quoted(SubjDelim) +
                        L" out of the subject, in the message's own window, and click again.");
      }
      ProjectName =
          subject.substr(static_cast<std::size_t>(nameAt), static_cast<std::size_t>(nameLength));
    }
  }
  return !ProjectNumber.empty() && !ProjectName.empty() && !SaveAsName.empty();
}

int clsPostrove::FindProject(const std::wstring& number, const std::wstring& name) const {
  if (number.empty() && text::IsBlank(name)) return -1;
  for (std::size_t row = 0; row < ProjectList.size(); ++row) {
    const Project& project = ProjectList[row];
    const bool match = number.empty() ? text::EqualsIgnoreCase(project.name, name)
                                      : text::EqualsIgnoreCase(project.number, number);
    if (match) return static_cast<int>(row);
  }
  return -1;
}

void clsPostrove::ResolveSubjectProject() {
  const int row = FindProject(ProjectNumber, ProjectName);
  if (row >= 0) {
    if (!typedProject_) {
      SelectProject(row);
    } else {
      ProjFilePath = FolderOf(ProjectList[static_cast<std::size_t>(row)]);
    }
    return;
  }
  if (useQuillion_) {
    TellTemporaryProject();
  } else if (AskToAddProject()) {
    if (ProjFilePath.empty()) ProjFilePath = text::NormaliseFolder(FolderOfNumber(ProjectNumber));
    ProjInfoMode = L"addmanual";
    Active = true;
    OpenProjectInfo();
    if (FindProject(ProjectNumber, ProjectName) >= 0) return;  // added, and current
  }
  AddTemporaryProject();
}

void clsPostrove::TellTemporaryProject() {
  utility_->ShowMessage(text::Quoted(ProjectNumber + ProjDelim + ProjectName) +
                            L" is not an existing project. \r\n\r\nIt will be added to the " +
                            WorkUnit + L" List as a temporary " + WorkUnit +
                            L" for this Email. \r\nTo make it a permanent " + WorkUnit +
                            L", Add the " + WorkUnit + L" in Quillion.",
                        WorkUnit + L" Not Found", MessageButtons::Ok, MessageIcon::Information);
}

bool clsPostrove::AskToAddProject() {
  const std::wstring quoted = text::Quoted(ProjectName);
  return utility_->ShowMessage(WorkUnit + L" name " + quoted +
                                   L" was not found in the Database . \r\n\r\nYou may:\r\n"
                                   L"   -Click 'Yes' to add it to the Postrove database or\r\n"
                                   L"   -Click 'No' to use it as a temporary " +
                                   WorkUnit + L" for this Email.\r\n\r\nDo you want to add " +
                                   quoted + L" to the database?",
                               WorkUnit + L" Not Found", MessageButtons::YesNo,
                               MessageIcon::Question) == MessageAnswer::Yes;
}

void clsPostrove::AddTemporaryProject() {
  ProjFilePath = text::NormaliseFolder(FolderOfNumber(ProjectNumber));
  ProjectList.push_back({ProjectNumber, ProjectName, ProjFilePath, false, 0, true});
  if (!frmPostroveEvent_) return;
  forms::Control& combo = frmPostroveEvent_->cboPostrove;
  const std::wstring item = ItemText(ProjectName, ProjectNumber);
  // An empty list shows one item that stands for no row.
  if (ProjectList.size() == 1) {
    combo.SetItems({item});
  } else {
    combo.AddItem(item);
  }
}

// The number can come from a stranger's subject: it names one folder below the root, never a way
// out of it, and the same one whether its project is listed or not. FillSaveFields adds the
// backslash.
std::wstring clsPostrove::FolderOfNumber(const std::wstring& number) const {
  return settingsRead_ ? Root + utility_->MakeFileName(number) : std::wstring();
}

std::wstring clsPostrove::FolderOf(const Project& project) const {
  return project.filePath.empty() ? FolderOfNumber(project.number)
                                  : text::NormaliseFolder(project.filePath);
}

void clsPostrove::SelectProject(int row) {
  const Project& project = ProjectList.at(static_cast<std::size_t>(row));
  TakeProject({project.number, project.name, FolderOf(project), project.active, project.id});
}

Project clsPostrove::CurrentProject() const {
  return {ProjectNumber, ProjectName, ProjFilePath, Active, ProjectID};
}

void clsPostrove::TakeProject(const Project& project) {
  ProjectNumber = project.number;
  ProjectName = project.name;
  ProjFilePath = project.filePath;
  Active = project.active;
  ProjectID = project.id;
}

void clsPostrove::ClearProject() {
  TakeProject({});
  SaveAsName.clear();
}

void clsPostrove::FillProjectCombo(forms::Control& combo) {
  std::vector<std::wstring> items;
  items.reserve(ProjectList.size());
  int selected = -1;
  for (std::size_t row = 0; row < ProjectList.size(); ++row) {
    const Project& project = ProjectList[row];
    items.push_back(ItemText(project.name, project.number));
    const bool current = ProjectNumber.empty()
                             ? project.name == ProjectName && !text::IsBlank(ProjectName)
                             : project.number == ProjectNumber;
    if (current) selected = static_cast<int>(row);
  }
  if (items.empty()) items.push_back(ItemText(ProjectName, ProjectNumber));
  combo.SetItems(std::move(items));
  combo.SetListIndex(selected);
}

void clsPostrove::ProposeFolder(forms::frmPostrove& form) {
  // Without settings neither part is known.
  const std::wstring& folder = ProjFilePath.empty() ? Root : ProjFilePath;
  proposedFolder_ = settingsRead_ ? text::NormaliseFolder(folder) + EmailFolder : std::wstring();
  form.txtSaveFolder.SetText(proposedFolder_);
  if (proposedFolder_.empty()) frmPostroveEvent_SaveFolderChanged();
}

void clsPostrove::ShowProject(forms::frmPostrove& form) {
  if (!ProjectNumber.empty()) form.cboPostrove.SetText(ItemText(ProjectName, ProjectNumber));
}

void clsPostrove::FillSaveFields(forms::frmPostrove& form) {
  ShowProject(form);
  if (form.cboPostrove.Text().empty()) frmPostroveEvent_ProjectComboChange({});
  ProposeFolder(form);
  form.txtSaveAsName.SetText(SaveAsName);
  if (form.txtSaveAsName.Text().empty()) frmPostroveEvent_SaveAsNameChanged();
}

}  // namespace postrove
