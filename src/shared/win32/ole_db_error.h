#pragma once

#include <windows.h>

#include <wrl/client.h>

namespace postrove::ole_db {

// What an earlier call left on this thread is not to be taken for the reason of a later failure.
void ForgetErrors();

// Throws Error for a failed `result`: its number is the HRESULT, its source `source`, its
// description what the provider left on this thread, each of several texts on a line of its own;
// else the system's text. Also, with E_FAIL, for the success that means that rows are missing. Call
// it directly after the call that gave the result.
void Check(HRESULT result, const wchar_t* source);

// An interface of an object. Throws Error as Check does when the object does not have it.
template <typename Interface>
Microsoft::WRL::ComPtr<Interface> Query(IUnknown* object, REFIID id, const wchar_t* source) {
  Microsoft::WRL::ComPtr<Interface> found;
  Check(object->QueryInterface(id, reinterpret_cast<void**>(found.GetAddressOf())), source);
  return found;
}

}  // namespace postrove::ole_db
