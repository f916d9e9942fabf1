#include "oledb/rowset.h"

#include <cstring>

namespace standin {

namespace {

template <typename Item>
Item* Allocate(size_t count) {
  void* const memory = CoTaskMemAlloc(count * sizeof(Item));
  if (!memory) throw std::bad_alloc();
  std::memset(memory, 0, count * sizeof(Item));
  return static_cast<Item*>(memory);
}

}  // namespace

Rowset::~Rowset() {
  if (faultHook && !(rows_.empty() && accessors_.empty())) faultHook->NotGivenBack();
}

HRESULT Rowset::ReleaseRows(DBCOUNTITEM count, const HROW rows[], DBROWOPTIONS[], DBREFCOUNT[],
                            DBROWSTATUS[]) {
  return Entry("ReleaseRows", [&]() -> HRESULT {
    DBCOUNTITEM released = 0;
    for (DBCOUNTITEM i = 0; i < count; ++i) released += rows_.erase(rows[i]);
    return released == count ? S_OK : DB_E_ERRORSOCCURRED;
  });
}

HRESULT Rowset::GetData(HROW row, HACCESSOR accessor, void* data) {
  return Entry("GetData", [&]() -> HRESULT {
    const auto bindings = accessors_.find(accessor);
    if (bindings == accessors_.end()) return DB_E_BADACCESSORHANDLE;
    const auto cells = rows_.find(row);
    if (cells == rows_.end()) return DB_E_BADROWHANDLE;
    size_t good = 0;
    for (const DBBINDING& binding : bindings->second) {
      const DBSTATUS status = Store(cells->second[binding.iOrdinal - 1], binding, data);
      if (status == DBSTATUS_S_OK || status == DBSTATUS_S_ISNULL) ++good;
    }
    if (good == bindings->second.size()) return S_OK;
    return good > 0 ? DB_S_ERRORSOCCURRED : DB_E_ERRORSOCCURRED;
  });
}

HRESULT Rowset::GetNextRows(HCHAPTER chapter, DBROWOFFSET offset, DBROWCOUNT count,
                            DBCOUNTITEM* obtained, HROW** rows) {
  return Entry("GetNextRows", [&]() -> HRESULT {
    *obtained = 0;
    if (chapter != DB_NULL_HCHAPTER || offset != 0 || count <= 0 || !*rows) return E_INVALIDARG;
    if (!rows_.empty()) return DB_E_ROWSNOTRELEASED;
    while (!isAtEnd_ && *obtained < static_cast<DBCOUNTITEM>(count)) {
      std::vector<Cell> cells = statement_->Next();
      isAtEnd_ = cells.empty();
      if (isAtEnd_) break;
      rows_[++lastRow_] = std::move(cells);
      (*rows)[(*obtained)++] = lastRow_;
    }
    return *obtained < static_cast<DBCOUNTITEM>(count) ? DB_S_ENDOFROWSET : S_OK;
  });
}

DBBINDSTATUS Rowset::Check(const DBBINDING& binding, DBLENGTH rowSize) const {
  constexpr DBPART kParts = DBPART_VALUE | DBPART_LENGTH | DBPART_STATUS;
  if (binding.iOrdinal < 1 || binding.iOrdinal > statement_->Columns().size()) {
    return DBBINDSTATUS_BADORDINAL;
  }
  if (binding.dwPart != kParts && binding.dwPart != (DBPART_VALUE | DBPART_STATUS)) {
    return DBBINDSTATUS_BADBINDINFO;
  }
  const Column& column = statement_->Columns()[binding.iOrdinal - 1];
  const bool isText = binding.wType == (DBTYPE_WSTR | DBTYPE_BYREF);
  const bool isVariant = binding.wType == DBTYPE_VARIANT && !column.isLong && !column.isTextOnly;
  if ((!isText && !isVariant) || column.type == DBTYPE_BYTES) {
    return DBBINDSTATUS_UNSUPPORTEDCONVERSION;
  }
  const size_t size = isText ? sizeof(void*) : sizeof(VARIANT);
  const bool fits = binding.obValue % alignof(VARIANT) == 0 && binding.obValue + size <= rowSize &&
                    binding.obStatus + sizeof(DBSTATUS) <= rowSize &&
                    binding.dwMemOwner == DBMEMOWNER_CLIENTOWNED;
  return fits ? DBBINDSTATUS_OK : DBBINDSTATUS_BADBINDINFO;
}

HRESULT Rowset::CreateAccessor(DBACCESSORFLAGS flags, DBCOUNTITEM count, const DBBINDING bindings[],
                               DBLENGTH rowSize, HACCESSOR* accessor, DBBINDSTATUS status[]) {
  return Entry("CreateAccessor", [&]() -> HRESULT {
    if (flags != DBACCESSOR_ROWDATA) return DB_E_BADACCESSORFLAGS;
    if (count == 0) return DB_E_NULLACCESSORNOTSUPPORTED;
    bool isGood = true;
    for (DBCOUNTITEM i = 0; i < count; ++i) {
      const DBBINDSTATUS checked = Check(bindings[i], rowSize);
      if (status) status[i] = checked;
      isGood = isGood && checked == DBBINDSTATUS_OK;
    }
    if (!isGood) return DB_E_ERRORSOCCURRED;
    accessors_[++lastAccessor_].assign(bindings, bindings + count);
    *accessor = lastAccessor_;
    return S_OK;
  });
}

HRESULT Rowset::ReleaseAccessor(HACCESSOR accessor, DBREFCOUNT*) {
  return Entry("ReleaseAccessor", [&]() -> HRESULT {
    return accessors_.erase(accessor) > 0 ? S_OK : DB_E_BADACCESSORHANDLE;
  });
}

HRESULT Rowset::GetColumnInfo(DBORDINAL* count, DBCOLUMNINFO** columns, OLECHAR** names) {
  return Entry("GetColumnInfo", [&]() -> HRESULT {
    const std::vector<Column>& all = statement_->Columns();
    size_t characters = 0;
    for (const Column& column : all) characters += column.name.size() + 1;
    OLECHAR* text = *names = Allocate<OLECHAR>(characters);
    DBCOLUMNINFO* info = *columns = Allocate<DBCOLUMNINFO>(all.size() + 1);
    *count = all.size() + 1;
    info->dwFlags = DBCOLUMNFLAGS_ISBOOKMARK;
    info->wType = DBTYPE_BYTES;
    for (size_t i = 0; i < all.size(); ++i) {
      ++info;
      info->pwszName = text;
      text += all[i].name.copy(text, all[i].name.size()) + 1;
      info->iOrdinal = i + 1;
      info->wType = all[i].type;
      if (all[i].isLong) info->dwFlags = DBCOLUMNFLAGS_ISLONG;
    }
    return S_OK;
  });
}

}  // namespace standin
