#pragma once

#include <oleacc.h>
#include <windows.h>

#include <wrl/client.h>
#include <string>
#include <vector>

namespace postrove::forms {

// What screen readers are told of a dialog beyond what its windows say by themselves. Uses COM as
// the thread has it; where Windows offers no such service, or COM is not initialised, nothing is
// told. Nothing here fails.
class Accessibility {
 public:
  Accessibility();
  ~Accessibility() { Forget(); }
  Accessibility(const Accessibility&) = delete;
  Accessibility& operator=(const Accessibility&) = delete;

  // A window of our own class has no role by itself.
  void BeDialog(HWND window);

  // Sets the window's description, which is read after its name.
  void Describe(HWND window, const std::wstring& text);

  // Takes everything back; before the windows are destroyed.
  void Forget();

 private:
  Microsoft::WRL::ComPtr<IAccPropServices> services_;
  std::vector<HWND> told_;
};

}  // namespace postrove::forms
