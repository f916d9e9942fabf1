#include "data/database_location.h"

#include <iterator>

#include "data/file_move.h"
#include "data/move_question.h"
#include "data/project_sql.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kOwnDatabase[] = L"Postrove.mdb";
constexpr wchar_t kBreak[] = L"\r\n";

// A name for what stays of a moved database.
std::wstring FreeDatedName(clsSharedUtil& utility, const std::wstring& folder) {
  const std::wstring stem = L"Moved_By_Postrove" + utility.Today();
  std::wstring name = stem + L".mdb";
  for (int n = 2; utility.FileExists(folder, name); ++n) {
    name = stem + L"_" + text::FromNumber(n) + L".mdb";
  }
  return folder + name;
}

}  // namespace

void DatabaseLocation::GetDataBaseSettings() {
  found_ = Reporting(utility_, L"clsPostrove", L"GetDataBaseSettings()", [this] {
    database_.Provider = settings_.Provider;
    if (settings_.UseQuillion()) {
      TakeSharedSettings();
    } else {
      TakeOwnSettings();
    }
    database_.DBServer = database_.DBFullPath;
    database_.Prepare();
  });
}

bool DatabaseLocation::OwnExists() { return utility_.FileExists(settings_.DbPath, kOwnDatabase); }

void DatabaseLocation::Require() const {
  if (found_ && database_.IsReady()) return;
  throw Error(kObjectNotSet, L"clsDatabase", L"The project database has not been found.");
}

void DatabaseLocation::TakeSharedSettings() {
  database_.DbType = settings_.DbType;
  database_.DbName = settings_.DbName;
  database_.UID = settings_.Uid;
  database_.Pwd = settings_.Pwd;
  database_.DBFullPath = settings_.DbFile;
  if (text::EqualsIgnoreCase(database_.DbType, L"SQLServer")) {
    database_.DBPath = settings_.DbServer;
  } else {
    database_.DBPath = database_.DBFullPath.substr(0, database_.DBFullPath.rfind(L'\\') + 1);
  }
}

void DatabaseLocation::TakeOwnSettings() {
  database_.DbType = L"Access";
  database_.DbName = kOwnDatabase;
  database_.UID = L"admin";
  database_.Pwd.clear();
  database_.DBPath = settings_.DbPath;
  SearchForDatabase();
  database_.DBFullPath = database_.DBPath + database_.DbName;
}

void DatabaseLocation::SearchForDatabase() {
  bool found = OwnExists();
  while (!found) {
    const std::wstring chosen = utility_.BrowseForFolder(
        L"\"" + database_.DbName + L"\" was not found in \"" + database_.DBPath + L"\"." + kBreak +
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
    database_.DBPath = text::NormaliseFolder(chosen);
    found = utility_.FileExists(database_.DBPath, database_.DbName) &&
            Reporting(utility_, L"clsPostrove", L"GetDataBaseSettings()",
                      [&] { Check(database_.DBPath); });
    if (!found) continue;
    settings_.Write(kDatabaseField, database_.DBPath);
    settings_.WriteIn(settings_.LocalFile(), kDatabaseField, database_.DBPath);
  }
}

// A file of the right name can be half a database, or none. Throws Error for what cannot be read;
// the database object is prepared for the file all the same.
void DatabaseLocation::Check(const std::wstring& folder) {
  database_.DBFullPath = folder + database_.DbName;
  database_.Prepare();
  try {
    database_.ReadRecordset(sql::ListProjects(database_.DbType), [](Row&) {});
  } catch (const Error& error) {
    throw Error(error.Number(), error.Source(),
                text::Quoted(database_.DBFullPath) + L" cannot be used as the project database. " +
                    error.Description());
  }
}

bool DatabaseLocation::SetNewDbLocation(const std::wstring& folder) {
  bool moved = false;
  Reporting(utility_, L"clsPostrove", L"SetNewDbLocation()",
            [&] { moved = !settings_.UseQuillion() && MoveTo(folder); });
  return moved;
}

bool DatabaseLocation::MoveTo(const std::wstring& folder) {
  const std::wstring before = database_.DBPath;
  const std::wstring name = database_.DbName;
  const Move move = PlanMove(utility_, Moved::Database, before + name, folder);
  if (move == Move::Refused) return false;

  const std::wstring files[] = {utility_.IniFile(), settings_.LocalFile()};
  const std::wstring named[] = {settings_.ReadIn(files[0], kDatabaseField, before),
                                settings_.ReadIn(files[1], kDatabaseField, before)};
  std::size_t stored = 0;
  const auto store = [&] {
    for (; stored < std::size(files); ++stored) {
      settings_.WriteIn(files[stored], kDatabaseField, folder);
    }
  };
  const auto takeBack = [&] {
    for (std::size_t i = 0; i < stored; ++i) settings_.WriteIn(files[i], kDatabaseField, named[i]);
  };
  if (move == Move::Copy) {
    MoveDatabase(utility_, before + name, folder + name, FreeDatedName(utility_, before), store,
                 takeBack);
  } else {
    Check(folder);
    try {
      store();
    } catch (const Error&) {
      takeBack();
      throw;
    }
  }
  database_.DBPath = folder;
  database_.DBFullPath = folder + name;
  return true;
}

}  // namespace postrove
