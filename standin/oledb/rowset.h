#pragma once

#include <map>
#include <memory>
#include <vector>

#include "oledb/accessor.h"
#include "oledb/com_object.h"
#include "oledb/odbc.h"

namespace standin {

class Command;

// The rows of a statement, forward only. Rows handed out live until the consumer releases them, and
// unless DBPROP_CANHOLDROWS was set the next ones can only be had afterwards.
class Rowset : public ComObject<IRowset, IAccessor, IColumnsInfo> {
 public:
  Rowset(ComPtr<Command> command, std::unique_ptr<Statement> statement, bool canHoldRows);
  ~Rowset() override;

  HRESULT STDMETHODCALLTYPE AddRefRows(DBCOUNTITEM count, const HROW rows[],
                                       DBREFCOUNT references[], DBROWSTATUS status[]) override;
  HRESULT STDMETHODCALLTYPE GetData(HROW row, HACCESSOR accessor, void* data) override;
  HRESULT STDMETHODCALLTYPE GetNextRows(HCHAPTER chapter, DBROWOFFSET offset, DBROWCOUNT count,
                                        DBCOUNTITEM* obtained, HROW** rows) override;
  HRESULT STDMETHODCALLTYPE ReleaseRows(DBCOUNTITEM count, const HROW rows[],
                                        DBROWOPTIONS options[], DBREFCOUNT references[],
                                        DBROWSTATUS status[]) override;
  HRESULT STDMETHODCALLTYPE RestartPosition(HCHAPTER chapter) override;

  HRESULT STDMETHODCALLTYPE AddRefAccessor(HACCESSOR accessor, DBREFCOUNT* references) override;
  HRESULT STDMETHODCALLTYPE CreateAccessor(DBACCESSORFLAGS flags, DBCOUNTITEM count,
                                           const DBBINDING bindings[], DBLENGTH rowSize,
                                           HACCESSOR* accessor, DBBINDSTATUS status[]) override;
  HRESULT STDMETHODCALLTYPE GetBindings(HACCESSOR accessor, DBACCESSORFLAGS* flags,
                                        DBCOUNTITEM* count, DBBINDING** bindings) override;
  HRESULT STDMETHODCALLTYPE ReleaseAccessor(HACCESSOR accessor, DBREFCOUNT* references) override;

  HRESULT STDMETHODCALLTYPE GetColumnInfo(DBORDINAL* count, DBCOLUMNINFO** columns,
                                          OLECHAR** names) override;
  HRESULT STDMETHODCALLTYPE MapColumnIDs(DBORDINAL count, const DBID ids[],
                                         DBORDINAL ordinals[]) override;

 private:
  struct Row {
    std::vector<Cell> cells;
    DBREFCOUNT references;
  };

  // Changes the references of each row by one, as both AddRefRows and ReleaseRows do.
  HRESULT CountRows(bool up, DBCOUNTITEM count, const HROW rows[], DBREFCOUNT references[],
                    DBROWSTATUS status[]);

  ComPtr<Command> command_;
  std::unique_ptr<Statement> statement_;
  bool canHoldRows_;
  Accessors accessors_;
  std::map<HROW, Row> rows_;
  HROW last_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace standin
