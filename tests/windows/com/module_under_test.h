#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>

// The add-in DLL, loaded as COM loads it.
class ModuleUnderTest {
 public:
  static std::wstring Path();

  ModuleUnderTest();
  ~ModuleUnderTest();
  ModuleUnderTest(const ModuleUnderTest&) = delete;
  ModuleUnderTest& operator=(const ModuleUnderTest&) = delete;

  HRESULT RegisterServer() const { return Call("DllRegisterServer"); }
  HRESULT UnregisterServer() const { return Call("DllUnregisterServer"); }
  HRESULT CanUnloadNow() const { return Call("DllCanUnloadNow"); }
  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** object) const;

 private:
  HRESULT Call(const char* name) const;

  HMODULE module_;
};
