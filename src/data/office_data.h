#pragma once

#include <string>

#include "data/database_location.h"
#include "data/labels.h"
#include "data/projects.h"
#include "data/settings.h"

namespace postrove {

// What an office keeps, and what is read together whenever the settings may have changed: settings,
// database, labels, projects.
// Thread: Outlook's user-interface thread only.
class OfficeData {
 public:
  OfficeData(clsDatabase& database, clsSharedUtil& utility);
  OfficeData(const OfficeData&) = delete;
  OfficeData& operator=(const OfficeData&) = delete;

  Settings settings;
  DatabaseLocation database;
  Labels labels;
  Projects projects;

  // The start: finds the folders and reads all but the project list. Settings that cannot be read
  // now are for the first click to read, and to report.
  void Start(clsRegistry& registry);

  // Chooses the current settings file and reads everything again: settings, where the database is,
  // labels, project list. Throws Error when the settings cannot be read: then nothing is in force
  // and the list is empty.
  void LocateSettingsFile();

  // At a click: reads what could not be read before, and tells once what still cannot.
  void ReadMissing();

  // Stores the value of one field of the setup dialog and reads everything again; the database and
  // the settings file are moved, a new work-unit type joins the known ones. Any index that is no
  // field writes nothing. False after a failure, which is reported; what was written before stays.
  bool PostroveDefaultsSave(int index, const std::wstring& value);

  // After a setting that could not be stored whole: what the files hold is in force.
  void Reload();

  // The value in force for a field of the setup dialog.
  std::wstring CurrentDefault(int field) const;

 private:
  // What becomes of an own database that is not where the settings say: it is searched for with the
  // user, or left missing.
  enum class Search { Ask, IfThere };
  void Read(Search search);
  void TryToRead(Search search);
  void TellTroubles();
  std::wstring Store(int index, const std::wstring& value);
  void StoreSettingsFolder(const std::wstring& folder);

  clsDatabase& connection_;
  clsSharedUtil& utility_;
};

}  // namespace postrove
