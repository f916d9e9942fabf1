#include "oledb/cell.h"

#include <oleauto.h>

#include <cstring>
#include <limits>
#include <new>

#include "oledb/fault_hook.h"

namespace standin {

namespace {

// Numbers and dates are written the same way on every machine.
constexpr LCID kLocale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

// In the type that Jet gives it: whole numbers are VT_I4 as long as they fit, Null is VT_NULL.
VARIANT ToVariant(const Cell& cell) {
  VARIANT result;
  VariantInit(&result);
  if (const auto* yes = std::get_if<bool>(&cell)) {
    V_VT(&result) = VT_BOOL;
    V_BOOL(&result) = *yes ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
    V_VT(&result) = VT_I8;
    V_I8(&result) = *whole;
    if (*whole >= std::numeric_limits<LONG>::min() && *whole <= std::numeric_limits<LONG>::max()) {
      V_VT(&result) = VT_I4;
      V_I4(&result) = static_cast<LONG>(*whole);
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

// The length in bytes, without the closing zero.
DBLENGTH PutText(VARIANT& value, void* target) {
  if (FAILED(VariantChangeTypeEx(&value, &value, kLocale, VARIANT_ALPHABOOL, VT_BSTR))) return 0;
  const DBLENGTH length = SysStringByteLen(V_BSTR(&value));
  void* const copy = CoTaskMemAlloc(length + sizeof(wchar_t));
  if (!copy) throw std::bad_alloc();
  std::memcpy(copy, V_BSTR(&value), length + sizeof(wchar_t));
  std::memcpy(target, &copy, sizeof copy);
  VariantClear(&value);
  return length;
}

}  // namespace

DBSTATUS Store(const Cell& cell, const DBBINDING& binding, void* data) {
  BYTE* const row = static_cast<BYTE*>(data);
  VARIANT value = ToVariant(cell);
  DBSTATUS status = V_VT(&value) == VT_NULL ? DBSTATUS_S_ISNULL : DBSTATUS_S_OK;
  if (faultHook) faultHook->Give(binding.iOrdinal, value, status);
  DBLENGTH length = sizeof value;
  if (binding.wType == DBTYPE_VARIANT) {
    std::memcpy(row + binding.obValue, &value, sizeof value);  // the consumer's now
  } else if (status != DBSTATUS_S_ISNULL) {
    length = PutText(value, row + binding.obValue);
  }
  if (binding.dwPart & DBPART_LENGTH) std::memcpy(row + binding.obLength, &length, sizeof length);
  if (binding.dwPart & DBPART_STATUS) std::memcpy(row + binding.obStatus, &status, sizeof status);
  return status;
}

}  // namespace standin
