#include "forms/win32/WinFormHost.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "forms/win32/dpi.h"
#include "forms/win32/form_window.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

// A library of Windows' own folder: the host process may have an older one of the same name beside
// its program.
HMODULE LoadFromSystem(const wchar_t* name) {
  wchar_t folder[MAX_PATH] = {};
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  return LoadLibraryW((std::wstring(folder) + L"\\" + name).c_str());
}

class WinFormHost final : public FormHost {
 public:
  explicit WinFormHost(HINSTANCE module) : surroundings_(module) {}

  ~WinFormHost() override {
    UnregisterClassW(FormWindow::kClassName, surroundings_.module);
    if (richEdit_) FreeLibrary(richEdit_);
  }

  WinFormHost(const WinFormHost&) = delete;
  WinFormHost& operator=(const WinFormHost&) = delete;

  void ShowModal(Form& form) override {
    HostDpiScope::Remember();
    RegisterWindowClass();
    LoadRichEdit();
    FormWindow window(form, surroundings_);
    open_.push_back(&window);
    // A dialog that is opened while the user waits is to be used; afterwards the waiting goes on.
    struct Closing {
      WinFormHost& host;
      const int waiting = std::exchange(host.surroundings_.waiting, 0);
      ~Closing() {
        host.open_.pop_back();
        host.surroundings_.waiting = waiting;
        if (waiting) host.ApplyCursor();
      }
    } const closing{*this};
    if (closing.waiting) ApplyCursor();
    window.Show();
    window.Run();
  }

  void SetTopmost(Form& form, bool topmost) override {
    if (const HWND window = WindowOf(form)) {
      SetWindowPos(window, topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
  }

  void BringToFront(Form& form) override {
    if (const HWND window = WindowOf(form)) {
      SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
      // The dialog that it opened, while there is one.
      SetForegroundWindow(GetLastActivePopup(window));
    }
  }

  void SetFocus(Control& control) override {
    ControlWindow* const window = WindowOf(control);
    if (window && window->CanFocus()) window->Focus(false);
  }

  void DropDownList(Control& combo) override {
    if (ControlWindow* const window = WindowOf(combo)) window->DropDownList();
  }

  void SendTab(Form& form) override {
    // Posted, as a key is: the event that asks for it ends first.
    if (const HWND window = WindowOf(form)) PostMessageW(window, WM_NEXTDLGCTL, 0, 0);
  }

  void SetWaitCursor(bool on) override {
    int& waiting = surroundings_.waiting;
    if (on) {
      // What the user did last shows before the thread is busy.
      for (const FormWindow* window : open_) UpdateWindow(window->Window());
      ++waiting;
    } else if (waiting > 0) {
      --waiting;
    }
    ApplyCursor();
  }

  std::uint32_t InputTime() const override { return static_cast<std::uint32_t>(GetMessageTime()); }

 private:
  void ApplyCursor() const {
    SetCursor(LoadCursorW(nullptr, surroundings_.waiting ? IDC_WAIT : IDC_ARROW));
  }

  void RegisterWindowClass() const {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = FormWindow::Procedure;
    description.hInstance = surroundings_.module;
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = FormWindow::kClassName;
    if (!RegisterClassExW(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
      throw Error(HRESULT_FROM_WIN32(GetLastError()), L"WinFormHost",
                  L"The window class could not be registered");
    }
  }

  void LoadRichEdit() {
    if (richEdit_) return;
    if ((richEdit_ = LoadFromSystem(L"msftedit.dll"))) {
      surroundings_.richEditClass = L"RICHEDIT50W";
    } else if ((richEdit_ = LoadFromSystem(L"riched20.dll"))) {
      surroundings_.richEditClass = L"RichEdit20W";
    }
  }

  FormWindow* Find(const Form& form) const {
    for (FormWindow* window : open_) {
      if (window->Shown() == &form) return window;
    }
    return nullptr;
  }

  HWND WindowOf(const Form& form) const {
    const FormWindow* const window = Find(form);
    return window ? window->Window() : nullptr;
  }

  ControlWindow* WindowOf(const Control& control) const {
    const FormWindow* const window = Find(control.Owner());
    return window ? window->WindowOf(control) : nullptr;
  }

  Surroundings surroundings_;
  HMODULE richEdit_ = nullptr;
  std::vector<FormWindow*> open_;  // the last is in front
};

}  // namespace

std::shared_ptr<FormHost> CreateWinFormHost(HINSTANCE module) {
  return std::make_shared<WinFormHost>(module);
}

}  // namespace postrove::forms
