#include "oledb/command.h"

#include "oledb/rowset.h"
#include "oledb/statement_text.h"

namespace standin {

HRESULT Command::Execute(IUnknown* outer, REFIID iid, DBPARAMS* parameters, DBROWCOUNT* affected,
                         IUnknown** rowset) {
  return Entry("Execute", [&]() -> HRESULT {
    if (affected) *affected = DB_COUNTUNAVAILABLE;
    if (rowset) *rowset = nullptr;
    if (outer) return DB_E_NOAGGREGATION;
    if (iid != IID_NULL && !rowset) return E_INVALIDARG;
    if (text_.empty()) return DB_E_NOCOMMAND;
    if (parameters && parameters->cParamSets > 0) return DB_E_NOTSUPPORTED;
    CheckStatementText(text_);
    auto statement = std::make_unique<Statement>(connection_, text_);
    if (statement->Columns().empty()) {
      if (affected) *affected = statement->AffectedRows();
      return S_OK;
    }
    if (iid == IID_NULL) return S_OK;
    return Give<Rowset>(iid, reinterpret_cast<void**>(rowset), std::move(statement));
  });
}

HRESULT Command::SetCommandText(REFGUID dialect, LPCOLESTR text) {
  return Entry("SetCommandText", [&]() -> HRESULT {
    if (dialect != DBGUID_DEFAULT) return DB_E_DIALECTNOTSUPPORTED;
    text_ = text ? text : L"";
    return S_OK;
  });
}

HRESULT Command::SetProperties(ULONG count, DBPROPSET sets[]) {
  return Entry("SetProperties", [&]() -> HRESULT {
    for (ULONG i = 0; i < count; ++i) {
      for (ULONG k = 0; k < sets[i].cProperties; ++k) {
        DBPROP& property = sets[i].rgProperties[k];
        const bool isLimit = sets[i].guidPropertySet == DBPROPSET_ROWSET &&
                             property.dwPropertyID == DBPROP_COMMANDTIMEOUT &&
                             V_VT(&property.vValue) == VT_I4;
        property.dwStatus = isLimit ? DBPROPSTATUS_OK : DBPROPSTATUS_NOTSUPPORTED;
        if (!isLimit) return DB_E_ERRORSOCCURRED;
        if (faultHook) faultHook->SetProperty(property.dwPropertyID, property.vValue);
      }
    }
    return S_OK;
  });
}

}  // namespace standin
