#include "oledb/accessor.h"

#include <oledberr.h>

#include <cstring>

#include "oledb/cell.h"

namespace standin {

DBBINDSTATUS Accessors::Check(const DBBINDING& binding) const {
  constexpr DBPART kParts = DBPART_VALUE | DBPART_LENGTH | DBPART_STATUS;
  if (binding.iOrdinal < 1 || binding.iOrdinal > columnCount_) return DBBINDSTATUS_BADORDINAL;
  // Lengths or states alone are not offered.
  if (!(binding.dwPart & DBPART_VALUE) || (binding.dwPart & ~static_cast<DBPART>(kParts)) != 0 ||
      binding.dwMemOwner != DBMEMOWNER_CLIENTOWNED || binding.dwFlags != 0 || binding.pTypeInfo ||
      binding.pObject || binding.pBindExt) {
    return DBBINDSTATUS_BADBINDINFO;
  }
  return CanStoreAs(binding.wType) ? DBBINDSTATUS_OK : DBBINDSTATUS_UNSUPPORTEDCONVERSION;
}

HRESULT Accessors::Create(DBACCESSORFLAGS flags, DBCOUNTITEM count, const DBBINDING bindings[],
                          HACCESSOR* accessor, DBBINDSTATUS status[]) {
  if (!accessor || (count > 0 && !bindings)) return E_INVALIDARG;
  *accessor = DB_NULL_HACCESSOR;
  if (flags & DBACCESSOR_PASSBYREF) return DB_E_BYREFACCESSORNOTSUPPORTED;
  if ((flags & ~static_cast<DBACCESSORFLAGS>(DBACCESSOR_OPTIMIZED)) != DBACCESSOR_ROWDATA) {
    return DB_E_BADACCESSORFLAGS;
  }
  if (count == 0) return DB_E_NULLACCESSORNOTSUPPORTED;
  bool isGood = true;
  for (DBCOUNTITEM i = 0; i < count; ++i) {
    const DBBINDSTATUS checked = Check(bindings[i]);
    if (status) status[i] = checked;
    isGood = isGood && checked == DBBINDSTATUS_OK;
  }
  if (!isGood) return DB_E_ERRORSOCCURRED;
  accessors_[++last_] = {std::vector<DBBINDING>(bindings, bindings + count), 1};
  *accessor = last_;
  return S_OK;
}

HRESULT Accessors::AddRef(HACCESSOR accessor, DBREFCOUNT* references) {
  const auto found = accessors_.find(accessor);
  if (found == accessors_.end()) return DB_E_BADACCESSORHANDLE;
  ++found->second.references;
  if (references) *references = found->second.references;
  return S_OK;
}

HRESULT Accessors::Release(HACCESSOR accessor, DBREFCOUNT* references) {
  const auto found = accessors_.find(accessor);
  if (found == accessors_.end()) return DB_E_BADACCESSORHANDLE;
  const DBREFCOUNT left = --found->second.references;
  if (left == 0) accessors_.erase(found);
  if (references) *references = left;
  return S_OK;
}

HRESULT Accessors::GetBindings(HACCESSOR accessor, DBACCESSORFLAGS* flags, DBCOUNTITEM* count,
                               DBBINDING** bindings) const {
  if (!flags || !count || !bindings) return E_INVALIDARG;
  const std::vector<DBBINDING>* const found = Find(accessor);
  if (!found) return DB_E_BADACCESSORHANDLE;
  const size_t size = found->size() * sizeof(DBBINDING);
  *bindings = static_cast<DBBINDING*>(CoTaskMemAlloc(size));
  if (!*bindings) return E_OUTOFMEMORY;
  std::memcpy(*bindings, found->data(), size);
  *count = found->size();
  *flags = DBACCESSOR_ROWDATA;
  return S_OK;
}

const std::vector<DBBINDING>* Accessors::Find(HACCESSOR accessor) const {
  const auto found = accessors_.find(accessor);
  return found == accessors_.end() ? nullptr : &found->second.bindings;
}

}  // namespace standin
