#pragma once

#include <windows.h>

#define SQL_NOUNICODEMAP  // texts go as UTF-8: the way of wide ones loses characters
#include <sql.h>
#include <sqlext.h>

#include <memory>
#include <string>
#include <vector>

#include "oledb/cell.h"

namespace standin {

// An ODBC handle of one kind and its end.
class OdbcHandle {
 public:
  // `parent` is the environment of a connection, the connection of a statement, SQL_NULL_HANDLE for
  // an environment. Throws ProviderError when ODBC gives none.
  OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent);
  ~OdbcHandle();
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;

  SQLHANDLE Get() const { return handle_; }

  // Throws ProviderError with `code` and the driver's text unless the result of a call is a
  // success.
  void Check(SQLRETURN result, HRESULT code) const;

 private:
  SQLSMALLINT kind_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

// An open SQLite file.
class Connection {
 public:
  // `path` is whole, as Windows programs know it. Never makes a file. Throws ProviderError.
  explicit Connection(const std::wstring& path);
  ~Connection();

  SQLHANDLE Get() const { return connection_.Get(); }

 private:
  struct Environment : OdbcHandle {
    Environment();
  };

  Environment environment_;
  OdbcHandle connection_;
};

struct Column {
  std::wstring name;
  DBTYPE type;      // BOOL, I4, R8, WSTR or, for binary data, BYTES
  bool isLong;      // declared MEMO
  bool isTextOnly;  // declared XML: not long, but only to be had as a text
};

// A statement that was run.
class Statement {
 public:
  // Throws ProviderError with DB_E_ERRORSINCOMMAND and the driver's text, or DB_E_PARAMNOTOPTIONAL
  // when the text has parameter markers.
  Statement(std::shared_ptr<Connection> connection, const std::wstring& text);

  const std::vector<Column>& Columns() const { return columns_; }  // none: it gives no rows
  DBROWCOUNT AffectedRows() const;

  // The values of the next row; none at the end. Throws ProviderError.
  std::vector<Cell> Next();

 private:
  Column Describe(SQLUSMALLINT number) const;
  Cell Read(SQLUSMALLINT number) const;
  std::wstring ReadText(SQLUSMALLINT number, bool& isNull) const;

  std::shared_ptr<Connection> connection_;
  OdbcHandle statement_;
  std::vector<Column> columns_;
};

}  // namespace standin
