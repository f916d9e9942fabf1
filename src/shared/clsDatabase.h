#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace postrove {

// One value of a row. The empty alternative is a NULL.
using Cell = std::variant<std::monostate, bool, std::int64_t, double, std::wstring>;

// The rows of a query: rows[row][field], fields in the order of the statement. Empty when there are
// none.
using Rows = std::vector<std::vector<Cell>>;

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

  // Runs a query.
  virtual Rows OpenRecordset(const std::wstring& statement) = 0;

  // Runs a statement that gives no rows back (option value 128 of the original interface).
  virtual void Execute(const std::wstring& statement) = 0;
};

}  // namespace postrove
