#include "controller/clsPostrove.h"
#include "data/project_sql.h"
#include "shared/text.h"

// The controller's database settings: where the project database is and how it is reached.
namespace postrove {

namespace {

constexpr wchar_t kJetProvider[] = L"Microsoft.Jet.OLEDB.4.0";
constexpr wchar_t kOwnDatabase[] = L"Postrove.mdb";
constexpr wchar_t kBreak[] = L"\r\n";

}  // namespace

void clsPostrove::GetDataBaseSettings() {
  databaseFound_ = Reporting(*utility_, L"clsPostrove", L"GetDataBaseSettings()", [this] {
    if (useQuillion_) {
      ReadSharedDatabaseSettings();
    } else {
      ReadOwnDatabaseSettings();
    }
    database_->DBServer = database_->DBFullPath;
    database_->Prepare();
  });
}

std::wstring clsPostrove::OwnDatabaseFolder() {
  return text::NormaliseFolder(ReadSetup(L"PostroveDBPath", LocalFolder(), utility_->IniFile()));
}

bool clsPostrove::OwnDatabaseExists() {
  return utility_->FileExists(OwnDatabaseFolder(), kOwnDatabase);
}

void clsPostrove::RequireDatabase() const {
  if (databaseFound_ && database_->IsReady()) return;
  throw Error(kObjectNotSet, L"clsDatabase", L"The project database has not been found.");
}

void clsPostrove::ReadSharedDatabaseSettings() {
  const std::wstring file = utility_->IniFile();
  const auto read = [&](const wchar_t* key, const wchar_t* defaultValue) {
    return utility_->ReadSetting(L"Postrove", L"Database", key, defaultValue, file);
  };
  clsDatabase& database = *database_;
  database.DbType = read(L"Type", L"Access");
  database.Provider = read(L"Provider2", kJetProvider);
  database.DBServer = read(L"DBServer", L"");
  database.DbName = read(L"DbName", L"Quillion");
  database.UID = read(L"UID", L"QLN");
  database.Pwd = read(L"Pwd", L"xbt");
  database.DBFullPath =
      utility_->ReadSetting(L"Quillion", L"FilePathsMDB", L"1", L"Quillion.mdb", file);
  if (text::EqualsIgnoreCase(database.DbType, L"SQLServer")) {
    database.DBPath = database.DBServer;
  } else {
    const std::size_t slash = database.DBFullPath.rfind(L'\\');
    database.DBPath = slash == std::wstring::npos ? L"" : database.DBFullPath.substr(0, slash + 1);
  }
}

void clsPostrove::ReadOwnDatabaseSettings() {
  const std::wstring file = utility_->IniFile();
  clsDatabase& database = *database_;
  database.DbType = L"Access";
  database.Provider =
      utility_->ReadSetting(L"Postrove", L"Database", L"Provider2", kJetProvider, file);
  database.DbName = kOwnDatabase;
  database.UID = L"admin";
  database.Pwd.clear();
  database.DBPath = OwnDatabaseFolder();
  SearchForDatabase();
  database.DBFullPath = database.DBPath + database.DbName;
}

void clsPostrove::SearchForDatabase() {
  clsDatabase& database = *database_;
  bool found = utility_->FileExists(database.DBPath, database.DbName);
  while (!found) {
    const std::wstring chosen = utility_->BrowseForFolder(
        L"\"" + database.DbName + L"\" was not found in \"" + database.DBPath + L"\"." + kBreak +
        L"Select the Server Folder where the Postrove database is located. " + kBreak +
        L"If not known, ask the person in your organization responsible for your network for the "
        L"location.");
    if (chosen.empty()) {
      throw Error(kFileNotFound, L"clsPostrove.GetDataBaseSettings()",
                  std::wstring(L"You Have Cancelled the \"Set Database Location\" process. ") +
                      kBreak +
                      L"Postrove cannot be loaded. Please contact Marrow Technologies for "
                      L"assistance.");
    }
    database.DBPath = text::NormaliseFolder(chosen);
    found = utility_->FileExists(database.DBPath, database.DbName) &&
            Reporting(*utility_, L"clsPostrove", L"GetDataBaseSettings()",
                      [&] { CheckDatabase(database.DBPath); });
    if (found) {
      WriteSetupToBoth(L"PostroveDBPath", database.DBPath, utility_->IniFile(), LocalIniFile());
    }
  }
}

// A file of the right name can be half a database, or none. Throws Error for what cannot be read;
// the database object is prepared for the file all the same.
void clsPostrove::CheckDatabase(const std::wstring& folder) {
  database_->DBFullPath = folder + database_->DbName;
  database_->Prepare();
  try {
    database_->ReadRecordset(sql::ListProjects(database_->DbType), [](Row&) {});
  } catch (const Error& error) {
    throw Error(error.Number(), error.Source(),
                text::Quoted(database_->DBFullPath) + L" cannot be used as the project database. " +
                    error.Description());
  }
}

}  // namespace postrove
