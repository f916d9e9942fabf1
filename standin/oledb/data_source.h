#pragma once

#include <memory>
#include <string>

#include "oledb/com_object.h"
#include "oledb/odbc.h"
#include "oledb/properties.h"

namespace standin {

// A database file: closed, with properties to be set, until Initialize; then open until
// Uninitialize or the end. User names and passwords are taken and not looked at: the files have no
// accounts.
class DataSource : public ComObject<IDBInitialize, IDBProperties, IDBCreateSession, IPersist> {
 public:
  DataSource();

  void SessionOpened() { ++openSessions_; }
  void SessionClosed() { --openSessions_; }

  HRESULT STDMETHODCALLTYPE Initialize() override;
  HRESULT STDMETHODCALLTYPE Uninitialize() override;

  HRESULT STDMETHODCALLTYPE GetProperties(ULONG count, const DBPROPIDSET asked[], ULONG* gotCount,
                                          DBPROPSET** got) override;
  HRESULT STDMETHODCALLTYPE GetPropertyInfo(ULONG count, const DBPROPIDSET asked[], ULONG* gotCount,
                                            DBPROPINFOSET** got, OLECHAR** descriptions) override;
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG count, DBPROPSET sets[]) override;

  HRESULT STDMETHODCALLTYPE CreateSession(IUnknown* outer, REFIID iid, IUnknown** session) override;

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;

 private:
  Properties properties_;
  std::shared_ptr<Connection> connection_;
  std::atomic<long> openSessions_{0};
};

}  // namespace standin
