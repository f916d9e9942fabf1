#pragma once

#include <string>

#include "oledb/com_object.h"
#include "oledb/properties.h"

namespace standin {

class Session;

// A statement and what its rows are to be like. Neither can change while a rowset of it is open.
class Command : public ComObject<ICommandText, ICommandProperties> {
 public:
  explicit Command(ComPtr<Session> session);

  void RowsetOpened() { ++openRowsets_; }
  void RowsetClosed() { --openRowsets_; }

  // Also ICommand, from which ICommandText derives.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

  HRESULT STDMETHODCALLTYPE Cancel() override;
  HRESULT STDMETHODCALLTYPE Execute(IUnknown* outer, REFIID iid, DBPARAMS* parameters,
                                    DBROWCOUNT* affected, IUnknown** rowset) override;
  HRESULT STDMETHODCALLTYPE GetDBSession(REFIID iid, IUnknown** session) override;
  HRESULT STDMETHODCALLTYPE GetCommandText(GUID* dialect, LPOLESTR* text) override;
  HRESULT STDMETHODCALLTYPE SetCommandText(REFGUID dialect, LPCOLESTR text) override;

  HRESULT STDMETHODCALLTYPE GetProperties(const ULONG count, const DBPROPIDSET asked[],
                                          ULONG* gotCount, DBPROPSET** got) override;
  HRESULT STDMETHODCALLTYPE SetProperties(ULONG count, DBPROPSET sets[]) override;

 private:
  ComPtr<Session> session_;
  std::wstring text_;
  Properties properties_;
  std::atomic<long> openRowsets_{0};
};

}  // namespace standin
