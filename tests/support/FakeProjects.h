#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "data/project_sql.h"
#include "memory/FakeDatabase.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove::testing {

// The table Project as a database keeps it: lists, finds, adds and changes rows by the product's
// own statements.
class FakeProjects {
 public:
  Rows rows{{L"2231", L"Mill Street", L"", true, std::int64_t{7}},
            {L"7", L"Harbour", L"D:\\Files", true, std::int64_t{8}},
            {L"", L"Library", L"P:\\Lib", true, std::int64_t{9}},
            {L"2231", L"Annex", L"D:\\Annex", true, std::int64_t{10}},
            {L"9", L"Hall", L"", true, std::int64_t{11}}};
  bool away = false;  // the server does not answer
  Row written;        // the last one; empty: none

  Rows Answer(const RanStatement& ran, const std::wstring& type) {
    if (away) throw Error(static_cast<long>(0x80004005), L"Test", L"The server is away.");
    if (ran.text == sql::ListProjects(type)) {
      Rows listed;
      for (const Row& row : rows) {
        if (std::get<bool>(row[3])) listed.push_back(row);
      }
      return listed;
    }
    if (ran.query) {
      return ran.text == sql::FindProjectNumber(L"2231") ? Rows{{L"2231"}} : Rows{};
    }
    std::vector<std::wstring> texts;  // the three quoted ones
    for (std::size_t at = ran.text.find(L'\''); at != ran.text.npos;) {
      std::size_t end = at + 1;
      while (ran.text[end] != L'\'' || ran.text[end + 1] == L'\'') {
        end += ran.text[end] == L'\'' ? 2 : 1;
      }
      texts.push_back(text::Replace(ran.text.substr(at + 1, end - at - 1), L"''", L"'"));
      at = ran.text.find(L'\'', end + 1);
    }
    const bool active = ran.text.find(L"True") != ran.text.npos;
    const std::size_t where = ran.text.find(L"ProjectID = ");
    const std::int64_t id = where == ran.text.npos ? static_cast<std::int64_t>(rows.size()) + 7
                                                   : std::stoll(ran.text.substr(where + 12));
    Row row{texts.at(0), texts.at(1), texts.at(2), active, id};
    written = row;
    for (Row& one : rows) {
      if (one[4] == Cell(id)) return one = row, Rows{};
    }
    rows.push_back(row);
    return {};
  }

  // The folders that a text of the project box can stand for: of a listed project that it names
  // whole, else by its number or name; of one that is not listed. The last one written as well.
  std::vector<std::wstring> Folders(const std::wstring& shown, bool whole, const std::wstring& root,
                                    const std::wstring& subfolder) const {
    const std::size_t colon = std::min(shown.find(L':'), shown.size());
    const std::wstring name = text::Trim(shown.substr(0, colon));
    const std::wstring number = colon < shown.size() ? text::Trim(shown.substr(colon + 1)) : L"";
    std::vector<std::wstring> folders;
    const auto add = [&](const std::wstring& own, const std::wstring& ofNumber) {
      const std::wstring project =
          own.empty() ? text::NormaliseFolder(root) + CleanFileName(ofNumber) : own;
      folders.push_back(text::NormaliseFolder(project) + subfolder);
    };
    for (const Row& row : rows) {
      const auto cell = [&](std::size_t i) { return std::get<std::wstring>(row[i]); };
      const std::wstring item = cell(0).empty() ? cell(1) : cell(1) + L": " + cell(0);
      const bool named = number.empty() ? text::EqualsIgnoreCase(cell(1), name)
                                        : text::EqualsIgnoreCase(cell(0), number);
      if (text::EqualsIgnoreCase(item, shown) || (!whole && named)) add(cell(2), cell(0));
    }
    add({}, number);
    if (!whole && !written.empty()) {
      add(std::get<std::wstring>(written[2]), std::get<std::wstring>(written[0]));
    }
    return folders;
  }
};

}  // namespace postrove::testing
