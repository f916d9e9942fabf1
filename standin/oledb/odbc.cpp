#include "oledb/odbc.h"

#include <oledberr.h>

#include <algorithm>
#include <iterator>

#include "oledb/error.h"

namespace standin {

namespace {

std::string ToUtf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  std::string result(text.size() * 3, '\0');
  result.resize(
      static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(),
                                              static_cast<int>(result.size()), nullptr, nullptr)));
  return result;
}

std::wstring FromUtf8(const std::string& text) {
  const int length = static_cast<int>(text.size());
  std::wstring result(text.size(), L'\0');
  result.resize(static_cast<size_t>(
      MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), length)));
  return result;
}

SQLCHAR* Bytes(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

template <size_t size>
std::wstring FromUtf8(const SQLCHAR (&text)[size]) {
  return FromUtf8(std::string(reinterpret_cast<const char*>(text)));
}

// Whether a column of this ODBC type holds yes/no values, whole numbers, numbers, bytes or else
// texts.
DBTYPE ProviderType(SQLSMALLINT type) {
  switch (type) {
    case SQL_BIT:
      return DBTYPE_BOOL;
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return DBTYPE_I4;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return DBTYPE_R8;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return DBTYPE_BYTES;
    default:
      return DBTYPE_WSTR;
  }
}

// The path by which the ODBC driver, a program of the host, knows the file.
std::string UnixPath(const std::wstring& path) {
  using Translate = char*(CDECL*)(LPCWSTR);
  const auto address = GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name");
  const auto translate = reinterpret_cast<Translate>(reinterpret_cast<void*>(address));
  char* const translated = translate ? translate(path.c_str()) : nullptr;
  if (!translated) throw ProviderError(E_FAIL, L"Only Wine can translate '" + path + L"'.");
  const std::string result = translated;
  HeapFree(GetProcessHeap(), 0, translated);
  return result;
}

}  // namespace

OdbcHandle::OdbcHandle(SQLSMALLINT kind, SQLHANDLE parent) : kind_(kind) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_))) {
    throw ProviderError(E_FAIL, L"ODBC is not available.");
  }
}

OdbcHandle::~OdbcHandle() { SQLFreeHandle(kind_, handle_); }

void OdbcHandle::Check(SQLRETURN result, HRESULT code) const {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  SQLCHAR state[6] = {}, text[1024] = {};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN told = SQLGetDiagRec(kind_, handle_, 1, state, &native, text,
                                       static_cast<SQLSMALLINT>(std::size(text)), &length);
  throw ProviderError(code,
                      SQL_SUCCEEDED(told) ? FromUtf8(text) : L"The ODBC driver gives no reason.");
}

