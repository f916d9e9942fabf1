#include "oledb/properties.h"

#include <oleauto.h>
#include <oledberr.h>

#include <algorithm>
#include <cstring>

#include "oledb/error.h"

namespace standin {

namespace {

// The value of a VARIANT of one of the types that properties have here.
Cell FromVariant(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_BSTR:
      return std::wstring(V_BSTR(&value) ? V_BSTR(&value) : L"");
    case VT_BOOL:
      return V_BOOL(&value) != VARIANT_FALSE;
    case VT_I2:
      return std::int64_t{V_I2(&value)};
    case VT_I4:
      return std::int64_t{V_I4(&value)};
    case VT_I8:
      return std::int64_t{V_I8(&value)};
    default:
      return {};
  }
}

template <typename Item>
Item* Allocate(size_t count) {
  void* const memory = CoTaskMemAlloc(count * sizeof(Item));
  if (!memory) throw std::bad_alloc();
  std::memset(memory, 0, count * sizeof(Item));
  return static_cast<Item*>(memory);
}

// How a call ended that did `done` of `all` things.
HRESULT Summary(ULONG done, ULONG all) {
  if (done == all) return S_OK;
  return done > 0 ? DB_S_ERRORSOCCURRED : DB_E_ERRORSOCCURRED;
}

}  // namespace

const Property* Properties::Find(DBPROPID id) const {
  const auto found = std::find_if(properties_.begin(), properties_.end(),
                                  [id](const Property& property) { return property.id == id; });
  return found == properties_.end() ? nullptr : &*found;
}

const Cell& Properties::Value(DBPROPID id) const { return Find(id)->value; }

DBPROPSTATUS Properties::SetOne(const DBPROP& wanted, bool isLocked) {
  Property* const property = const_cast<Property*>(Find(wanted.dwPropertyID));
  if (!property) return DBPROPSTATUS_NOTSUPPORTED;
  if (wanted.dwOptions != DBPROPOPTIONS_REQUIRED && wanted.dwOptions != DBPROPOPTIONS_OPTIONAL) {
    return DBPROPSTATUS_BADOPTION;
  }
  const VARTYPE type = V_VT(&wanted.vValue);
  if (type != property->type && type != VT_EMPTY) return DBPROPSTATUS_BADVALUE;
  const Cell value = FromVariant(wanted.vValue);
  if (isLocked || !property->isSettable) {
    return value == property->value ? DBPROPSTATUS_OK : DBPROPSTATUS_NOTSETTABLE;
  }
  property->value = value;
  return DBPROPSTATUS_OK;
}

HRESULT Properties::Set(ULONG count, DBPROPSET sets[], bool isLocked) {
  if (count > 0 && !sets) return E_INVALIDARG;
  ULONG all = 0, done = 0;
  for (ULONG i = 0; i < count; ++i) {
    if (sets[i].cProperties > 0 && !sets[i].rgProperties) return E_INVALIDARG;
    for (ULONG k = 0; k < sets[i].cProperties; ++k) {
      DBPROP& property = sets[i].rgProperties[k];
      property.dwStatus = DBPROPSTATUS_NOTSUPPORTED;
      if (sets[i].guidPropertySet == set_) property.dwStatus = SetOne(property, isLocked);
      ++all;
      if (property.dwStatus == DBPROPSTATUS_OK) ++done;
    }
  }
  return Summary(done, all);
}

void Properties::Fill(DBPROP& target, DBPROPID id) const {
  target.dwPropertyID = id;
  const Property* const property = Find(id);
  if (!property) {
    target.dwStatus = DBPROPSTATUS_NOTSUPPORTED;
    return;
  }
  if (std::holds_alternative<std::monostate>(property->value)) return;
  target.vValue = ToVariant(property->value);
  VariantChangeType(&target.vValue, &target.vValue, 0, property->type);
}

HRESULT Properties::Get(ULONG count, const DBPROPIDSET asked[], ULONG* gotCount,
                        DBPROPSET** got) const {
  if (!gotCount || !got || (count > 0 && !asked)) return E_INVALIDARG;
  *gotCount = 0;
  *got = nullptr;
  std::vector<DBPROPID> all;
  for (const Property& property : properties_) all.push_back(property.id);
  DBPROPIDSET everything{all.data(), static_cast<ULONG>(all.size()), set_};
  if (count == 0) {
    count = 1;
    asked = &everything;
  }

  ULONG wanted = 0, found = 0;
  DBPROPSET* const sets = Allocate<DBPROPSET>(count);
  *got = sets;
  *gotCount = count;
  for (ULONG i = 0; i < count; ++i) {
    const bool isOurs = asked[i].guidPropertySet == set_;
    const DBPROPIDSET& ids = isOurs && asked[i].cPropertyIDs == 0 ? everything : asked[i];
    sets[i].guidPropertySet = asked[i].guidPropertySet;
    sets[i].rgProperties = Allocate<DBPROP>(ids.cPropertyIDs);
    sets[i].cProperties = ids.cPropertyIDs;
    for (ULONG k = 0; k < ids.cPropertyIDs; ++k) {
      DBPROP& property = sets[i].rgProperties[k];
      Fill(property, ids.rgPropertyIDs[k]);
      if (!isOurs) property.dwStatus = DBPROPSTATUS_NOTSUPPORTED;
      ++wanted;
      if (property.dwStatus == DBPROPSTATUS_OK) ++found;
    }
    // A foreign set without identifiers has nothing to report in.
    if (!isOurs && ids.cPropertyIDs == 0) ++wanted;
  }
  return Summary(found, wanted);
}

}  // namespace standin
