#include "data/project_sql.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "shared/text.h"

namespace postrove::sql {

namespace {

// A text value in single quotes, those in it doubled.
std::wstring Quoted(const std::wstring& value) {
  return L"'" + text::Replace(value, L"'", L"''") + L"'";
}

bool IsSqlServer(const std::wstring& dbType) {
  return text::EqualsIgnoreCase(dbType, L"SQLServer");
}

std::wstring Boolean(bool value, const std::wstring& dbType) {
  const std::wstring word = value ? L"True" : L"False";
  return IsSqlServer(dbType) ? Quoted(word) : word;
}

// The value of the last `count` characters, or of all when there are fewer; nothing when one is not
// a digit.
std::optional<int> Tail(std::wstring_view number, std::size_t count) {
  if (number.empty()) return std::nullopt;
  int value = 0;
  for (const wchar_t c : number.substr(number.size() - count)) {
    if (c < L'0' || c > L'9') return std::nullopt;
    value = value * 10 + (c - L'0');
  }
  return value;
}

}  // namespace

std::wstring ListProjects(const std::wstring& dbType) {
  std::wstring statement =
      L"SELECT P.[Project Number], P.[Project Name], P.ProjFilePath, P.Active, P.ProjectID "
      L"FROM Project AS P "
      L"WHERE P.[Project Number] <> '0' ";
  statement += IsSqlServer(dbType) ? L"AND P.Active = 'true' " : L"AND P.Active ";
  return statement + L"ORDER BY P.[Project Name]";
}

std::wstring GreatestProjectNumber() { return L"SELECT max([Project Number]) FROM Project;"; }

std::wstring FindProjectNumber(const std::wstring& number) {
  return L"SELECT [Project Number] FROM Project WHERE [Project Number] = '" + number + L"'; ";
}

std::wstring InsertProject(const ProjectRow& row, const std::wstring& dbType) {
  return L"INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, [Active]) "
         L"VALUES (" +
         Quoted(row.number) + L", " + Quoted(row.name) + L", " + Quoted(row.filePath) + L", " +
         Boolean(row.active, dbType) + L");";
}

std::wstring UpdateProject(const ProjectRow& row, std::int64_t id, const std::wstring& dbType) {
  return L"UPDATE Project SET [Project Number] = " + Quoted(row.number) + L", [Project Name] = " +
         Quoted(row.name) + L", [ProjFilePath] = " + Quoted(row.filePath) + L", [Active] = " +
         Boolean(row.active, dbType) + L" WHERE ProjectID = " + text::FromNumber(id) + L";";
}

std::wstring NextProjectNumber(const std::wstring& greatest) {
  // A longer tail is tried only when the shorter one is all nines.
  int limit = 9;
  for (std::size_t count = 1; count <= 3; ++count, limit = limit * 10 + 9) {
    const std::size_t length = std::min(count, greatest.size());
    const std::optional<int> tail = Tail(greatest, length);
    if (!tail) return {};
    if (*tail < limit) {
      return text::Trim(greatest.substr(0, greatest.size() - length)) + text::FromNumber(*tail + 1);
    }
  }
  return {};
}

}  // namespace postrove::sql