Connection::Environment::Environment() : OdbcHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE) {
  Check(SQLSetEnvAttr(Get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
        E_FAIL);
}

Connection::Connection(const std::wstring& path) : connection_(SQL_HANDLE_DBC, environment_.Get()) {
  std::string text = "DRIVER={SQLite3};NoCreat=1;Timeout=5000;Database=" + UnixPath(path);
  connection_.Check(SQLDriverConnect(connection_.Get(), nullptr, Bytes(text), SQL_NTS, nullptr, 0,
                                     nullptr, SQL_DRIVER_NOPROMPT),
                    E_FAIL);
}

Connection::~Connection() { SQLDisconnect(connection_.Get()); }

Statement::Statement(std::shared_ptr<Connection> connection, const std::wstring& text)
    : connection_(std::move(connection)), statement_(SQL_HANDLE_STMT, connection_->Get()) {
  const SQLHANDLE handle = statement_.Get();
  std::string bytes = ToUtf8(text);
  statement_.Check(SQLPrepare(handle, Bytes(bytes), SQL_NTS), DB_E_ERRORSINCOMMAND);
  SQLSMALLINT parameters = 0;
  statement_.Check(SQLNumParams(handle, &parameters), DB_E_ERRORSINCOMMAND);
  if (parameters > 0) {
    throw ProviderError(DB_E_PARAMNOTOPTIONAL,
                        L"No value given for one or more required parameters.");
  }
  statement_.Check(SQLExecute(handle), DB_E_ERRORSINCOMMAND);
  SQLSMALLINT count = 0;
  statement_.Check(SQLNumResultCols(handle, &count), E_FAIL);
  for (SQLSMALLINT i = 1; i <= count; ++i) {
    columns_.push_back(Describe(static_cast<SQLUSMALLINT>(i)));
  }
}

DBROWCOUNT Statement::AffectedRows() const {
  SQLLEN rows = -1;
  statement_.Check(SQLRowCount(statement_.Get(), &rows), E_FAIL);
  return rows;
}

Column Statement::Describe(SQLUSMALLINT number) const {
  SQLCHAR name[256] = {}, declared[256] = {};
  SQLSMALLINT length = 0, type = 0, scale = 0, nullable = 0;
  SQLULEN size = 0;
  statement_.Check(
      SQLDescribeCol(statement_.Get(), number, name, static_cast<SQLSMALLINT>(std::size(name)),
                     &length, &type, &size, &scale, &nullable),
      E_FAIL);
  statement_.Check(SQLColAttribute(statement_.Get(), number, SQL_DESC_TYPE_NAME, declared,
                                   static_cast<SQLSMALLINT>(std::size(declared)), &length, nullptr),
                   E_FAIL);
  const std::wstring kind = FromUtf8(declared);
  return {FromUtf8(name), ProviderType(type), lstrcmpiW(kind.c_str(), L"MEMO") == 0,
          lstrcmpiW(kind.c_str(), L"XML") == 0};
}

std::vector<Cell> Statement::Next() {
  const SQLRETURN fetched = SQLFetch(statement_.Get());
  statement_.Check(fetched, E_FAIL);
  if (fetched == SQL_NO_DATA) return {};
  std::vector<Cell> cells;
  for (size_t i = 1; i <= columns_.size(); ++i) cells.push_back(Read(static_cast<SQLUSMALLINT>(i)));
  return cells;
}

Cell Statement::Read(SQLUSMALLINT number) const {
  const auto get = [&](SQLSMALLINT type, auto value) -> Cell {
    SQLLEN indicator = 0;
    statement_.Check(SQLGetData(statement_.Get(), number, type, &value, sizeof value, &indicator),
                     E_FAIL);
    if (indicator == SQL_NULL_DATA) return {};
    return value;
  };
  switch (columns_[number - 1].type) {
    case DBTYPE_BOOL: {
      const Cell bit = get(SQL_C_SBIGINT, std::int64_t{0});
      const auto* value = std::get_if<std::int64_t>(&bit);
      return value ? Cell(*value != 0) : Cell();
    }
    case DBTYPE_I4:
      return get(SQL_C_SBIGINT, std::int64_t{0});
    case DBTYPE_R8:
      return get(SQL_C_DOUBLE, 0.0);
    default: {
      bool isNull = false;
      std::wstring text = ReadText(number, isNull);
      return isNull ? Cell() : Cell(std::move(text));
    }
  }
}

std::wstring Statement::ReadText(SQLUSMALLINT number, bool& isNull) const {
  std::string text;
  for (;;) {
    SQLCHAR part[2048] = {};
    SQLLEN length = 0;
    const SQLRETURN result =
        SQLGetData(statement_.Get(), number, SQL_C_CHAR, part, sizeof part, &length);
    statement_.Check(result, E_FAIL);
    if (result == SQL_NO_DATA) break;
    isNull = length == SQL_NULL_DATA;
    if (isNull) break;
    text += reinterpret_cast<const char*>(part);
    if (result == SQL_SUCCESS) break;
  }
  return FromUtf8(text);
}

}  // namespace standin
