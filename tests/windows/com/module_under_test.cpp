#include "module_under_test.h"

#include <algorithm>
#include <stdexcept>

namespace {

template <typename Function>
Function Find(HMODULE module, const char* name) {
  const auto address = GetProcAddress(module, name);
  if (!address) throw std::runtime_error(std::string("not exported: ") + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

}  // namespace

std::wstring ModuleUnderTest::Path() {
  const std::string built = POSTROVE_DLL;
  std::wstring path(built.begin(), built.end());
  // A cross build names it as the building machine does; Wine shows that machine's files as Z:.
  if (path.front() == L'/') path.insert(0, L"Z:");
  std::replace(path.begin(), path.end(), L'/', L'\\');
  return path;
}

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
