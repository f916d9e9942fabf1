// The scripted user at dialogs of the kinds that add-ins show.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "outlook/scripted_user.h"

namespace standin {
namespace {

using ::testing::ElementsAre;

TEST(ScriptedUser, AnswersMessageBoxes) {
  std::vector<std::wstring> report;
  UserScript script;
  script.answers = {{L"delete it?", L"Yes"},
                    {L"other", L"Yes"},
                    {L"other", L"Cancel"},
                    {L"odd", L"Maybe"},
                    {L"never", L"OK:name"}};
  script.report = [&](const std::wstring& line) { report.push_back(line); };
  {
    const ScriptedUser user(std::move(script));
    EXPECT_EQ(MessageBoxW(nullptr, L"First\r\nSecond", L"Delete it?", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Unasked", MB_YESNO), IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_YESNO), IDYES);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Other", MB_OKCANCEL), IDCANCEL);
    EXPECT_FALSE(user.Faulty());
    EXPECT_EQ(MessageBoxW(nullptr, L"Sure?", L"Odd", MB_YESNO), IDNO);
    EXPECT_TRUE(user.Faulty());
  }
  EXPECT_THAT(report,
              ElementsAre(L"Message: Delete it? | First / Second", L"Message: Unasked | Sure?",
                          L"Message: Other | Sure?", L"Message: Other | Sure?",
                          L"Message: Other | Sure?", L"Message: Odd | Sure?",
                          L"Fault: \"Odd\" has no button Maybe", L"Unused: never=OK:name"));
}

// A save dialog as an add-in would make it: its default button opens a message box, which leaves it
// open unless the answer is Yes.
class SaveDialog {
 public:
  explicit SaveDialog(bool asks) : asks_(asks) {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"TestSaveDialog";
    RegisterClassW(&windowClass);
    window_ = CreateWindowExW(0, L"TestSaveDialog", L"Save it", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300,
                              nullptr, nullptr, windowClass.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    combo_ = Child(L"COMBOBOX", L"", CBS_DROPDOWN);
    Child(L"STATIC", L"Save &Folder:", 0);
    folder_ = Child(L"EDIT", L"C:\\Old\\", 0);
    Child(L"STATIC", L"File &Name:", 0);
    name_ = Child(L"EDIT", L"Old", 0);
    Child(L"BUTTON", L"Close", BS_PUSHBUTTON);
    save_ = Child(L"BUTTON", L"Save", BS_DEFPUSHBUTTON);
  }

  // Until it is closed.
  void Run() {
    ShowWindow(window_, SW_SHOW);
    MSG message;
    while (open_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    DestroyWindow(window_);
  }

  std::wstring saved;  // "project|folder|name" of each press
  bool givenUp = false;

 private:
  HWND Child(const wchar_t* windowClass, const wchar_t* text, DWORD style) {
    return CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 100, 80,
                           window_, nullptr, GetModuleHandleW(nullptr), nullptr);
  }

  static std::wstring Text(HWND window) {
    wchar_t text[100] = {};
    GetWindowTextW(window, text, 100);
    return text;
  }

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<SaveDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_CLOSE) {
      self->givenUp = true;
      self->open_ = false;
      return 0;
    }
    if (self && message == WM_COMMAND && reinterpret_cast<HWND>(lParam) == self->save_) {
      self->saved += Text(self->combo_) + L'|' + Text(self->folder_) + L'|' + Text(self->name_);
      self->open_ = self->asks_ && MessageBoxW(window, L"Go on?", L"Ask", MB_YESNO) != IDYES;
      return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  const bool asks_;
  bool open_ = true;
  HWND window_ = nullptr;
  HWND combo_ = nullptr;
  HWND folder_ = nullptr;
  HWND name_ = nullptr;
  HWND save_ = nullptr;
};

TEST(ScriptedUser, FillsTheSaveDialogAndGivesUpWhenItStays) {
  struct Case {
    const char* name;
    bool asks;
    std::multimap<std::wstring, std::wstring> answers;
    bool givenUp;
  };
  const Case cases[] = {
      {"saved at once", false, {}, false},
      {"saved after a question", true, {{L"ask", L"Yes"}}, false},
      {"refused", true, {}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    UserScript script;
    script.project = L"Quay: 7";
    script.folder = L"C:\\New";
    script.answers = c.answers;
    script.report = [](const std::wstring&) {};
    SaveDialog dialog(c.asks);
    const ScriptedUser user(std::move(script));
    dialog.Run();
    EXPECT_EQ(dialog.saved, L"Quay: 7|C:\\New|Old");
    EXPECT_EQ(dialog.givenUp, c.givenUp);
  }
}

}  // namespace
}  // namespace standin
