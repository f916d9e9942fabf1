#include "oledb/cell.h"

#include <oleauto.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace standin {

namespace {

// Numbers and dates are written the same way on every machine.
constexpr LCID kLocale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

struct OwnedVariant {
  OwnedVariant() { VariantInit(&value); }
  ~OwnedVariant() { VariantClear(&value); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;

  VARIANT value;
};

struct Stored {
  DBSTATUS status;
  DBLENGTH length;  // bytes, of texts without the closing zero
};

template <typename Value>
Stored Put(void* target, Value value) {
  std::memcpy(target, &value, sizeof value);
  return {DBSTATUS_S_OK, sizeof value};
}

Stored PutText(const wchar_t* text, const DBBINDING& binding, void* target) {
  const DBLENGTH length = std::wcslen(text) * sizeof(wchar_t);
  if (binding.wType & DBTYPE_BYREF) {
    void* const copy = CoTaskMemAlloc(length + sizeof(wchar_t));
    if (!copy) return {static_cast<DBSTATUS>(DBSTATUS_E_CANTCREATE), 0};
    std::memcpy(copy, text, length + sizeof(wchar_t));
    Put(target, copy);
    return {DBSTATUS_S_OK, length};
  }
  const DBLENGTH room = binding.cbMaxLen / sizeof(wchar_t) * sizeof(wchar_t);
  if (room == 0) return {DBSTATUS_S_TRUNCATED, length};
  const DBLENGTH kept = std::min<DBLENGTH>(length, room - sizeof(wchar_t));
  std::memcpy(target, text, kept);
  std::memset(static_cast<BYTE*>(target) + kept, 0, sizeof(wchar_t));
  return {static_cast<DBSTATUS>(kept < length ? DBSTATUS_S_TRUNCATED : DBSTATUS_S_OK), length};
}

VARTYPE AutomationType(DBTYPE type) {
  const DBTYPE plain = type & static_cast<DBTYPE>(~DBTYPE_BYREF);
  return plain == DBTYPE_WSTR ? static_cast<VARTYPE>(VT_BSTR) : plain;
}

Stored PutConverted(const Cell& cell, const DBBINDING& binding, void* target) {
  OwnedVariant from, to;
  from.value = ToVariant(cell);
  const HRESULT converted = VariantChangeTypeEx(&to.value, &from.value, kLocale, VARIANT_ALPHABOOL,
                                                AutomationType(binding.wType));
  if (converted == DISP_E_OVERFLOW) return {static_cast<DBSTATUS>(DBSTATUS_E_DATAOVERFLOW), 0};
  if (FAILED(converted)) return {static_cast<DBSTATUS>(DBSTATUS_E_CANTCONVERTVALUE), 0};
  switch (binding.wType) {
    case DBTYPE_BSTR: {
      const Stored stored = Put(target, V_BSTR(&to.value));
      V_VT(&to.value) = VT_EMPTY;  // the consumer's now
      return stored;
    }
    case DBTYPE_I2:
      return Put(target, V_I2(&to.value));
    case DBTYPE_I4:
      return Put(target, V_I4(&to.value));
    case DBTYPE_I8:
      return Put(target, V_I8(&to.value));
    case DBTYPE_R8:
      return Put(target, V_R8(&to.value));
    case DBTYPE_BOOL:
      return Put(target, V_BOOL(&to.value));
    default:
      return PutText(V_BSTR(&to.value), binding, target);
  }
}

}  // namespace

VARIANT ToVariant(const Cell& cell) {
  VARIANT result;
  VariantInit(&result);
  if (const auto* yes = std::get_if<bool>(&cell)) {
    V_VT(&result) = VT_BOOL;
    V_BOOL(&result) = *yes ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
    if (*whole >= std::numeric_limits<LONG>::min() && *whole <= std::numeric_limits<LONG>::max()) {
      V_VT(&result) = VT_I4;
      V_I4(&result) = static_cast<LONG>(*whole);
    } else {
      V_VT(&result) = VT_I8;
      V_I8(&result) = *whole;
    }
  } else if (const auto* number = std::get_if<double>(&cell)) {
    V_VT(&result) = VT_R8;
    V_R8(&result) = *number;
  } else if (const auto* text = std::get_if<std::wstring>(&cell)) {
    V_BSTR(&result) = SysAllocStringLen(text->data(), static_cast<UINT>(text->size()));
    if (!V_BSTR(&result)) throw std::bad_alloc();
    V_VT(&result) = VT_BSTR;
  } else {
    V_VT(&result) = VT_NULL;
  }
  return result;
}

bool CanStoreAs(DBTYPE type) {
  switch (type) {
    case DBTYPE_VARIANT:
    case DBTYPE_WSTR:
    case DBTYPE_WSTR | DBTYPE_BYREF:
    case DBTYPE_BSTR:
    case DBTYPE_I2:
    case DBTYPE_I4:
    case DBTYPE_I8:
    case DBTYPE_R8:
    case DBTYPE_BOOL:
      return true;
    default:
      return false;
  }
}

DBSTATUS Store(const Cell& cell, const DBBINDING& binding, void* data) {
  BYTE* const row = static_cast<BYTE*>(data);
  void* const target = row + binding.obValue;
  Stored stored{DBSTATUS_S_OK, 0};
  if (binding.wType == DBTYPE_VARIANT) {
    stored = Put(target, ToVariant(cell));
    if (std::holds_alternative<std::monostate>(cell)) stored.status = DBSTATUS_S_ISNULL;
  } else if (!std::holds_alternative<std::monostate>(cell)) {
    stored = PutConverted(cell, binding, target);
  } else {
    const bool canSayNull = (binding.dwPart & DBPART_STATUS) != 0;
    stored.status = canSayNull ? DBSTATUS_S_ISNULL : DBSTATUS_E_UNAVAILABLE;
  }
  if (binding.dwPart & DBPART_LENGTH) Put(row + binding.obLength, stored.length);
  if (binding.dwPart & DBPART_STATUS) Put(row + binding.obStatus, stored.status);
  return stored.status;
}

}  // namespace standin
