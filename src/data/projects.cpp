#include "data/projects.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "data/project_sql.h"
#include "shared/text.h"

namespace postrove {

namespace {

// 0 for what a whole number cannot hold.
std::int64_t Whole(double number) {
  return std::fabs(number) < 9e18 ? static_cast<std::int64_t>(number) : 0;
}

// A field as text, without the blanks that a fixed-width column pads it with. A text is taken out
// of the cell.
std::wstring TextOf(Cell&& cell) {
  if (auto* words = std::get_if<std::wstring>(&cell)) {
    words->resize(words->find_last_not_of(L' ') + 1);  // none found is -1
    return std::move(*words);
  }
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return text::FromNumber(*whole);
  if (const auto* number = std::get_if<double>(&cell)) return text::FromNumber(Whole(*number));
  if (const auto* flag = std::get_if<bool>(&cell)) return *flag ? L"True" : L"False";
  return {};
}

// A number, a Boolean, or the text of either; NULL and anything else is 0.
std::int64_t NumberOf(const Cell& cell) {
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return *whole;
  if (const auto* number = std::get_if<double>(&cell)) return Whole(*number);
  if (const auto* flag = std::get_if<bool>(&cell)) return *flag ? -1 : 0;
  if (const auto* words = std::get_if<std::wstring>(&cell)) {
    if (text::EqualsIgnoreCase(text::Trim(*words), L"true")) return -1;
    return Whole(text::LeadingNumber(*words));
  }
  return 0;
}

// A row's key. 0 for what is not written like a whole number: another row could have what is left.
std::int64_t KeyOf(Cell&& cell) {
  if (const auto* whole = std::get_if<std::int64_t>(&cell)) return *whole;
  const std::int64_t key = NumberOf(cell);
  return TextOf(std::move(cell)) == text::FromNumber(key) ? key : 0;
}

constexpr std::size_t kFields = 5;

}  // namespace

void Projects::GetProjectList() {
  ProjectList.clear();
  listIsKnown_ = false;
  if (!location_.IsFound()) return;
  listIsKnown_ = Reporting(utility_, L"clsPostrove", L"GetProjectList()", [this] {
    std::vector<Project> list;  // a failure can come after some rows
    database_.ReadRecordset(sql::ListProjects(database_.DbType), [&list](Row& row) {
      if (row.size() < kFields) {
        throw Error(kSubscriptOutOfRange, L"GetProjectList()",
                    L"The project list has fewer columns than it should.");
      }
      list.push_back({TextOf(std::move(row[0])), TextOf(std::move(row[1])),
                      TextOf(std::move(row[2])), NumberOf(row[3]) != 0, KeyOf(std::move(row[4]))});
    });
    ProjectList = std::move(list);
  });
}

Project Projects::Reread(const Project& written) {
  std::vector<Project> temporary;
  std::copy_if(ProjectList.begin(), ProjectList.end(), std::back_inserter(temporary),
               [](const Project& one) { return one.temporary; });
  GetProjectList();
  Project listed = written;
  const auto row = std::find_if(ProjectList.rbegin(), ProjectList.rend(), [&](const Project& one) {
    return one.number == written.number && one.name == written.name &&
           one.filePath == written.filePath;
  });
  if (row != ProjectList.rend()) {
    listed = *row;
  } else if (written.active) {
    ProjectList.push_back(written);  // the list cannot be read
  }
  ProjectList.insert(ProjectList.end(), temporary.begin(), temporary.end());
  return listed;
}

std::wstring Projects::GetNewProjectNumber() {
  std::wstring number;
  Reporting(utility_, L"clsPostrove", L"GetNewProjectNumber()", [&] {
    location_.Require();
    Rows rows = database_.OpenRecordset(sql::GreatestProjectNumber());
    if (rows.empty() || rows[0].empty()) return;
    number = sql::NextProjectNumber(TextOf(std::move(rows[0][0])));
  });
  return number;
}

bool Projects::IsExisitingProjectNumber(const std::wstring& number) {
  bool refused = false;
  Reporting(utility_, L"clsPostrove", L"IsExisitingProjectNumber()", [&] {
    location_.Require();
    // An apostrophe would end the text in the statement, and a server may run what follows it.
    if (number.find(L'\'') != std::wstring::npos) {
      throw Error(kInvalidArgument, L"IsExisitingProjectNumber()",
                  L"A " + settings_.WorkUnit + L" Number with an apostrophe cannot be looked for.");
    }
    if (database_.OpenRecordset(sql::FindProjectNumber(number)).empty()) return;
    refused =
        utility_.ShowMessage(L"The " + settings_.WorkUnit +
                                 L" Number already exists. Do you want to add a duplicate?",
                             L"Existing " + settings_.WorkUnit + L" Number", MessageButtons::YesNo,
                             MessageIcon::Information) == MessageAnswer::No;
  });
  return refused;
}

bool Projects::ProjectInfoSave(const Project& project, bool edited) {
  bool saved = false;
  Reporting(utility_, L"clsPostrove", L"ProjectInfoSave()", [&] {
    location_.Require();
    const sql::ProjectRow row{project.number, project.name, project.filePath, project.active};
    const std::wstring& type = database_.DbType;
    const std::int64_t changed = database_.Execute(
        edited ? sql::UpdateProject(row, project.id, type) : sql::InsertProject(row, type));
    saved = !edited || changed != 0;
    if (saved) return;
    utility_.ShowMessage(L"The " + settings_.WorkUnit +
                             L" was not saved, because it is no longer in the database: somebody "
                             L"deleted it. Cancel, and add it as a new " +
                             settings_.WorkUnit + L" if it is still needed.",
                         L"Cannot Save", MessageButtons::Ok, MessageIcon::Information);
  });
  return saved;
}

const Project* Projects::FindProject(const std::wstring& number, const std::wstring& name) const {
  if (number.empty() && text::IsBlank(name)) return nullptr;
  const auto row = std::find_if(ProjectList.begin(), ProjectList.end(), [&](const Project& one) {
    return number.empty() ? text::EqualsIgnoreCase(one.name, name)
                          : text::EqualsIgnoreCase(one.number, number);
  });
  return row == ProjectList.end() ? nullptr : &*row;
}

}  // namespace postrove
