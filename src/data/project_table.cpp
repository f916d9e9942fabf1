#include <utility>

#include "controller/clsPostrove.h"
#include "data/project_sql.h"
#include "shared/text.h"

// The controller's part of the table Project.
namespace postrove {

namespace {

// A field as text, without the blanks that a fixed-width column pads it with. A text is taken out
// of the cell.
std::wstring TextOf(Cell&& cell) {
  if (auto* words = std::get_if<std::wstring>(&cell)) {
    words->resize(words->find_last_not_of(L' ') + 1);  // none found is -1
    return std::move(*words);
  }
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return text::FromNumber(*whole);
  if (const auto* number = std::get_if<double>(&cell)) {
    return text::FromNumber(static_cast<long long>(*number));
  }
  if (const auto* flag = std::get_if<bool>(&cell)) return *flag ? L"True" : L"False";
  return {};
}

// A number, a Boolean, or the text of either; NULL and anything else is 0.
std::int64_t NumberOf(const Cell& cell) {
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return *whole;
  if (const auto* number = std::get_if<double>(&cell)) return static_cast<std::int64_t>(*number);
  if (const auto* flag = std::get_if<bool>(&cell)) return *flag ? -1 : 0;
  if (const auto* words = std::get_if<std::wstring>(&cell)) {
    if (text::EqualsIgnoreCase(text::Trim(*words), L"true")) return -1;
    return static_cast<std::int64_t>(text::LeadingNumber(*words));
  }
  return 0;
}

constexpr std::size_t kFields = 5;

}  // namespace

void clsPostrove::GetProjectList() {
  ProjectList.clear();
  if (!databaseFound_ && !FindDatabaseAgain()) return;
  Reporting(*utility_, L"clsPostrove", L"GetProjectList()", [this] {
    Rows rows = database_->OpenRecordset(sql::ListProjects(database_->DbType));
    ProjectList.reserve(rows.size());
    for (std::vector<Cell>& row : rows) {
      if (row.size() < kFields) {
        throw Error(kSubscriptOutOfRange, L"GetProjectList()",
                    L"The project list has fewer columns than it should.");
      }
      ProjectList.push_back({TextOf(std::move(row[0])), TextOf(std::move(row[1])),
                             TextOf(std::move(row[2])), NumberOf(row[3]) != 0,
                             static_cast<std::int32_t>(NumberOf(row[4]))});
      row = std::vector<Cell>();  // a long list is not held twice
    }
  });
}

std::wstring clsPostrove::GetNewProjectNumber() {
  std::wstring number;
  Reporting(*utility_, L"clsPostrove", L"GetNewProjectNumber()", [&] {
    RequireDatabase();
    Rows rows = database_->OpenRecordset(sql::GreatestProjectNumber());
    if (rows.empty() || rows[0].empty()) return;
    number = sql::NextProjectNumber(TextOf(std::move(rows[0][0])));
  });
  return number;
}

bool clsPostrove::IsExisitingProjectNumber(const std::wstring& number) {
  bool refused = false;
  Reporting(*utility_, L"clsPostrove", L"IsExisitingProjectNumber()", [&] {
    RequireDatabase();
    // An apostrophe would end the text in the statement, and a server may run what follows it.
    if (number.find(L'\'') != std::wstring::npos) {
      throw Error(kInvalidArgument, L"IsExisitingProjectNumber()",
                  L"A " + WorkUnit + L" Number with an apostrophe cannot be looked for.");
    }
    if (database_->OpenRecordset(sql::FindProjectNumber(number)).empty()) return;
    refused = utility_->ShowMessage(
                  L"The " + WorkUnit + L" Number already exists. Do you want to add a duplicate?",
                  L"Existing " + WorkUnit + L" Number", MessageButtons::YesNo,
                  MessageIcon::Information) == MessageAnswer::No;
  });
  return refused;
}

bool clsPostrove::ProjectInfoSave(bool edited) {
  return Reporting(*utility_, L"clsPostrove", L"ProjectInfoSave()", [&] {
    RequireDatabase();
    const sql::ProjectRow row{ProjectNumber, ProjectName, ProjFilePath, Active};
    database_->Execute(edited ? sql::UpdateProject(row, ProjectID) : sql::InsertProject(row));
  });
}

}  // namespace postrove
