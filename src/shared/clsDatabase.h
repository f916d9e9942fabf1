#pragma once

#include <string>

namespace postrove {

// The shared database object (held in gDatabase): where and how the project database is reached.
// It lives as long as the server is loaded. Thread: Outlook's user-interface thread only.
class clsDatabase {
 public:
  virtual ~clsDatabase() = default;

  std::wstring DbType;      // "Access" or "SQLServer", compared without regard to case
  std::wstring Provider;    // OLE DB provider name
  std::wstring DBServer;    // data source
  std::wstring DbName;      // database name, or the file name of an Access database
  std::wstring UID;         // user id
  std::wstring Pwd;         // password
  std::wstring DBPath;      // folder of the Access database, with its trailing backslash
  std::wstring DBFullPath;  // folder followed by file name
};

}  // namespace postrove
