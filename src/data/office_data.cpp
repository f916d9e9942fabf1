#include "data/office_data.h"

#include <algorithm>

#include "shared/text.h"

namespace postrove {

OfficeData::OfficeData(clsDatabase& connection, clsSharedUtil& utility)
    : settings(utility),
      database(connection, utility, settings),
      labels(utility, settings),
      projects(connection, utility, database, settings),
      connection_(connection),
      utility_(utility) {}

void OfficeData::Start(clsRegistry& registry) {
  settings.FindFolders(registry);
  // What cannot be read now is told at the first click, which tries again: a share that comes up
  // after Outlook is the ordinary case, and Outlook puts add-ins out of use that hold up its start.
  TryToRead(Search::Ask);
}

void OfficeData::LocateSettingsFile() {
  Read(Search::Ask);
  projects.GetProjectList();
}

void OfficeData::Read(Search search) {
  const clsSharedUtil::ReadingOnce once(utility_);
  database.Forget();
  projects.ProjectList.clear();
  settings.Read();
  if (settings.UseQuillion() || search == Search::Ask || database.OwnExists()) {
    database.GetDataBaseSettings();
  }
  labels.LoadLabels();
}

void OfficeData::TryToRead(Search search) {
  try {
    Read(search);
  } catch (const Error&) {
    if (settings.AreRead()) throw;
  }
}

void OfficeData::ReadMissing() {
  if (!settings.AreRead()) {
    TryToRead(Search::Ask);
  } else if (!database.IsFound() && !settings.UseQuillion()) {
    // A search that the user cancelled is not begun again at every click.
    TryToRead(Search::IfThere);
  }
  TellTroubles();
}

void OfficeData::Reload() {
  TryToRead(Search::Ask);
  projects.GetProjectList();
}

void OfficeData::TellTroubles() {
  settings.Trouble().Tell(utility_, L"LocateSettingsFile()",
                          L"Until the settings can be read no folder is proposed. Each click on "
                          L"the button tries again.");
  labels.Trouble().Tell(utility_, L"LoadLabels()", L"The dialogs keep the texts that they have.");
}

bool OfficeData::PostroveDefaultsSave(int index, const std::wstring& value) {
  const bool stored = Reporting(utility_, L"clsPostrove", L"PostroveDefaultsSave()", [&] {
    const std::wstring message = Store(index, value);
    LocateSettingsFile();
    if (!message.empty()) {
      utility_.ShowMessage(message, L"Postrove Database Location Changed", MessageButtons::Ok,
                           MessageIcon::Information);
    }
  });
  if (!stored) settings.Trouble().WasTold();
  TellTroubles();
  return stored;
}

// Answers the message to show once everything is read again.
std::wstring OfficeData::Store(int index, const std::wstring& value) {
  // These two go to the local file; another settings folder is the way out when the old one is
  // gone.
  if (index != kSettingsField && index != kSharingField) settings.RequireRead();
  switch (index) {
    case kRootField:
    case kProjDelimField:
    case kSubjDelimField:
    case kEmailFolderField:
    case kSharingField:
      settings.Write(static_cast<SettingField>(index), value);
      break;
    case kDatabaseField: {
      const std::wstring folder = text::NormaliseFolder(value);
      if (!database.SetNewDbLocation(folder)) break;
      return L"You have changed the database location to " + folder + L".\r\n";
    }
    case kSettingsField:
      StoreSettingsFolder(text::NormaliseFolder(value));
      break;
    case kWorkUnitField: {
      settings.Write(kWorkUnitField, value);
      const std::vector<std::wstring> known = labels.WorkUnitTypes();
      const bool isKnown = std::any_of(known.begin(), known.end(), [&](const std::wstring& one) {
        return text::EqualsIgnoreCase(one, value);
      });
      if (!isKnown) labels.AddWorkUnitType(value);
      break;
    }
    default:
      break;
  }
  return {};
}

// The file that was current stays, for those who still use it; it tells where this one went.
void OfficeData::StoreSettingsFolder(const std::wstring& folder) {
  const std::wstring before = utility_.IniFile();
  if (!settings.SetNewIniLocation(folder)) return;
  settings.Write(kSettingsField, folder);
  // One that was deleted, with its folder perhaps, does not come back for that.
  if (settings.AreRead() && utility_.FileSize(before) >= 0) {
    settings.WriteIn(before, kSettingsField, folder);
  }
}

std::wstring OfficeData::CurrentDefault(int field) const {
  switch (field) {
    case kDatabaseField:
      return connection_.DBPath;
    case kSettingsField:
      return settings.CurrentFolder();
    default:
      return settings.Value(static_cast<SettingField>(field));
  }
}

}  // namespace postrove
