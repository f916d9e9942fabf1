#include "outlook/variant.h"

namespace standin {
namespace {

constexpr std::size_t kMaxLogged = 300;

std::wstring DescribeValue(const VARIANT& value) {
  if (V_VT(&value) == VT_ERROR) return L"-";
  if (V_VT(&value) == VT_DISPATCH || V_VT(&value) == VT_UNKNOWN) {
    return value.punkVal ? L"object" : L"Nothing";
  }
  if (V_VT(&value) == VT_BOOL) return value.boolVal ? L"True" : L"False";
  VARIANT text;
  VariantInit(&text);
  if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR))) return L"?";
  std::wstring result = FromBstr(text.bstrVal);
  VariantClear(&text);
  for (wchar_t& c : result) {
    if (c < L' ') c = L' ';  // one line a call
  }
  if (result.size() > kMaxLogged) result.replace(kMaxLogged, std::wstring::npos, L"...");
  return result;
}

}  // namespace

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    VariantClear(&value_);
    value_ = other.Detach();
  }
  return *this;
}

Variant Variant::Long(long value) {
  Variant result;
  V_VT(&result.value_) = VT_I4;
  V_I4(&result.value_) = value;
  return result;
}

Variant Variant::Bool(bool value) {
  Variant result;
  V_VT(&result.value_) = VT_BOOL;
  V_BOOL(&result.value_) = value ? VARIANT_TRUE : VARIANT_FALSE;
  return result;
}

Variant Variant::Text(const std::wstring& value) {
  Variant result;
  V_BSTR(&result.value_) = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
  if (!V_BSTR(&result.value_)) throw HostError::Bare(E_OUTOFMEMORY);
  V_VT(&result.value_) = VT_BSTR;
  return result;
}

Variant Variant::Object(ComPtr<IDispatch> value) {
  Variant result;
  V_VT(&result.value_) = VT_DISPATCH;
  V_DISPATCH(&result.value_) = value.Detach();
  return result;
}

Variant Variant::Unknown(ComPtr<IUnknown> value) {
  Variant result;
  V_VT(&result.value_) = VT_UNKNOWN;
  V_UNKNOWN(&result.value_) = value.Detach();
  return result;
}

Variant Variant::BoolReference(VARIANT_BOOL* target) {
  Variant result;
  V_VT(&result.value_) = VT_BYREF | VT_BOOL;
  V_BOOLREF(&result.value_) = target;
  return result;
}

Variant Variant::Missing() {
  Variant result;
  V_VT(&result.value_) = VT_ERROR;
  V_ERROR(&result.value_) = DISP_E_PARAMNOTFOUND;
  return result;
}

Variant Variant::Copy(const VARIANT& value) {
  Variant result;
  const HRESULT hr = VariantCopyInd(&result.value_, const_cast<VARIANT*>(&value));
  if (FAILED(hr)) throw HostError::Bare(hr);
  return result;
}

VARIANT Variant::Detach() {
  const VARIANT result = value_;
  VariantInit(&value_);
  return result;
}

void Variant::ChangeType(VARTYPE type) {
  const HRESULT hr = VariantChangeType(&value_, &value_, 0, type);
  if (FAILED(hr)) throw HostError::Bare(hr == DISP_E_OVERFLOW ? hr : DISP_E_TYPEMISMATCH);
}

bool Arguments::Has(std::size_t index) const {
  return index < values_.size() && V_VT(&Any(index)) != VT_ERROR;
}

std::wstring Arguments::Text(std::size_t index) const { return FromBstr(Any(index).bstrVal); }

long Arguments::LongOr(std::size_t index, long otherwise) const {
  if (!Has(index)) return otherwise;
  Variant value = Variant::Copy(Any(index));
  value.ChangeType(VT_I4);
  return value.Get().lVal;
}

bool Arguments::BoolOr(std::size_t index, bool otherwise) const {
  if (!Has(index)) return otherwise;
  Variant value = Variant::Copy(Any(index));
  value.ChangeType(VT_BOOL);
  return value.Get().boolVal != VARIANT_FALSE;
}

std::wstring Arguments::TextOr(std::size_t index, const std::wstring& otherwise) const {
  if (!Has(index)) return otherwise;
  Variant value = Variant::Copy(Any(index));
  value.ChangeType(VT_BSTR);
  return FromBstr(value.Get().bstrVal);
}

std::wstring Arguments::Describe() const {
  std::wstring result;
  for (const Variant& value : values_) {
    if (!result.empty()) result += L',';
    result += DescribeValue(value.Get());
  }
  return result;
}

std::wstring FromBstr(BSTR text) {
  return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

}  // namespace standin
