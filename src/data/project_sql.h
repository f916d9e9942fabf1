#pragma once

#include <cstdint>
#include <string>

// The statements on the table Project, as text, and the number that follows the greatest one.
namespace postrove::sql {

// What a project row holds, for writing it.
struct ProjectRow {
  std::wstring number;
  std::wstring name;
  std::wstring filePath;
  bool active = true;
};

// `dbType` is clsDatabase's: a yes/no value is True or False in Access; in SQL Server it is the
// text of it, which the server takes for a text column as well as for a bit.

// Active projects whose number is not "0", sorted by name.
std::wstring ListProjects(const std::wstring& dbType);

std::wstring GreatestProjectNumber();

// The number stands as typed and must not hold an apostrophe.
std::wstring FindProjectNumber(const std::wstring& number);

std::wstring InsertProject(const ProjectRow& row, const std::wstring& dbType);
std::wstring UpdateProject(const ProjectRow& row, std::int64_t id, const std::wstring& dbType);

// The number after the greatest one: its last one to three digits count up, the rest stays. Empty
// when it has no such digits or they are used up.
std::wstring NextProjectNumber(const std::wstring& greatest);

}  // namespace postrove::sql
