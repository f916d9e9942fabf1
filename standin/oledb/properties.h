#pragma once

#include <windows.h>

#include <oledb.h>

#include <initializer_list>
#include <vector>

#include "oledb/cell.h"

namespace standin {

// One property and its present value; monostate is VT_EMPTY.
struct Property {
  DBPROPID id;
  VARTYPE type;
  bool isSettable;
  Cell value;
};

// One property set of an object: what IDBProperties and ICommandProperties give and take.
class Properties {
 public:
  Properties(REFGUID set, std::initializer_list<Property> properties)
      : set_(set), properties_(properties) {}

  // As OLE DB's SetProperties: each property's dwStatus says how it went; S_OK when all are set,
  // DB_S_ERRORSOCCURRED when some and DB_E_ERRORSOCCURRED when none are. A property that cannot be
  // set may be "set" to the value it has. While `isLocked`, that is so for all.
  HRESULT Set(ULONG count, DBPROPSET sets[], bool isLocked);

  // As OLE DB's GetProperties: all properties, or those asked for, in memory of the task allocator.
  HRESULT Get(ULONG count, const DBPROPIDSET asked[], ULONG* gotCount, DBPROPSET** got) const;

  const Cell& Value(DBPROPID id) const;

 private:
  DBPROPSTATUS SetOne(const DBPROP& wanted, bool isLocked);
  const Property* Find(DBPROPID id) const;
  void Fill(DBPROP& target, DBPROPID id) const;

  GUID set_;
  std::vector<Property> properties_;
};

}  // namespace standin
