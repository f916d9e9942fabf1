#pragma once

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

namespace postrove::addin {

// The instance handle of this DLL.
HINSTANCE ModuleInstance();

// Full path of this DLL. Throws Error.
std::wstring ModulePath();

// The type library in this DLL's resources, read without any registration.
HRESULT LoadModuleTypeLibrary(Microsoft::WRL::ComPtr<ITypeLib>* library);

// Runs `body`, which answers an HRESULT, at an edge that no exception may cross.
template <typename Body>
HRESULT Guarded(Body body) noexcept;

// The exception being handled as an HRESULT. Call it from a catch block only.
HRESULT CurrentHresult() noexcept;

template <typename Body>
HRESULT Guarded(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return CurrentHresult();
  }
}

}  // namespace postrove::addin
