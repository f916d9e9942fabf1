#include "outlook/com/variant.h"

#include <wrl/client.h>

#include <limits>
#include <new>
#include <optional>

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

  void operator()(Empty) const {}
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

struct CellReader {
  office::Value operator()(std::int64_t whole) const {
    using Limits = std::numeric_limits<std::int32_t>;
    if (whole < Limits::min() || whole > Limits::max()) return static_cast<double>(whole);
    return static_cast<std::int32_t>(whole);
  }
  template <class T>
  office::Value operator()(T value) const {
    return value;
  }
};

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
    case VT_ERROR:
      if (direct->scode == DISP_E_PARAMNOTFOUND) return office::Missing{};
      return std::int32_t{direct->scode};
    case VT_DISPATCH:
      return WrapDispatch(direct->pdispVal);
    case VT_UNKNOWN: {
      ComPtr<IDispatch> dispatch;
      if (direct->punkVal && FAILED(direct->punkVal->QueryInterface(IID_PPV_ARGS(&dispatch)))) {
        ThrowMismatch(source);
      }
      return WrapDispatch(dispatch.Get());
    }
    default:
      const std::optional<Cell> cell = ToCell(*direct.Get());
      if (!cell) ThrowMismatch(source);
      return std::visit(CellReader(), *cell);
  }
}

}  // namespace postrove::com
