#include "module_under_test.h"

#include <stdexcept>

#include "../util/windows_path.h"

namespace {

template <typename Function>
Function Find(HMODULE module, const char* name) {
  const auto address = GetProcAddress(module, name);
  if (!address) throw std::runtime_error(std::string("not exported: ") + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

}  // namespace

std::wstring ModuleUnderTest::Path() { return postrove::WindowsPath(POSTROVE_DLL); }

ModuleUnderTest::ModuleUnderTest() : module_(LoadLibraryW(Path().c_str())) {
  if (!module_) throw std::runtime_error("cannot load " POSTROVE_DLL);
}

ModuleUnderTest::~ModuleUnderTest() { FreeLibrary(module_); }

HRESULT ModuleUnderTest::GetClassObject(REFCLSID clsid, REFIID iid, void** object) const {
  return Find<decltype(&DllGetClassObject)>(module_, "DllGetClassObject")(clsid, iid, object);
}

HRESULT ModuleUnderTest::Call(const char* name) const {
  return Find<HRESULT(STDAPICALLTYPE*)()>(module_, name)();
}
