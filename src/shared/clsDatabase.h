#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "shared/empty.h"

namespace postrove {

// One value of a row. The empty alternative is a NULL.
using Cell = std::variant<Empty, bool, std::int64_t, double, std::wstring>;

// The fields of a row in the order of the statement, and the rows of a query; none is empty.
using Row = std::vector<Cell>;
using Rows = std::vector<Row>;

// The shared database object (held in gDatabase): where and how the project database is reached,
// and the two operations on it. It lives as long as the server is loaded.
//
// A connection is opened for each operation and closed with it: nothing stays open that has gone
// away meanwhile, no lock file is left beside a shared database, and its file can be moved.
// Errors: Error with the HRESULT and the provider's own description; where no provider could be
// used, the description names those that were tried and the width of the process.
// Thread: Outlook's user-interface thread only.
class clsDatabase {
 public:
  virtual ~clsDatabase() = default;

  std::wstring DbType;      // "Access" or "SQLServer", compared without regard to case
  std::wstring Provider;    // OLE DB provider name
  std::wstring DBServer;    // data source
  std::wstring DbName;      // database name, or the file name of an Access database
  std::wstring UID;         // user id
  std::wstring Pwd;         // password
  std::wstring DBPath;      // folder of the Access database with its backslash; SQL Server's name
  std::wstring DBFullPath;  // folder followed by file name

  // Takes the properties above as they are now for the operations that follow. Never fails: what is
  // wrong with them shows when an operation connects.
  virtual void Prepare() = 0;

  // True once Prepare has run.
  virtual bool IsReady() const = 0;

  // Runs a query and hands each row to `visit`, which may take the cells. A failure can come after
  // some rows; what `visit` throws ends the query and is passed on.
  virtual void ReadRecordset(const std::wstring& statement,
                             const std::function<void(Row& row)>& visit) = 0;

  // Runs a query: all its rows.
  Rows OpenRecordset(const std::wstring& statement) {
    Rows rows;
    ReadRecordset(statement, [&rows](Row& row) { rows.push_back(std::move(row)); });
    return rows;
  }

  // Runs a statement that gives no rows back (option value 128 of the original interface). The
  // number of rows that it changed, -1 when the provider does not tell.
  virtual std::int64_t Execute(const std::wstring& statement) = 0;
};

}  // namespace postrove
