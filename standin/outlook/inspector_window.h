#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "outlook/command_bar_model.h"

namespace standin {

inline constexpr wchar_t kInspectorWindowClass[] = L"DeskhostInspector";

// The real window of an inspector: a strip with a button for each visible control of the "Standard"
// bar, the message's header lines and its text, read-only. A press of a button clicks the control;
// closing the window closes the inspector.
class InspectorWindow {
 public:
  // Shows the window. Throws HostError when it cannot be made.
  explicit InspectorWindow(Inspector& inspector);
  ~InspectorWindow();
  InspectorWindow(const InspectorWindow&) = delete;
  InspectorWindow& operator=(const InspectorWindow&) = delete;

  HWND Handle() const { return window_; }
  void BringToFront() const;
  void Invalidate();  // controls and title are shown anew when messages are pumped next

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Fill();
  void Layout() const;
  void Press(std::size_t button);
  int Scaled(int pixels) const;

  Inspector& inspector_;
  HWND window_ = nullptr;
  HWND header_ = nullptr;
  HWND body_ = nullptr;
  HFONT font_ = nullptr;
  bool stale_ = false;
  struct Button {
    HWND window;
    ControlPointer control;
  };
  std::vector<Button> buttons_;
};

}  // namespace standin
