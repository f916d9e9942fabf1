#include "shared/win32/variant.h"

#include <limits>
#include <string>

namespace postrove {

std::optional<Cell> ToCell(VARIANT& value) {
  Variant number;
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return Cell();
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return std::wstring(value.bstrVal ? value.bstrVal : L"", SysStringLen(value.bstrVal));
    case VT_I4:  // the usual one, without a conversion
      return std::int64_t{value.lVal};
    case VT_UI8:
      if (value.ullVal > std::numeric_limits<std::int64_t>::max()) {
        return static_cast<double>(value.ullVal);
      }
      return static_cast<std::int64_t>(value.ullVal);
    case VT_I1:
    case VT_I2:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
      if (FAILED(VariantChangeType(number.Get(), &value, 0, VT_I8))) return std::nullopt;
      return std::int64_t{number->llVal};
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_DATE:
      if (FAILED(VariantChangeType(number.Get(), &value, 0, VT_R8))) return std::nullopt;
      return number->dblVal;
    default:
      return std::nullopt;
  }
}

}  // namespace postrove
