#pragma once

#include <windows.h>

#include <oledb.h>

#include <map>
#include <memory>
#include <vector>

namespace standin {

// The accessors of a rowset: which columns go where in the consumer's buffer, and as what.
class Accessors {
 public:
  explicit Accessors(DBORDINAL columnCount) : columnCount_(columnCount) {}

  // As the methods of IAccessor.
  HRESULT Create(DBACCESSORFLAGS flags, DBCOUNTITEM count, const DBBINDING bindings[],
                 HACCESSOR* accessor, DBBINDSTATUS status[]);
  HRESULT AddRef(HACCESSOR accessor, DBREFCOUNT* references);
  HRESULT Release(HACCESSOR accessor, DBREFCOUNT* references);
  HRESULT GetBindings(HACCESSOR accessor, DBACCESSORFLAGS* flags, DBCOUNTITEM* count,
                      DBBINDING** bindings) const;

  // Null when there is no such accessor. Valid until it is released.
  const std::vector<DBBINDING>* Find(HACCESSOR accessor) const;

 private:
  struct Accessor {
    std::vector<DBBINDING> bindings;
    DBREFCOUNT references;
  };

  DBBINDSTATUS Check(const DBBINDING& binding) const;

  DBORDINAL columnCount_;
  std::map<HACCESSOR, Accessor> accessors_;
  HACCESSOR last_ = 0;
};

}  // namespace standin
