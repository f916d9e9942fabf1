#include "outlook/dialog_windows.h"

#include <array>

#include "outlook/inspector_window.h"
#include "shared/text.h"

namespace standin {
namespace {

using postrove::text::EqualsIgnoreCase;

bool IsDialogClass(HWND window) {
  static constexpr std::array kOthers = {kInspectorWindowClass, L"#32768",    L"#32769",
                                         L"tooltips_class32",   L"ComboLBox", L"IME",
                                         L"MSCTFIME UI",        L"SysShadow"};
  const std::wstring name = ClassOf(window);
  for (const wchar_t* other : kOthers) {
    if (EqualsIgnoreCase(name, other)) return false;
  }
  return true;
}

std::wstring PlainCaption(HWND window) {
  return postrove::text::Replace(TextOf(window), L"&", L"");
}

struct ChildSearch {
  const wchar_t* windowClass;  // null: any
  std::vector<HWND> found;
};

BOOL CALLBACK CollectChild(HWND child, LPARAM parameter) {
  auto* search = reinterpret_cast<ChildSearch*>(parameter);
  const bool wanted = !search->windowClass || EqualsIgnoreCase(ClassOf(child), search->windowClass);
  if (wanted && IsWindowVisible(child)) search->found.push_back(child);
  return TRUE;
}

bool IsOurs(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process == GetCurrentProcessId() && IsWindowVisible(window);
}

BOOL CALLBACK TakeDialog(HWND window, LPARAM parameter) {
  if (!IsOurs(window) || !IsWindowEnabled(window) || !IsDialogClass(window)) return TRUE;
  *reinterpret_cast<HWND*>(parameter) = window;
  return FALSE;
}

BOOL CALLBACK DescribeWindow(HWND window, LPARAM parameter) {
  if (!IsOurs(window)) return TRUE;
  // The owning thread may hang: only what is answered without it.
  wchar_t text[256] = {};
  InternalGetWindowText(window, text, 256);
  *reinterpret_cast<std::wstring*>(parameter) +=
      L"  " + ClassOf(window) + L" \"" + text + L"\"" +
      (IsWindowEnabled(window) ? L"\n" : L" (disabled)\n");
  return TRUE;
}

bool IsPushButton(HWND button) {
  const LONG_PTR type = GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK;
  return type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
}

}  // namespace

std::wstring ClassOf(HWND window) {
  wchar_t name[128] = {};
  GetClassNameW(window, name, 128);
  return name;
}

std::wstring TextOf(HWND window) {
  const LRESULT length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  const LRESULT copied =
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

HWND TopDialog() {
  HWND result = nullptr;
  EnumWindows(TakeDialog, reinterpret_cast<LPARAM>(&result));
  return result;
}

bool IsMessageBox(HWND dialog) { return ClassOf(dialog) == L"#32770"; }

std::vector<HWND> VisibleChildren(HWND dialog, const wchar_t* windowClass) {
  ChildSearch search = {windowClass, {}};
  EnumChildWindows(dialog, CollectChild, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindButton(HWND dialog, const std::wstring& caption) {
  for (const HWND button : VisibleChildren(dialog, L"BUTTON")) {
    if (IsWindowEnabled(button) && EqualsIgnoreCase(PlainCaption(button), caption)) return button;
  }
  return nullptr;
}

HWND DefaultButton(HWND dialog) {
  HWND first = nullptr;
  for (const HWND button : VisibleChildren(dialog, L"BUTTON")) {
    if (!IsPushButton(button) || !IsWindowEnabled(button)) continue;
    if (!first) first = button;
    if ((GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) return button;
  }
  return first;
}

HWND ComboEdit(HWND dialog) {
  for (const HWND combo : VisibleChildren(dialog, L"COMBOBOX")) {
    const std::vector<HWND> edits = VisibleChildren(combo, L"EDIT");
    if (!edits.empty()) return edits.front();
  }
  return nullptr;
}

HWND EditAfterLabel(HWND dialog, const std::wstring& word) {
  bool labelled = false;
  for (const HWND child : VisibleChildren(dialog, nullptr)) {
    const std::wstring name = ClassOf(child);
    if (EqualsIgnoreCase(name, L"EDIT") && labelled) return child;
    if (EqualsIgnoreCase(name, L"COMBOBOX")) continue;  // its text part follows
    labelled = EqualsIgnoreCase(name, L"STATIC") &&
               postrove::text::FindIgnoreCase(PlainCaption(child), word) != std::wstring::npos;
  }
  return nullptr;
}

std::wstring DescribeWindows() {
  std::wstring result;
  EnumWindows(DescribeWindow, reinterpret_cast<LPARAM>(&result));
  return result;
}

}  // namespace standin
