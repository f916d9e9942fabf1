#pragma once

#include <string>

#include "data/settings.h"
#include "shared/clsDatabase.h"

namespace postrove {

// Where the project database is and how it is reached: what the settings say becomes what the
// database object connects to. Quillion's database, or an own one, a file Postrove.mdb.
class DatabaseLocation {
 public:
  DatabaseLocation(clsDatabase& database, clsSharedUtil& utility, Settings& settings)
      : database_(database), utility_(utility), settings_(settings) {}

  // Fills the database object from the settings. In own mode a missing database is searched for
  // with the user. Failures, a cancelled search among them, are reported.
  void GetDataBaseSettings();

  // True when the last GetDataBaseSettings found one and nothing was forgotten since.
  bool IsFound() const { return found_; }
  void Forget() { found_ = false; }

  // Throws Error when there is none.
  void Require() const;

  // True when the own database is where the settings say.
  bool OwnExists();

  // Moves the own database to another folder, or uses one that is there, after the user agreed.
  // True when it was done; false after a refusal, which leaves everything as it was, or a failure,
  // which is reported as well.
  bool SetNewDbLocation(const std::wstring& folder);

 private:
  void TakeSharedSettings();
  void TakeOwnSettings();
  void SearchForDatabase();
  void Check(const std::wstring& folder);
  bool MoveTo(const std::wstring& folder);

  clsDatabase& database_;
  clsSharedUtil& utility_;
  Settings& settings_;
  bool found_ = false;
};

}  // namespace postrove
