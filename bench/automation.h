#pragma once

#include <windows.h>

#include <oaidl.h>

#include <algorithm>
#include <initializer_list>
#include <stdexcept>
#include <vector>

#include "outlook/variant.h"
#include "shared/text.h"

// Automation with nothing around it.
namespace postrove::bench {

inline void Check(HRESULT result, const wchar_t* what = L"a call") {
  if (FAILED(result)) throw std::runtime_error(text::ToUtf8(what) + std::string(" failed"));
}

// A member by its name; `flags` are DISPATCH_METHOD and so on. The arguments stay the caller's and
// come first to last. Throws std::runtime_error.
inline standin::Variant Call(IDispatch* object, const wchar_t* member, WORD flags,
                             std::initializer_list<VARIANT> arguments = {}) {
  DISPID id = 0;
  auto* name = const_cast<wchar_t*>(member);
  Check(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), member);
  std::vector<VARIANT> reversed(arguments);
  std::reverse(reversed.begin(), reversed.end());
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = flags == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()),
                        puts ? 1u : 0u};
  VARIANT result;
  VariantInit(&result);
  Check(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                       puts ? nullptr : &result, nullptr, nullptr),
        member);
  standin::Variant owned = standin::Variant::Copy(result);
  VariantClear(&result);
  return owned;
}

// A property that is an object.
inline standin::ComPtr<IDispatch> Get(IDispatch* object, const wchar_t* member,
                                      std::initializer_list<VARIANT> arguments = {}) {
  return Call(object, member, DISPATCH_PROPERTYGET, arguments).Get().pdispVal;
}

}  // namespace postrove::bench
