#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <vector>

namespace standin {

using Microsoft::WRL::ComPtr;

// Takes over a reference that the caller owns. ComPtr's own Attach counts once more in mingw-w64.
template <class T>
ComPtr<T> Own(T* reference) {
  ComPtr<T> result;
  *result.GetAddressOf() = reference;
  return result;
}

// A member failed. Objects answer with DISP_E_EXCEPTION and this code and text as EXCEPINFO; a bare
// failure is the HRESULT alone, as the calling rules answer it.
struct HostError {
  HRESULT code = E_FAIL;
  std::wstring text;
  bool bare = false;

  static HostError Bare(HRESULT code) { return {code, {}, true}; }
};

// An owned VARIANT.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  ~Variant() { VariantClear(&value_); }
  Variant(Variant&& other) noexcept : value_(other.Detach()) {}
  Variant& operator=(Variant&& other) noexcept;

  static Variant Long(long value);
  static Variant Bool(bool value);
  static Variant Text(const std::wstring& value);
  static Variant Object(ComPtr<IDispatch> value);  // empty is Nothing
  static Variant Unknown(ComPtr<IUnknown> value);
  static Variant BoolReference(VARIANT_BOOL* target);
  static Variant Missing();
  // A copy with a reference to a VARIANT followed. Throws HostError.
  static Variant Copy(const VARIANT& value);

  const VARIANT& Get() const { return value_; }
  VARIANT Detach();

  // Converts in place as Automation does. Throws a bare DISP_E_TYPEMISMATCH when it cannot.
  void ChangeType(VARTYPE type);

 private:
  VARIANT value_;
};

// The arguments of one call in declared order, converted to the declared types.
class Arguments {
 public:
  explicit Arguments(std::vector<Variant> values) : values_(std::move(values)) {}

  std::size_t Count() const { return values_.size(); }
  bool Has(std::size_t index) const;  // given, not left out
  const VARIANT& Any(std::size_t index) const { return values_[index].Get(); }
  long Long(std::size_t index) const { return Any(index).lVal; }
  bool Bool(std::size_t index) const { return Any(index).boolVal != VARIANT_FALSE; }
  std::wstring Text(std::size_t index) const;
  ComPtr<IDispatch> Object(std::size_t index) const { return Any(index).pdispVal; }

  // Optional arguments: the default when left out; a value that does not convert throws.
  long LongOr(std::size_t index, long otherwise) const;
  bool BoolOr(std::size_t index, bool otherwise) const;
  std::wstring TextOr(std::size_t index, const std::wstring& otherwise) const;

  std::wstring Describe() const;  // for the call log: "C:\a.msg,3"

 private:
  std::vector<Variant> values_;
};

std::wstring FromBstr(BSTR text);

}  // namespace standin
