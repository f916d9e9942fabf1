#include "outlook/scripted_user.h"

#include <array>
#include <cstdio>
#include <cwchar>

#include "outlook/dialog_windows.h"
#include "outlook/screenshot.h"
#include "shared/text.h"

namespace standin {
namespace {

namespace text = postrove::text;

constexpr UINT kSettle = WM_APP;     // posted: answers once it is handled
constexpr UINT kFocus = WM_APP + 1;  // sent: gives the focus to a control
constexpr DWORD kPoll = 5;           // milliseconds between two looks
constexpr int kMostPresses = 3;      // of one dialog

std::wstring OneLine(const std::wstring& lines) {
  return text::Replace(text::Replace(lines, L"\r\n", L"\n"), L"\n", L" / ");
}

std::wstring Lower(std::wstring value) {
  for (wchar_t& c : value) c = text::Fold(c);
  return value;
}

// All that a message box says.
std::wstring MessageText(HWND dialog) {
  std::wstring result;
  for (const wchar_t* windowClass : {L"STATIC", L"EDIT"}) {
    for (const HWND child : VisibleChildren(dialog, windowClass)) {
      const std::wstring part = TextOf(child);
      if (part.empty()) continue;
      if (!result.empty()) result += L'\n';
      result += part;
    }
  }
  return result;
}

std::wstring FirstText(HWND dialog) {
  const std::vector<HWND> edits = VisibleChildren(dialog, L"EDIT");
  return edits.empty() ? MessageText(dialog) : TextOf(edits.front());
}

// "Folder Not Found" as "Folder-Not-Found".
std::wstring FilePart(const std::wstring& title) {
  std::wstring result;
  for (const wchar_t c : title) {
    const bool plain =
        (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
    if (plain) {
      result += c;
    } else if (!result.empty() && result.back() != L'-') {
      result += L'-';
    }
  }
  return result.empty() ? L"dialog" : result;
}

}  // namespace

ScriptedUser::ScriptedUser(UserScript script)
    : script_(std::move(script)), answers_(script_.answers) {
  static const ATOM registered = [] {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = HelperProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"DeskhostUser";
    return RegisterClassExW(&windowClass);
  }();
  helper_ = CreateWindowExW(0, MAKEINTATOM(registered), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(helper_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  stop_ = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  thread_.emplace([this] { Watch(); });
}

ScriptedUser::~ScriptedUser() {
  SetEvent(stop_);
  // The helper thread may be waiting for an answer of this one.
  const HANDLE left = thread_->Handle();
  while (MsgWaitForMultipleObjects(1, &left, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  CloseHandle(stop_);
  DestroyWindow(helper_);
  for (const auto& [title, answer] : answers_) {
    if (!answered_.contains(title)) script_.report(L"Unused: " + title + L"=" + answer);
  }
}

LRESULT CALLBACK ScriptedUser::HelperProcedure(HWND window, UINT message, WPARAM wParam,
                                               LPARAM lParam) {
  if (message == kSettle) {
    auto* self = reinterpret_cast<ScriptedUser*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    self->settled_ = lParam;
    return 0;
  }
  if (message == kFocus) {
    SetFocus(reinterpret_cast<HWND>(lParam));
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

void ScriptedUser::Watch() {
  Progress();
  while (WaitForSingleObject(stop_, kPoll) == WAIT_TIMEOUT) {
    std::erase_if(known_, [](const auto& entry) { return !IsWindowVisible(entry.first); });
    const HWND dialog = TopDialog();
    // A dialog that is being made or left is no longer the top one once its thread is idle.
    if (dialog && Settle() && TopDialog() == dialog && Settle() && TopDialog() == dialog) {
      Act(dialog);
    }
    CheckPatience();
  }
}

void ScriptedUser::Act(HWND dialog) {
  const int presses = known_[dialog].presses++;
  if (presses >= kMostPresses) return;  // it does not react: patience runs out
  Progress();
  ++acts_;
  const bool saveDialog = !IsMessageBox(dialog) && ComboEdit(dialog);
  if (presses == 0 && saveDialog) {
    FillSaveDialog(dialog);
    Picture(dialog, TextOf(dialog));
    if (const HWND button = DefaultButton(dialog)) Press(button);
  } else if (presses == 0) {
    Answer(dialog);
  } else {
    // Its button's work ended and it is still there: the user gives up.
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    Settle();
  }
}

void ScriptedUser::FillSaveDialog(HWND dialog) {
  if (script_.project) TypeInto(ComboEdit(dialog), *script_.project);
  const auto paste = [&](const wchar_t* label, const std::optional<std::wstring>& value) {
    if (!value) return;
    const HWND edit = EditAfterLabel(dialog, label);
    if (!edit) return Fault(std::wstring(L"the dialog has no text box labelled ") + label);
    Replace(edit, *value);
  };
  paste(L"Folder", script_.folder);
  paste(L"Name", script_.name);
}

// As pasted over all that was there.
void ScriptedUser::Replace(HWND edit, const std::wstring& value) {
  SendMessageW(helper_, kFocus, 0, reinterpret_cast<LPARAM>(edit));
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(value.c_str()));
  Settle();
}

void ScriptedUser::Fault(const std::wstring& text) {
  faulty_ = true;
  script_.report(L"Fault: " + text);
}

void ScriptedUser::TypeInto(HWND edit, const std::wstring& value) {
  SendMessageW(helper_, kFocus, 0, reinterpret_cast<LPARAM>(edit));
  SendMessageW(edit, EM_SETSEL, 0, -1);
  if (value.empty()) SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L""));
  for (const wchar_t c : value) PostMessageW(edit, WM_CHAR, c, 1);
  Settle();
}

void ScriptedUser::Answer(HWND dialog) {
  const std::wstring title = text::Trim(TextOf(dialog));
  const bool messageBox = IsMessageBox(dialog);
  script_.report(L"Message: " + title + L" | " +
                 OneLine(messageBox ? MessageText(dialog) : FirstText(dialog)));
  Picture(dialog, title);
  HWND button = ScriptedButton(dialog, title);
  static constexpr std::array kAgree = {L"OK", L"No", L"Cancel"};
  static constexpr std::array kRefuse = {L"Cancel", L"No", L"OK"};
  const bool agree = messageBox || text::EqualsIgnoreCase(title, L"Folder Not Found");
  for (const wchar_t* caption : agree ? kAgree : kRefuse) {
    if (!button) button = FindButton(dialog, caption);
  }
  if (button) {
    Press(button);
  } else {
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    Settle();
  }
}

// The button that the script names, after its name was typed; null without an answer.
HWND ScriptedUser::ScriptedButton(HWND dialog, const std::wstring& title) {
  const auto answer = answers_.find(Lower(title));
  if (answer == answers_.end()) return nullptr;
  const std::wstring text = answer->second;
  if (answers_.count(answer->first) > 1) {
    answers_.erase(answer);
  } else {
    answered_.insert(answer->first);
  }
  const std::size_t colon = text.find(L':');
  const HWND button = FindButton(dialog, text.substr(0, colon));
  if (!button) Fault(L"\"" + title + L"\" has no button " + text.substr(0, colon));
  if (button && colon != std::wstring::npos) {
    const std::vector<HWND> edits = VisibleChildren(dialog, L"EDIT");
    if (edits.size() < 2) {
      Fault(L"\"" + title + L"\" has no name to edit");
    } else {
      Replace(edits.back(), text.substr(colon + 1));
    }
  }
  return button;
}

// Posted, not sent: what the button starts then runs as after real input.
void ScriptedUser::Press(HWND button) {
  PostMessageW(button, BM_CLICK, 0, 0);
  Settle();
}

void ScriptedUser::Picture(HWND dialog, const std::wstring& title) {
  if (script_.screenshots.empty()) return;
  RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  Settle();
  wchar_t number[16];
  swprintf(number, 16, L"%02d-", ++pictures_);
  const std::wstring path =
      text::NormaliseFolder(script_.screenshots) + number + FilePart(title) + L".bmp";
  if (!SaveScreenshot(dialog, path)) Fault(L"no picture " + path);
}

// The answer is posted behind all that was asked of the thread before. It comes when that was dealt
// with, or from within a dialog that it opened.
bool ScriptedUser::Settle() {
  const LPARAM number = ++asked_;
  PostMessageW(helper_, kSettle, 0, number);
  while (settled_ < number) {
    if (WaitForSingleObject(stop_, kPoll) == WAIT_OBJECT_0) return false;
    CheckPatience();
  }
  return true;
}

void ScriptedUser::Progress() { progress_ = GetTickCount64(); }

void ScriptedUser::CheckPatience() const {
  if (GetTickCount64() - progress_ < script_.patience) return;
  const std::string report =
      text::ToUtf8(L"Fault: nothing went on for " + std::to_wstring(script_.patience / 1000) +
                   L" s; windows:\n" + DescribeWindows());
  std::fputs(report.c_str(), stderr);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), 1);
}

}  // namespace standin
