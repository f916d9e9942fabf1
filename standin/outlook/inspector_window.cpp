#include "outlook/inspector_window.h"

#include "outlook/inspector.h"
#include "outlook/session.h"
#include "outlook/variant.h"
#include "shared/text.h"

namespace standin {
namespace {

constexpr UINT kFill = WM_APP;
constexpr UINT kSend = WM_APP + 1;
constexpr WORD kFirstButton = 100;

// At 96 dots per inch.
constexpr int kMargin = 6;
constexpr int kButtonHeight = 26;
constexpr int kHeaderHeight = 60;

HFONT MessageFont() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return CreateFontIndirectW(&metrics.lfMessageFont);
}

HWND MakeChild(HWND parent, const wchar_t* windowClass, const std::wstring& text, DWORD style,
               WORD id, HFONT font) {
  const HWND child = CreateWindowExW(
      0, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
      reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
  SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return child;
}

std::wstring HeaderText(const MessageData& message) {
  return L"From:\t" + message.senderName + L"\r\nTo:\t" + message.Names(RecipientKind::kTo) +
         L"\r\nSubject:\t" + message.subject;
}

}  // namespace

InspectorWindow::InspectorWindow(Inspector& inspector)
    : inspector_(inspector), font_(MessageFont()) {
  static const ATOM registered = [] {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<UINT_PTR>(COLOR_BTNFACE + 1));
    windowClass.lpszClassName = kInspectorWindowClass;
    return RegisterClassExW(&windowClass);
  }();
  if (!registered) throw HostError{HRESULT_FROM_WIN32(GetLastError()), L"No window class"};
  window_ = CreateWindowExW(0, kInspectorWindowClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                            CW_USEDEFAULT, CW_USEDEFAULT, 780, 520, nullptr, nullptr,
                            GetModuleHandleW(nullptr), this);
  if (!window_) throw HostError{HRESULT_FROM_WIN32(GetLastError()), L"No window"};
  const MessageData& message = inspector_.Item()->Message();
  constexpr DWORD kReadOnly = ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | WS_TABSTOP;
  header_ = MakeChild(window_, L"EDIT", HeaderText(message), kReadOnly, 1, font_);
  body_ = MakeChild(window_, L"EDIT", message.body, kReadOnly | WS_VSCROLL | WS_BORDER, 2, font_);
  Fill();
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

InspectorWindow::~InspectorWindow() {
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
  DeleteObject(font_);
}

void InspectorWindow::BringToFront() const {
  if (GetForegroundWindow() != window_ && IsWindowEnabled(window_)) SetForegroundWindow(window_);
}

void InspectorWindow::Invalidate() {
  if (!stale_) PostMessageW(window_, kFill, 0, 0);
  stale_ = true;
}

void InspectorWindow::Fill() {
  stale_ = false;
  for (const Button& button : buttons_) DestroyWindow(button.window);
  buttons_.clear();
  SetWindowTextW(window_, inspector_.Caption().c_str());
  const std::shared_ptr<BarModel> bar = inspector_.Bar(L"Standard");
  if (bar->visible && inspector_.Item()->Kind() != ItemKind::kNote) {
    for (const ControlPointer& control : bar->controls) {
      if (!control->visible) continue;
      const WORD id = static_cast<WORD>(kFirstButton + buttons_.size());
      const HWND button =
          MakeChild(window_, L"BUTTON", control->caption, WS_TABSTOP | BS_PUSHBUTTON, id, font_);
      EnableWindow(button, control->enabled);
      buttons_.push_back({button, control});
    }
  }
  Layout();
}

int InspectorWindow::Scaled(int pixels) const {
  const HDC device = GetDC(window_);
  const int result = MulDiv(pixels, GetDeviceCaps(device, LOGPIXELSX), USER_DEFAULT_SCREEN_DPI);
  ReleaseDC(window_, device);
  return result;
}

void InspectorWindow::Layout() const {
  RECT area;
  GetClientRect(window_, &area);
  const int margin = Scaled(kMargin);
  const int height = Scaled(kButtonHeight);
  int x = margin;
  const HDC device = GetDC(window_);
  const HGDIOBJ before = SelectObject(device, font_);
  for (const Button& button : buttons_) {
    const std::wstring caption = postrove::text::Replace(button.control->caption, L"&", L"");
    SIZE size = {};
    GetTextExtentPoint32W(device, caption.c_str(), static_cast<int>(caption.size()), &size);
    if (button.control->beginGroup) x += margin;
    const int width = size.cx + 4 * margin;
    MoveWindow(button.window, x, margin, width, height, TRUE);
    x += width + margin / 3;
  }
  SelectObject(device, before);
  ReleaseDC(window_, device);
  const int top = height + 2 * margin;
  const int width = area.right - 2 * margin;
  MoveWindow(header_, margin, top, width, Scaled(kHeaderHeight), TRUE);
  const int bodyTop = top + Scaled(kHeaderHeight) + margin;
  MoveWindow(body_, margin, bodyTop, width, area.bottom - bodyTop - margin, TRUE);
}

// The click can run the add-in's dialog and, in it, destroy this window: nothing of it is touched
// afterwards.
void InspectorWindow::Press(std::size_t index) {
  if (index >= buttons_.size()) return;
  const ControlPointer control = buttons_[index].control;
  Session& session = inspector_.Owner();
  if (control->builtIn && control->id == kSendControlId) {
    PostMessageW(window_, kSend, 0, 0);
    return;
  }
  session.Click(control);
}

LRESULT InspectorWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE && body_) inspector_.Owner().Activate(inspector_);
      return 0;
    case WM_SIZE:
      if (body_) Layout();
      return 0;
    case WM_COMMAND:
      if (HIWORD(wParam) == BN_CLICKED && LOWORD(wParam) >= kFirstButton) {
        Press(LOWORD(wParam) - kFirstButton);
      }
      return 0;
    case WM_CTLCOLORSTATIC:
      if (reinterpret_cast<HWND>(lParam) == body_) {
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
      }
      break;
    case WM_CLOSE:
      inspector_.Owner().Close(inspector_, true);
      return 0;
    case kFill:
      Fill();
      return 0;
    case kSend:
      inspector_.Item()->Send();
      return 0;
    default:
      break;
  }
  return DefWindowProcW(window_, message, wParam, lParam);
}

LRESULT CALLBACK InspectorWindow::Procedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
    auto* self = static_cast<InspectorWindow*>(create->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<InspectorWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  try {
    return self->Handle(message, wParam, lParam);
  } catch (const HostError& error) {
    MessageBoxW(window, error.text.c_str(), L"Outlook", MB_OK | MB_ICONWARNING);
    return 0;
  } catch (...) {
    return 0;
  }
}

}  // namespace standin
