#include "controller/clsPostrove.h"
#include "shared/text.h"

// The controller's settings: which file is current, what is read from it, and writing one setting.
namespace postrove {

std::wstring clsPostrove::LocalFile(const wchar_t* name) const {
  return gCommonAppData_ + L"\\Postrove\\" + name;
}

std::wstring clsPostrove::ReadSetup(const std::wstring& key, const std::wstring& defaultValue,
                                    const std::wstring& file) {
  return utility_->ReadSetting(L"Postrove", L"Setup", key, defaultValue, file);
}

void clsPostrove::WriteSetup(const std::wstring& key, const std::wstring& value,
                             const std::wstring& file) {
  utility_->WriteSetting(L"Postrove", L"Setup", key, value, file);
}

void clsPostrove::WriteSetupToBoth(const std::wstring& key, const std::wstring& value,
                                   const std::wstring& first, const std::wstring& second) {
  WriteSetup(key, value, first);
  WriteSetup(key, value, second);
}

void clsPostrove::LocateSettingsFile() {
  std::wstring folder;
  std::wstring name;
  if (useQuillion_) {
    if (utility_->FolderExists(gCommonAppData_ + L"\\Quillion")) {
      folder = gCommonAppData_ + L"\\Quillion\\";
      name = L"Qulln.ini";
    } else {
      folder = gProgramFiles_ + L"\\Quillion\\";
      name = L"Qulln.txt";
    }
  } else {
    folder = ReadSetup(L"PostroveSettingsPath", gCommonAppData_ + L"\\Postrove\\", LocalIniFile());
    name = L"Postrove.ini";
  }
  utility_->SetIniFile(folder + name);
  GetDataBaseSettings();
  ReadDefaults();
  GetProjectList();
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
  WorkUnit = ReadSetup(L"WorkUnit", L"Project", file);
  LoadLabels();
}

bool clsPostrove::PostroveDefaultsSave(int index, const forms::frmSetup& setup) {
  return Reporting(*utility_, L"clsPostrove", L"PostroveDefaultsSave()", [&] {
    const std::wstring message = WriteDefault(index, setup);
    LocateSettingsFile();
    if (!message.empty()) {
      utility_->ShowMessage(message, L"Postrove Database Location Changed", MessageButtons::Ok,
                            MessageIcon::Information);
    }
  });
}

// Answers the message to show once everything is reloaded.
std::wstring clsPostrove::WriteDefault(int index, const forms::frmSetup& setup) {
  const std::wstring file = utility_->IniFile();
  const auto typed = [&] { return setup.txtSetup(index).Text(); };
  const auto folder = [&] { return text::NormaliseFolder(typed()); };
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
        if (utility_->FileSize(file) >= 0) WriteSetup(L"PostroveSettingsPath", folder(), file);
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
