#include "oledb/command.h"

#include <cstring>
#include <memory>

#include "oledb/odbc.h"
#include "oledb/rowset.h"
#include "oledb/session.h"
#include "oledb/statement_text.h"

namespace standin {

Command::Command(ComPtr<Session> session)
    : session_(std::move(session)),
      properties_(DBPROPSET_ROWSET, {{DBPROP_CANHOLDROWS, VT_BOOL, true, false},
                                     {DBPROP_CANFETCHBACKWARDS, VT_BOOL, false, false},
                                     {DBPROP_CANSCROLLBACKWARDS, VT_BOOL, false, false},
                                     {DBPROP_IRowset, VT_BOOL, false, true},
                                     {DBPROP_IAccessor, VT_BOOL, false, true},
                                     {DBPROP_IColumnsInfo, VT_BOOL, false, true},
                                     {DBPROP_ISupportErrorInfo, VT_BOOL, false, true}}) {}

HRESULT Command::QueryInterface(REFIID iid, void** object) {
  return ComObject::QueryInterface(iid == IID_ICommand ? IID_ICommandText : iid, object);
}

HRESULT Command::Cancel() {
  return Entry(IID_ICommandText, [] { return DB_E_CANTCANCEL; });  // nothing runs meanwhile
}

HRESULT Command::Execute(IUnknown* outer, REFIID iid, DBPARAMS* parameters, DBROWCOUNT* affected,
                         IUnknown** rowset) {
  return Entry(IID_ICommandText, [&]() -> HRESULT {
    if (affected) *affected = DB_COUNTUNAVAILABLE;
    if (rowset) *rowset = nullptr;
    if (outer) return DB_E_NOAGGREGATION;
    if (iid != IID_NULL && !rowset) return E_INVALIDARG;
    if (text_.empty()) return DB_E_NOCOMMAND;
    if (parameters && parameters->cParamSets > 0) return DB_E_NOTSUPPORTED;
    CheckStatementText(text_);
    auto statement = std::make_unique<Statement>(session_->OpenConnection(), text_);
    if (statement->Columns().empty()) {
      if (affected) *affected = statement->AffectedRows();
      return S_OK;
    }
    if (iid == IID_NULL) return S_OK;
    const bool canHoldRows = properties_.Value(DBPROP_CANHOLDROWS) == Cell(true);
    return Make<Rowset>(this, std::move(statement), canHoldRows)
        ->QueryInterface(iid, reinterpret_cast<void**>(rowset));
  });
}

HRESULT Command::GetDBSession(REFIID iid, IUnknown** session) {
  return Entry(IID_ICommandText, [&] {
    if (!session) return E_INVALIDARG;
    return session_->QueryInterface(iid, reinterpret_cast<void**>(session));
  });
}

HRESULT Command::GetCommandText(GUID* dialect, LPOLESTR* text) {
  return Entry(IID_ICommandText, [&]() -> HRESULT {
    if (!text) return E_INVALIDARG;
    *text = nullptr;
    if (text_.empty()) return DB_E_NOCOMMAND;
    const size_t size = (text_.size() + 1) * sizeof(OLECHAR);
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc(size));
    if (!*text) return E_OUTOFMEMORY;
    std::memcpy(*text, text_.c_str(), size);
    if (dialect) *dialect = DBGUID_DEFAULT;
    return S_OK;
  });
}

HRESULT Command::SetCommandText(REFGUID dialect, LPCOLESTR text) {
  return Entry(IID_ICommandText, [&]() -> HRESULT {
    if (openRowsets_ > 0) return DB_E_OBJECTOPEN;
    if (dialect != DBGUID_DEFAULT && dialect != DBGUID_SQL) return DB_E_DIALECTNOTSUPPORTED;
    text_ = text ? text : L"";
    return S_OK;
  });
}

HRESULT Command::GetProperties(const ULONG count, const DBPROPIDSET asked[], ULONG* gotCount,
                               DBPROPSET** got) {
  return Entry(IID_ICommandProperties,
               [&] { return properties_.Get(count, asked, gotCount, got); });
}

HRESULT Command::SetProperties(ULONG count, DBPROPSET sets[]) {
  return Entry(IID_ICommandProperties, [&]() -> HRESULT {
    if (openRowsets_ > 0) return DB_E_OBJECTOPEN;
    return properties_.Set(count, sets, false);
  });
}

}  // namespace standin
