#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/kit/form.h"
#include "forms/kit/form_layout.h"
#include "forms/win32/accessibility.h"
#include "forms/win32/control_window.h"
#include "forms/win32/fonts.h"
#include "forms/win32/modal_owner.h"
#include "forms/win32/tool_tips.h"
#include "forms/win32/visual_styles.h"

namespace postrove::forms {

// What all dialogs of a host share.
struct Surroundings {
  explicit Surroundings(HINSTANCE instance) : module(instance), styles(instance) {}

  HINSTANCE module;
  VisualStyles styles;
  const wchar_t* richEditClass = nullptr;
  int waiting = 0;  // how many times the wait cursor was switched on
};

// One form shown modally. Its window and its controls' windows live as long as this object, unless
// Windows destroys them before; the form can end and be destroyed earlier, within any event.
class FormWindow final : public FormView {
 public:
  static constexpr const wchar_t* kClassName = L"PostroveForm";
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  // Attaches to the form. Throws Error when the form is shown already or was unloaded.
  FormWindow(Form& form, const Surroundings& surroundings);
  ~FormWindow() override;
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  // Makes and shows the windows. Throws Error when Windows makes none.
  void Show();

  // Dispatches messages until the form is unloaded or its window was destroyed; that unloads it.
  void Run();

  const Form* Shown() const { return form_; }
  HWND Window() const { return window_; }
  ControlWindow* WindowOf(const Control& control) const;

  void ControlChanged(Control& control, Property property) override;
  void CaptionChanged() override;
  void Unloaded() override;

 private:
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT HandleGuarded(UINT message, WPARAM wParam, LPARAM lParam);
  void CreateControls();
  std::wstring MessageText() const;
  void FollowColors();
  HBRUSH Colors(HWND child, HDC dc) const;
  void Command(HWND control, UINT code);
  void Close();
  void End();
  ControlWindow* Containing(HWND window) const;
  ControlWindow* Focused() const { return Containing(GetFocus()); }

  // Where the focus is, and what the keys do (form_focus.cpp).
  ControlWindow* ButtonFor(bool Control::*role) const;
  bool IsSecondPress(const MSG& message) const;
  bool IsKeyOfDialog(MSG& message);
  void MoveFocus(bool back);
  void RestoreFocus();
  void SettleFocus();
  bool SettleOn(const ControlWindow& control);
  void ShowDefaultButton();
  void PressEnter();
  void PressEscape();
  void PressHelp();

  // The size of the dialog and of what is in it (form_place.cpp).
  void SetDpi(unsigned dpi);
  void PlaceWindow();
  SIZE SizeAround(SIZE twips) const;
  SIZE Room() const;
  void MeasureCaptions();
  void Rearrange();
  void Arrange();
  void KeepSize();

  Form* form_;
  const Surroundings& surroundings_;
  ModalOwner owner_;
  HWND window_ = nullptr;
  DWORD style_ = 0;
  DWORD exStyle_ = 0;
  unsigned dpi_ = USER_DEFAULT_SCREEN_DPI;
  std::unique_ptr<Fonts> fonts_;
  std::optional<FormLayout> layout_;
  std::vector<std::unique_ptr<ControlWindow>> controls_;
  ToolTips tips_;
  Accessibility accessibility_;
  ControlWindow* told_ = nullptr;  // the control whose focus the model knows of
  HWND lastFocus_ = nullptr;       // where the focus returns when the window is activated
  DWORD shown_ = 0;                // when, in milliseconds
  bool byEnter_ = false;           // the key was down then
  bool aboveForm_ = false;         // a form opened it
  bool activationPending_ = false;
  bool sized_ = false;  // the user changed the size
};

}  // namespace postrove::forms
