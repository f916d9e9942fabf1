#include "outlook/com/variant.h"

#include <wrl/client.h>

#include <limits>
#include <new>

#include "outlook/com/dispatch_object.h"
#include "shared/error.h"

using Microsoft::WRL::ComPtr;

namespace postrove::com {
namespace {

[[noreturn]] void ThrowMismatch(const wchar_t* source) {
  throw Error(kTypeMismatch, source, L"Type mismatch");
}

struct VariantWriter {
  VARIANT& out;

  void operator()(std::monostate) const {}
  void operator()(office::Missing) const {
    out.vt = VT_ERROR;
    out.scode = DISP_E_PARAMNOTFOUND;
  }
  void operator()(bool value) const {
    out.vt = VT_BOOL;
    out.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(std::int32_t value) const {
    out.vt = VT_I4;
    out.lVal = value;
  }
  void operator()(double value) const {
    out.vt = VT_R8;
    out.dblVal = value;
  }
  void operator()(const std::wstring& value) const {
    out.bstrVal = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    if (!out.bstrVal) throw std::bad_alloc();
    out.vt = VT_BSTR;
  }
  void operator()(const office::ObjectPtr& value) const {
    out.pdispVal = UnwrapDispatch(value).Detach();
    out.vt = VT_DISPATCH;
  }
};

double FromNumber(VARIANT& variant, const wchar_t* source) {
  Variant number;
  if (FAILED(VariantChangeType(number.Get(), &variant, 0, VT_R8))) ThrowMismatch(source);
  return number->dblVal;
}

office::Value FromWholeNumber(VARIANT& variant, const wchar_t* source) {
  // Every 32-bit number is exact as a double.
  const double number = FromNumber(variant, source);
  using Limits = std::numeric_limits<std::int32_t>;
  if (number < Limits::min() || number > Limits::max()) return number;
  return static_cast<std::int32_t>(number);
}

}  // namespace

Variant ToVariant(const office::Value& value) {
  Variant variant;
  std::visit(VariantWriter{*variant.Get()}, value);
  return variant;
}

office::Value FromVariant(const VARIANT& variant, const wchar_t* source) {
  Variant direct;
  if (FAILED(VariantCopyInd(direct.Get(), const_cast<VARIANT*>(&variant)))) ThrowMismatch(source);
  switch (direct->vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_ERROR:
      if (direct->scode == DISP_E_PARAMNOTFOUND) return office::Missing{};
      return std::int32_t{direct->scode};
    case VT_BOOL:
      return direct->boolVal != VARIANT_FALSE;
    case VT_BSTR:
      return std::wstring(direct->bstrVal ? direct->bstrVal : L"", SysStringLen(direct->bstrVal));
    case VT_DISPATCH:
      return WrapDispatch(direct->pdispVal);
    case VT_UNKNOWN: {
      ComPtr<IDispatch> dispatch;
      if (direct->punkVal && FAILED(direct->punkVal->QueryInterface(IID_PPV_ARGS(&dispatch)))) {
        ThrowMismatch(source);
      }
      return WrapDispatch(dispatch.Get());
    }
    case VT_DATE:
      return direct->date;
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
      return FromWholeNumber(*direct.Get(), source);
    default:
      return FromNumber(*direct.Get(), source);
  }
}

}  // namespace postrove::com
