#include "addin/module.h"

#include <oleauto.h>

#include <new>

#include "outlook/com/com_error.h"
#include "shared/error.h"

// Placed by the linker at the start of the module; its address is the instance handle, so that
// nothing has to be remembered when the DLL is loaded.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace postrove::addin {

HINSTANCE ModuleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(ModuleInstance(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) com::ThrowHresult(HRESULT_FROM_WIN32(GetLastError()), L"GetModuleFileName");
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

HRESULT LoadModuleTypeLibrary(Microsoft::WRL::ComPtr<ITypeLib>* library) {
  return LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library->ReleaseAndGetAddressOf());
}

HRESULT CurrentHresult() noexcept {
  try {
    throw;
  } catch (const Error& error) {
    const auto number = static_cast<HRESULT>(error.Number());
    if (FAILED(number)) return number;
    return number == kTypeMismatch ? DISP_E_TYPEMISMATCH : E_FAIL;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace postrove::addin
