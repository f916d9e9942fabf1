#include <utility>

#include "controller/clsPostrove.h"
#include "shared/text.h"

// The controller's settings: which file is current, what is read from it, and writing one setting.
namespace postrove {

std::wstring clsPostrove::LocalFolder() const {
  if (gCommonAppData_.empty()) {
    // Joined to nothing, the rest would lie in the root of whatever drive is current.
    throw Error(kPathFileAccess, L"clsPostrove.LocalFolder()",
                L"The registry does not tell the folder for the data of all users (\"Common "
                L"AppData\").");
  }
  return gCommonAppData_ + L"\\Postrove\\";
}

std::wstring clsPostrove::ReadSetup(const std::wstring& key, const std::wstring& defaultValue,
                                    const std::wstring& file) {
  return utility_->ReadSetting(L"Postrove", L"Setup", key, defaultValue, file);
}

void clsPostrove::WriteSetup(const std::wstring& key, const std::wstring& value,
                             const std::wstring& file) {
  const bool theirs = useQuillion_ && text::EqualsIgnoreCase(file, utility_->IniFile());
  utility_->WriteSetting(L"Postrove", L"Setup", key, value, file,
                         theirs ? ini::Recoding::Refused : ini::Recoding::Allowed);
}

void clsPostrove::WriteSetupToBoth(const std::wstring& key, const std::wstring& value,
                                   const std::wstring& first, const std::wstring& second) {
  WriteSetup(key, value, first);
  WriteSetup(key, value, second);
}

void clsPostrove::LocateSettingsFile() {
  ReadSettings(Search::Ask);
  GetProjectList();
}

void clsPostrove::ReadSettings(Search search) {
  const clsSharedUtil::ReadingOnce once(*utility_);
  settingsRead_ = databaseFound_ = false;
  Root.clear();
  ProjectList.clear();
  try {
    if (!sharingKnown_) useQuillion_ = ReadSharing();
    sharingKnown_ = true;
    ChooseSettingsFile();
  } catch (const Error& error) {
    settingsTrouble_.Met(error);
    throw;
  }
  settingsRead_ = true;
  settingsTrouble_.Over();
  if (useQuillion_ || search == Search::Ask || OwnDatabaseExists()) GetDataBaseSettings();
  ReadDefaults();
}

void clsPostrove::TryToReadSettings(Search search) {
  try {
    ReadSettings(search);
  } catch (const Error&) {
    if (settingsRead_) throw;
  }
}

void clsPostrove::ReadMissingSettings() {
  if (!settingsRead_) {
    TryToReadSettings(Search::Ask);
  } else if (!databaseFound_ && !useQuillion_) {
    // A search that the user cancelled is not begun again at every click.
    TryToReadSettings(Search::IfThere);
  }
  TellTroubles();
}

void clsPostrove::TellTroubles() {
  settingsTrouble_.Tell(*utility_, L"LocateSettingsFile()",
                        L"Until the settings can be read no folder is proposed. Each click on the "
                        L"button tries again.");
  labelTrouble_.Tell(*utility_, L"LoadLabels()", L"The dialogs keep the texts that they have.");
}

// Throws Error when the current file cannot be read. A file that the local one names is there, or
// somewhere else than where it was; only the local file and Quillion's can be missing.
void clsPostrove::ChooseSettingsFile() {
  if (useQuillion_) {
    const bool common = utility_->FolderExists(gCommonAppData_ + L"\\Quillion");
    utility_->SetIniFile(common ? gCommonAppData_ + L"\\Quillion\\Qulln.ini"
                                : gProgramFiles_ + L"\\Quillion\\Qulln.txt");
    utility_->HasSettings(utility_->IniFile());
    return;
  }
  const std::wstring local = LocalIniFile();
  utility_->SetIniFile(local);
  const std::wstring file =
      ReadSetup(L"PostroveSettingsPath", LocalFolder(), local) + L"Postrove.ini";
  utility_->SetIniFile(file);
  const bool found = text::IsRootedPath(file) && utility_->HasSettings(file);
  if (!found && !text::EqualsIgnoreCase(file, local)) {
    throw Error(
        kFileNotFound, L"clsPostrove.LocateSettingsFile()",
        L"The settings file \"" + file + L"\", which \"" + local + L"\" names, was not found.");
  }
}

void clsPostrove::ReadDefaults() {
  const std::wstring file = utility_->IniFile();
  if (useQuillion_) {
    Root = text::NormaliseFolder(
        utility_->ReadSetting(L"Quillion", L"FilePathsPrj", L"1", L"C:\\", file));
    ProjDelim = ReadSetup(L"ProjDelim", kStartProjDelim, file);
    SubjDelim = ReadSetup(L"SubjDelim", kStartSubjDelim, file);
    EmailFolder = text::NormaliseFolder(ReadSetup(L"EmailFolder", kStartEmailFolder, file));
  } else {
    // The delimiters and the e-mail folder keep their start values in this mode.
    Root = text::NormaliseFolder(ReadSetup(L"Root", L"C:\\", file));
  }
  WorkUnit = ReadSetup(L"WorkUnit", kStartWorkUnit, file);
  LoadLabels();
}

bool clsPostrove::PostroveDefaultsSave(int index, const forms::frmSetup& setup) {
  const bool stored = Reporting(*utility_, L"clsPostrove", L"PostroveDefaultsSave()", [&] {
    const std::wstring message = WriteDefault(index, setup);
    LocateSettingsFile();
    if (!message.empty()) {
      utility_->ShowMessage(message, L"Postrove Database Location Changed", MessageButtons::Ok,
                            MessageIcon::Information);
    }
  });
  if (!stored) settingsTrouble_.WasTold();
  TellTroubles();
  return stored;
}

// What the user chose is not stored over settings that nobody could look at.
void clsPostrove::RequireSettings() const {
  if (settingsRead_) return;
  throw Error(
      kPathFileAccess, L"clsPostrove",
      L"The settings file \"" + utility_->IniFile() + L"\" could not be read. Nothing was stored.");
}

// Answers the message to show once everything is reloaded.
std::wstring clsPostrove::WriteDefault(int index, const forms::frmSetup& setup) {
  const std::wstring file = utility_->IniFile();
  const auto typed = [&] { return setup.txtSetup(index).Text(); };
  const auto folder = [&] { return text::NormaliseFolder(typed()); };
  // These two go to the local file; another settings folder is the way out when the old one is
  // gone.
  if (index != forms::kSetupSettings && index != forms::kSetupSharing) RequireSettings();
  switch (index) {
    case forms::kSetupServerFolder:
      WriteSetup(L"Root", folder(), file);
      break;
    case forms::kSetupProjectDelimiter:
      WriteSetup(L"ProjDelim", typed(), file);
      break;
    case forms::kSetupSubjectDelimiter:
      WriteSetup(L"SubjDelim", typed(), file);
      break;
    case forms::kSetupEmailFolder:
      WriteSetup(L"EmailFolder", folder(), file);
      break;
    case forms::kSetupDatabase:
      if (SetNewDbLocation(folder())) {
        database_->DBPath = folder();
        database_->DBFullPath = database_->DBPath + database_->DbName;
        return L"You have changed the database location to " + folder() + L".\r\n";
      }
      break;
    case forms::kSetupSettings:
      // The file that was current stays, for those who still use it; it tells where this one went.
      if (SetNewIniLocation(folder())) {
        WriteSetup(L"PostroveSettingsPath", folder(), LocalIniFile());
        // One that was deleted, with its folder perhaps, does not come back for that.
        if (settingsRead_ && utility_->FileSize(file) >= 0) {
          WriteSetup(L"PostroveSettingsPath", folder(), file);
        }
      }
      break;
    case forms::kSetupWorkType: {
      const std::wstring name = setup.cboWorkType.Text();
      WriteSetup(L"WorkUnit", name, file);
      if (!IsKnownWorkUnit(name)) AddWorkUnitType(name);
      break;
    }
    case forms::kSetupSharing:
      WriteSetup(L"UseQuillion", setup.optDbType(forms::kSetupSiblingDb).Checked() ? L"1" : L"0",
                 LocalIniFile());
      break;
    default:
      break;
  }
  return {};
}

}  // namespace postrove
