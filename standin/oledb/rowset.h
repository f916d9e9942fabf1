#pragma once

#include <map>
#include <memory>
#include <vector>

#include "oledb/com_object.h"
#include "oledb/odbc.h"

namespace standin {

// The rows of a statement, forward only: those handed out must be released before the next ones can
// be had. A column of bookmarks stands before those of the statement. A long column is given as a
// text only, a binary one not at all.
class Rowset : public ComObject<IRowset, IAccessor, IColumnsInfo> {
 public:
  explicit Rowset(std::unique_ptr<Statement> statement) : statement_(std::move(statement)) {}
  ~Rowset() override;

  HRESULT STDMETHODCALLTYPE AddRefRows(DBCOUNTITEM, const HROW[], DBREFCOUNT[],
                                       DBROWSTATUS[]) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetData(HROW row, HACCESSOR accessor, void* data) override;
  HRESULT STDMETHODCALLTYPE GetNextRows(HCHAPTER chapter, DBROWOFFSET offset, DBROWCOUNT count,
                                        DBCOUNTITEM* obtained, HROW** rows) override;
  HRESULT STDMETHODCALLTYPE ReleaseRows(DBCOUNTITEM count, const HROW rows[],
                                        DBROWOPTIONS options[], DBREFCOUNT references[],
                                        DBROWSTATUS status[]) override;
  HRESULT STDMETHODCALLTYPE RestartPosition(HCHAPTER) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE AddRefAccessor(HACCESSOR, DBREFCOUNT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CreateAccessor(DBACCESSORFLAGS flags, DBCOUNTITEM count,
                                           const DBBINDING bindings[], DBLENGTH rowSize,
                                           HACCESSOR* accessor, DBBINDSTATUS status[]) override;
  HRESULT STDMETHODCALLTYPE GetBindings(HACCESSOR, DBACCESSORFLAGS*, DBCOUNTITEM*,
                                        DBBINDING**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ReleaseAccessor(HACCESSOR accessor, DBREFCOUNT* references) override;

  HRESULT STDMETHODCALLTYPE GetColumnInfo(DBORDINAL* count, DBCOLUMNINFO** columns,
                                          OLECHAR** names) override;
  HRESULT STDMETHODCALLTYPE MapColumnIDs(DBORDINAL, const DBID[], DBORDINAL[]) override {
    return E_NOTIMPL;
  }

 private:
  DBBINDSTATUS Check(const DBBINDING& binding, DBLENGTH rowSize) const;

  const std::unique_ptr<Statement> statement_;
  std::map<HACCESSOR, std::vector<DBBINDING>> accessors_;
  std::map<HROW, std::vector<Cell>> rows_;
  HACCESSOR lastAccessor_ = 0;
  HROW lastRow_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace standin
