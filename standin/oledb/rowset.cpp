#include "oledb/rowset.h"

#include <cstring>

#include "oledb/command.h"

namespace standin {

Rowset::Rowset(ComPtr<Command> command, std::unique_ptr<Statement> statement, bool canHoldRows)
    : command_(std::move(command)),
      statement_(std::move(statement)),
      canHoldRows_(canHoldRows),
      accessors_(statement_->Columns().size()) {
  command_->RowsetOpened();
}

Rowset::~Rowset() { command_->RowsetClosed(); }

HRESULT Rowset::CountRows(bool up, DBCOUNTITEM count, const HROW rows[], DBREFCOUNT references[],
                          DBROWSTATUS status[]) {
  if (count > 0 && !rows) return E_INVALIDARG;
  DBCOUNTITEM done = 0;
  for (DBCOUNTITEM i = 0; i < count; ++i) {
    const auto found = rows_.find(rows[i]);
    const bool isKnown = found != rows_.end();
    DBREFCOUNT left = 0;
    if (isKnown) {
      left = up ? ++found->second.references : --found->second.references;
      if (left == 0) rows_.erase(found);
      ++done;
    }
    if (references) references[i] = left;
    if (status) {
      status[i] = static_cast<DBROWSTATUS>(isKnown ? DBROWSTATUS_S_OK : DBROWSTATUS_E_INVALID);
    }
  }
  if (done == count) return S_OK;
  return done > 0 ? DB_S_ERRORSOCCURRED : DB_E_ERRORSOCCURRED;
}

HRESULT Rowset::AddRefRows(DBCOUNTITEM count, const HROW rows[], DBREFCOUNT references[],
                           DBROWSTATUS status[]) {
  return Entry(IID_IRowset, [&] { return CountRows(true, count, rows, references, status); });
}

HRESULT Rowset::ReleaseRows(DBCOUNTITEM count, const HROW rows[], DBROWOPTIONS[],
                            DBREFCOUNT references[], DBROWSTATUS status[]) {
  return Entry(IID_IRowset, [&] { return CountRows(false, count, rows, references, status); });
}

HRESULT Rowset::GetData(HROW row, HACCESSOR accessor, void* data) {
  return Entry(IID_IRowset, [&] {
    const std::vector<DBBINDING>* const bindings = accessors_.Find(accessor);
    if (!bindings) return DB_E_BADACCESSORHANDLE;
    const auto found = rows_.find(row);
    if (found == rows_.end()) return DB_E_BADROWHANDLE;
    if (!data) return E_INVALIDARG;
    size_t good = 0;
    for (const DBBINDING& binding : *bindings) {
      switch (Store(found->second.cells[binding.iOrdinal - 1], binding, data)) {
        case DBSTATUS_S_OK:
        case DBSTATUS_S_ISNULL:
        case DBSTATUS_S_TRUNCATED:
          ++good;
      }
    }
    if (good == bindings->size()) return S_OK;
    return good > 0 ? DB_S_ERRORSOCCURRED : DB_E_ERRORSOCCURRED;
  });
}

HRESULT Rowset::GetNextRows(HCHAPTER chapter, DBROWOFFSET offset, DBROWCOUNT count,
                            DBCOUNTITEM* obtained, HROW** rows) {
  return Entry(IID_IRowset, [&]() -> HRESULT {
    if (!obtained || !rows) return E_INVALIDARG;
    *obtained = 0;
    if (chapter != DB_NULL_HCHAPTER) return DB_E_BADCHAPTER;
    if (offset < 0) return DB_E_CANTSCROLLBACKWARDS;
    if (count < 0) return DB_E_CANTFETCHBACKWARDS;
    if (!canHoldRows_ && !rows_.empty()) return DB_E_ROWSNOTRELEASED;
    if (count == 0) return S_OK;

    while (!isAtEnd_ && offset-- > 0) isAtEnd_ = statement_->Next().empty();
    std::vector<HROW> got;
    while (!isAtEnd_ && got.size() < static_cast<size_t>(count)) {
      std::vector<Cell> cells = statement_->Next();
      isAtEnd_ = cells.empty();
      if (isAtEnd_) break;
      rows_[++last_] = {std::move(cells), 1};
      got.push_back(last_);
    }
    if (!got.empty()) {
      if (!*rows) *rows = static_cast<HROW*>(CoTaskMemAlloc(got.size() * sizeof(HROW)));
      if (!*rows) throw std::bad_alloc();
      std::memcpy(*rows, got.data(), got.size() * sizeof(HROW));
    }
    *obtained = got.size();
    return got.size() < static_cast<size_t>(count) ? DB_S_ENDOFROWSET : S_OK;
  });
}

HRESULT Rowset::RestartPosition(HCHAPTER chapter) {
  return Entry(IID_IRowset, [&]() -> HRESULT {
    if (chapter != DB_NULL_HCHAPTER) return DB_E_BADCHAPTER;
    if (!canHoldRows_ && !rows_.empty()) return DB_E_ROWSNOTRELEASED;
    return last_ == 0 && !isAtEnd_ ? S_OK : DB_E_CANNOTRESTART;
  });
}

HRESULT Rowset::AddRefAccessor(HACCESSOR accessor, DBREFCOUNT* references) {
  return Entry(IID_IAccessor, [&] { return accessors_.AddRef(accessor, references); });
}

HRESULT Rowset::CreateAccessor(DBACCESSORFLAGS flags, DBCOUNTITEM count, const DBBINDING bindings[],
                               DBLENGTH, HACCESSOR* accessor, DBBINDSTATUS status[]) {
  return Entry(IID_IAccessor,
               [&] { return accessors_.Create(flags, count, bindings, accessor, status); });
}

HRESULT Rowset::GetBindings(HACCESSOR accessor, DBACCESSORFLAGS* flags, DBCOUNTITEM* count,
                            DBBINDING** bindings) {
  return Entry(IID_IAccessor,
               [&] { return accessors_.GetBindings(accessor, flags, count, bindings); });
}

HRESULT Rowset::ReleaseAccessor(HACCESSOR accessor, DBREFCOUNT* references) {
  return Entry(IID_IAccessor, [&] { return accessors_.Release(accessor, references); });
}

HRESULT Rowset::GetColumnInfo(DBORDINAL* count, DBCOLUMNINFO** columns, OLECHAR** names) {
  return Entry(IID_IColumnsInfo, [&] {
    if (!count || !columns || !names) return E_INVALIDARG;
    const std::vector<Column>& all = statement_->Columns();
    size_t characters = 0;
    for (const Column& column : all) characters += column.name.size() + 1;
    auto* info = static_cast<DBCOLUMNINFO*>(CoTaskMemAlloc(all.size() * sizeof(DBCOLUMNINFO)));
    auto* text = static_cast<OLECHAR*>(CoTaskMemAlloc(characters * sizeof(OLECHAR)));
    if (!info || !text) {
      CoTaskMemFree(info);
      CoTaskMemFree(text);
      return E_OUTOFMEMORY;
    }
    *count = all.size();
    *columns = info;
    *names = text;
    std::memset(info, 0, all.size() * sizeof(DBCOLUMNINFO));
    for (size_t i = 0; i < all.size(); ++i, ++info) {
      const Column& column = all[i];
      info->pwszName = text;
      std::memcpy(text, column.name.c_str(), (column.name.size() + 1) * sizeof(OLECHAR));
      text += column.name.size() + 1;
      info->iOrdinal = i + 1;
      info->dwFlags = DBCOLUMNFLAGS_MAYBENULL;
      if (column.isNullable) info->dwFlags |= DBCOLUMNFLAGS_ISNULLABLE;
      if (column.type != DBTYPE_WSTR) info->dwFlags |= DBCOLUMNFLAGS_ISFIXEDLENGTH;
      info->ulColumnSize = column.size;
      info->wType = column.type;
      info->bPrecision = info->bScale = 0xff;  // not that kind of number
      info->columnid.eKind = DBKIND_NAME;
      info->columnid.uName.pwszName = info->pwszName;
    }
    return S_OK;
  });
}

HRESULT Rowset::MapColumnIDs(DBORDINAL count, const DBID ids[], DBORDINAL ordinals[]) {
  return Entry(IID_IColumnsInfo, [&] {
    if (count > 0 && (!ids || !ordinals)) return E_INVALIDARG;
    const std::vector<Column>& all = statement_->Columns();
    DBORDINAL found = 0;
    for (DBORDINAL i = 0; i < count; ++i) {
      ordinals[i] = DB_INVALIDCOLUMN;
      if (ids[i].eKind != DBKIND_NAME || !ids[i].uName.pwszName) continue;
      for (size_t k = 0; k < all.size(); ++k) {
        if (lstrcmpiW(all[k].name.c_str(), ids[i].uName.pwszName) == 0) {
          ordinals[i] = k + 1;
          ++found;
          break;
        }
      }
    }
    if (found == count) return S_OK;
    return found > 0 ? DB_S_ERRORSOCCURRED : DB_E_ERRORSOCCURRED;
  });
}

}  // namespace standin
