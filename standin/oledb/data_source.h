#pragma once

#include <map>
#include <memory>
#include <string>

#include "oledb/com_object.h"
#include "oledb/odbc.h"

namespace standin {

// A database file: closed, with properties to be set, until Initialize. As Jet does without a
// workgroup, it knows one user, Admin, who has no password. A test gives a database more by an INI
// file beside it, "<database>.logins": a line NAME=PASSWORD in section "Users" for each user, and
// in section "Database" the line Password= for a password of the database itself.
class DataSource : public ComObject<IDBInitialize, IDBProperties, IDBCreateSession> {
 public:
  HRESULT STDMETHODCALLTYPE Initialize() override;
  HRESULT STDMETHODCALLTYPE Uninitialize() override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetProperties(ULONG, const DBPROPIDSET[], ULONG*,
                                          DBPROPSET**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetPropertyInfo(ULONG, const DBPROPIDSET[], ULONG*, DBPROPINFOSET**,
                                            OLECHAR**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG count, DBPROPSET sets[]) override;

  HRESULT STDMETHODCALLTYPE CreateSession(IUnknown* outer, REFIID iid, IUnknown** session) override;

 private:
  void CheckLogin(const std::wstring& path);

  std::map<DBPROPID, std::wstring> texts_;
  std::shared_ptr<Connection> connection_;
};

// A session of an initialized data source, whose connection it keeps open.
class Session : public ComObject<IDBCreateCommand> {
 public:
  explicit Session(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

  HRESULT STDMETHODCALLTYPE CreateCommand(IUnknown* outer, REFIID iid, IUnknown** command) override;

 private:
  const std::shared_ptr<Connection> connection_;
};

}  // namespace standin
