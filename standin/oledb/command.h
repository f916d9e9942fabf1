#pragma once

#include <memory>
#include <string>

#include "oledb/com_object.h"
#include "oledb/odbc.h"

namespace standin {

// A statement, which is run once or more.
class Command : public ComObject<ICommandText, ICommandProperties> {
 public:
  explicit Command(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

  HRESULT STDMETHODCALLTYPE Cancel() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Execute(IUnknown* outer, REFIID iid, DBPARAMS* parameters,
                                    DBROWCOUNT* affected, IUnknown** rowset) override;
  HRESULT STDMETHODCALLTYPE GetDBSession(REFIID, IUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCommandText(GUID*, LPOLESTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetCommandText(REFGUID dialect, LPCOLESTR text) override;

  HRESULT STDMETHODCALLTYPE GetProperties(const ULONG, const DBPROPIDSET[], ULONG*,
                                          DBPROPSET**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG count, DBPROPSET sets[]) override;

 private:
  const std::shared_ptr<Connection> connection_;
  std::wstring text_;
};

}  // namespace standin
