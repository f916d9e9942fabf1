#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "forms/kit/control.h"
#include "forms/win32/fonts.h"

namespace postrove::forms {

// Messages that a control's window gives its dialog.
enum DialogMessage : UINT {
  kFocusMoved = WM_APP + 1,  // posted: the focus came to or left a control
  kEnterPressed,             // sent: Enter arrived as a character
  kListMoved,                // posted: a combo box's list opened or closed; lParam is the box
  kFormActivated,            // posted by the dialog to itself
};

std::wstring TextOf(HWND window);

// What the windows of a dialog are made with.
struct WindowParts {
  HINSTANCE module;
  const wchar_t* richEditClass;  // null: a plain text box stands in for it
};

// The real window of one control: made from the model, changed with it, and telling it what the
// user does. The dialog's window destroys it; this object must live until then.
class ControlWindow {
 public:
  explicit ControlWindow(Control& control) : control_(&control), kind_(control.Kind()) {}
  ~ControlWindow();
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  // `group` starts a new group of option buttons. Throws Error when Windows makes no window.
  void Create(HWND dialog, int id, bool group, const WindowParts& parts);

  // The model, or null after LetGo: the form is unloaded, its controls may be gone at any moment.
  Control* Model() const { return control_; }
  void LetGo() { control_ = nullptr; }

  HWND Window() const { return window_; }
  HWND Field() const { return edit_ ? edit_ : window_; }  // what takes the focus
  bool Has(HWND window) const;                            // its window or a part of it
  bool IsButton() const { return kind_ == ControlKind::CommandButton; }
  bool IsLink() const { return link_; }
  bool HasCaption() const;

  void Apply(Property property);
  void SetFont(Fonts& fonts);
  void MoveTo(const RECT& place, int listHeight);

  // The width in twips that the whole caption needs; 0 for what has none or wraps it.
  int CaptionWidth(const Fonts& fonts) const;

  // The model's tool tip; before it the whole text when the window cannot show all of it.
  std::wstring Tip(const Fonts& fonts) const;

  // Gives the window the focus, and as Windows' dialogs do selects all of its text on request.
  void Focus(bool selectAll);
  bool CanFocus() const;

  // Draws a button as the one that Enter presses.
  void ShowDefault(bool isDefault);

  // A notification of the window.
  void Command(UINT code);

  // The system's colours are others now.
  void FollowColors();

  // Prepares for painting and answers the background; null lets Windows choose.
  HBRUSH Colors(HDC dc);

  // The user pressed the button or followed the link.
  void Click();

  // A key on its way to the model; true when it was swallowed.
  bool Pressed(int key);

  bool ListIsDown() const;
  void DropDownList();
  // The list was dropped down or closed: takes back what that did to the text.
  void ListMoved();
  // Closes the dropped-down list as the key does. By Esc nothing is chosen.
  void CloseListBy(WORD key);

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Pass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const;
  WNDPROC Subclass(HWND window);
  void Unsubclass(HWND window);
  void PressMouse(int button, LPARAM position);
  void PaintFocus();
  void LoadIcon(Fonts& fonts);

  bool IsCut(const Fonts& fonts) const;
  void ApplyColors();
  void SetWindowTextNow();
  void SetSelectionNow();

  // The text field (text_field.cpp).
  void ReadCaret();
  void ReadText();
  void ShowPathEnd();
  LRESULT HandleFrame(UINT message, WPARAM wParam, LPARAM lParam);
  void PaintAroundLine();

  // The list of a combo box (combo_list.cpp).
  void ListCommand(UINT code);
  void EmptyList();
  void FillLater();
  void FillMore();
  void FillAround();
  void FillTo(std::size_t count);
  void WidenList();
  void TakePick();

  // While one is alive notifications are of our own changes, and no news.
  class Applying {
   public:
    explicit Applying(int& depth) : depth_(depth) { ++depth_; }
    ~Applying() { --depth_; }
    Applying(const Applying&) = delete;
    Applying& operator=(const Applying&) = delete;

   private:
    int& depth_;
  };

  static constexpr UINT_PTR kFillTimer = 0x5052;

  Control* control_;
  const ControlKind kind_;
  bool link_ = false;
  bool multiLine_ = false;
  HWND dialog_ = nullptr;
  HWND window_ = nullptr;
  HWND edit_ = nullptr;  // the text box: the window itself, or the combo box's part
  HWND list_ = nullptr;  // the combo box's list
  WNDPROC windowProcedure_ = nullptr;
  WNDPROC editProcedure_ = nullptr;
  HINSTANCE module_ = nullptr;
  HICON icon_ = nullptr;
  HBRUSH brush_ = nullptr;
  COLORREF brushColor_ = CLR_INVALID;
  int unitsPerInch_ = 0;
  int lineHeight_ = 0;
  int applying_ = 0;
  std::size_t listed_ = 0;  // how many of the model's items the list has
  int picked_ = -1;         // the item chosen in the open list, which the model does not know yet
};

}  // namespace postrove::forms
