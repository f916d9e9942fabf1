#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/database_location.h"

namespace postrove {

// A project, as a row of the list or as the user describes it.
struct Project {
  std::wstring number;
  std::wstring name;
  std::wstring filePath;  // its folder; may be empty
  bool active = false;
  std::int64_t id = 0;     // its key in the database; 0 when it has none that can be used
  bool temporary = false;  // in the list for one message only
  bool operator==(const Project&) const = default;
};

// The project list and the table that it is read from.
class Projects {
 public:
  Projects(clsDatabase& database, clsSharedUtil& utility, const DatabaseLocation& location,
           const Settings& settings)
      : database_(database), utility_(utility), location_(location), settings_(settings) {}

  std::vector<Project> ProjectList;

  // Reads the project list; without a database, or after a failure, which is reported, it is empty.
  void GetProjectList();

  // True when the last reading succeeded: then what the list lacks is not in the database.
  bool ListIsKnown() const { return listIsKnown_; }

  // The same, for a project that was written just now: temporary projects stay in the list, behind
  // the others, and the very row that was written is answered, since another one may have its
  // number. Where the list does not show it, an active one is added to it.
  Project Reread(const Project& written);

  // The next free project number. Empty when there is none to propose; failures are reported.
  std::wstring GetNewProjectNumber();

  // True when the number exists and the user does not want it twice. Failures are reported and
  // answer false.
  bool IsExisitingProjectNumber(const std::wstring& number);

  // Writes a project: over the row with its key when `edited`, else as a new row. False when it
  // failed or that row is gone, which is reported.
  bool ProjectInfoSave(const Project& project, bool edited);

  // The first row that matches, ignoring case: by number, or by name when the number is empty. Null
  // when there is none. The list must not change while the answer is used.
  const Project* FindProject(const std::wstring& number, const std::wstring& name) const;

 private:
  clsDatabase& database_;
  clsSharedUtil& utility_;
  const DatabaseLocation& location_;
  const Settings& settings_;
  bool listIsKnown_ = false;
};

}  // namespace postrove
