// The modal life of a dialog: owners, nesting, and every way in which it can end.
#include <memory>
#include <string>
#include <vector>

#include "dialog_user.h"
#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "gtest/gtest.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

using testing::Dialog;
using testing::DialogUser;
using testing::EventLog;
using testing::OwnerWindow;
using testing::Record;
using testing::WaitFor;

class FormModal : public ::testing::Test {
 protected:
  FormModal() { Record(*form, log); }

  std::function<void()>& OnMain() { return form->cmdPostrove(kMainButton).onClick; }
  void ClickMain(const Dialog& dialog) { dialog.Click(form->cmdPostrove(kMainButton)); }

  // Shows a form to a user who does the steps, and closes it unless they did.
  void Use(Form& shown, const std::function<void(const Dialog&)>& steps) {
    const DialogUser user([&, caption = shown.Caption()] {
      const Dialog dialog(caption);
      steps(dialog);
      if (IsWindow(dialog.Window())) dialog.Close();
    });
    host->ShowModal(shown);
  }

  OwnerWindow owner;
  std::shared_ptr<FormHost> host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  std::shared_ptr<frmPostrove> form =
      std::make_shared<frmPostrove>(std::weak_ptr<frmPostroveEvents>());
};

TEST_F(FormModal, DisablesItsOwnerWhileItIsUp) {
  for (const bool enabled : {true, false}) {
    frmPostrove own({});
    EnableWindow(owner.Window(), enabled);
    SetActiveWindow(owner.Window());
    Use(own, [&](const Dialog& dialog) {
      EXPECT_EQ(GetWindow(dialog.Window(), GW_OWNER), owner.Window());
      EXPECT_FALSE(IsWindowEnabled(owner.Window()));
    });
    EXPECT_TRUE(own.IsUnloaded());
    EXPECT_EQ(IsWindowEnabled(owner.Window()) != 0, enabled);
    EXPECT_TRUE(!enabled || GetActiveWindow() == owner.Window());
  }
}

// A sent mail closes its inspector, the owner, or the window that owns that, while the button's
// handler still runs, here within a dialog on the dialog.
TEST_F(FormModal, SurvivesTheDestructionOfItsOwner) {
  for (const bool withItsOwner : {false, true}) {
    OwnerWindow outlook;
    const HWND owned = CreateWindowExW(0, L"STATIC", L"owned", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                       outlook.Window(), nullptr, nullptr, nullptr);
    const HWND inspector = withItsOwner ? owned : outlook.Window();
    SetActiveWindow(inspector);
    frmPostrove outer({});
    frmFolderMessage inner({});
    EventLog events;
    Record(outer, events);
    HWND window = nullptr;
    inner.cmdFolderMessage(0).onClick = [&] {
      outlook.Destroy();
      EXPECT_FALSE(IsWindow(inspector));
      inner.Unload();
    };
    outer.cmdPostrove(kMainButton).onClick = [&] {
      host->ShowModal(inner);
      EXPECT_EQ(GetActiveWindow(), window);
      outer.txtSaveAsName.SetText(L"after");
    };
    Use(outer, [&](const Dialog& dialog) {
      window = dialog.Window();
      EXPECT_EQ(GetWindow(window, GW_OWNER), inspector);
      dialog.Click(outer.cmdPostrove(kMainButton));
      const Dialog message(inner.Caption());
      EXPECT_EQ(GetWindow(message.Window(), GW_OWNER), window);
      EXPECT_FALSE(IsWindowEnabled(window));
      message.Press(inner.txtFolderMessage(1), VK_RETURN);
      WaitFor("the handler", [&] { return events.Has("txtSaveAsName change after"); });
      EXPECT_TRUE(IsWindowEnabled(window));
      EXPECT_TRUE(IsWindowVisible(window));
      EXPECT_EQ(dialog.TextOf(outer.txtSaveAsName), L"after");
      dialog.Type(outer.txtSaveAsName, L"x");
      WaitFor("the typed text", [&] { return events.Has("txtSaveAsName change xafter"); });
    });
  }
}

// Enter pressed twice, or a double click: the second half would answer what nobody has read.
TEST_F(FormModal, TheSecondHalfOfADoublePressAnswersNoQuestion) {
  OwnerWindow outlook;
  frmPostrove outer({});
  frmFolderMessage inner({});
  EventLog events;
  Record(outer, events);
  Record(inner, events);
  outer.cmdPostrove(kMainButton).onClick = [&] {
    BYTE keys[256] = {};
    keys[VK_RETURN] = 0x80;  // down
    SetKeyboardState(keys);
    host->ShowModal(inner);
    keys[VK_RETURN] = 0;
    SetKeyboardState(keys);
    outer.Unload();
  };
  const UINT usual = GetDoubleClickTime();
  SetDoubleClickTime(5000);  // however slow the machine is
  Use(outer, [&](const Dialog& dialog) {
    dialog.Click(outer.cmdPostrove(kMainButton));
    const Dialog question(inner.Caption());
    const HWND ok = question.Item(inner.cmdFolderMessage(0));
    question.Press(inner.txtFolderMessage(1), VK_RETURN);
    PostMessageW(ok, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 4));
    PostMessageW(ok, WM_LBUTTONUP, 0, MAKELPARAM(3, 4));
    question.Type(inner.txtFolderMessage(1), L"x");
    WaitFor("what was typed, or an answer", [&] {
      return events.Has("txtFolderMessage1 change x") || events.Has("cmdFolderMessage0 click");
    });
    question.Click(inner.cmdFolderMessage(1));
    question.WaitForEnd();
  });
  SetDoubleClickTime(usual);
  EXPECT_FALSE(events.Has("cmdFolderMessage0 click"));
}

TEST_F(FormModal, EndsWhenItsWindowIsDestroyedByOthers) {
  for (const bool within : {false, true}) {
    SCOPED_TRACE(within ? "within an event" : "outside of one");
    frmPostrove own({});
    EventLog events;
    Record(own, events);
    HWND window = nullptr;
    own.cmdPostrove(kMainButton).onClick = [&] {
      DestroyWindow(window);
      own.txtSaveAsName.SetText(L"still a model");
      if (within) own.Unload();
    };
    Use(own, [&](const Dialog& dialog) {
      window = dialog.Window();
      dialog.Click(own.cmdPostrove(kMainButton));
      dialog.WaitForEnd();
    });
    EXPECT_TRUE(own.IsUnloaded());
    EXPECT_TRUE(events.Has("unload"));
    EXPECT_TRUE(IsWindowEnabled(owner.Window()));
  }
}

TEST_F(FormModal, StaysWhileUnloadingIsRefused) {
  int asked = 0;
  form->onUnload = [&](bool& cancel) {
    cancel = ++asked == 1;
    log.Add("asked " + std::to_string(asked));
  };
  Use(*form, [&](const Dialog& dialog) {
    PostMessageW(dialog.Window(), WM_CLOSE, 0, 0);
    WaitFor("the refusal", [&] { return log.Has("asked 1"); });
    EXPECT_TRUE(IsWindowVisible(dialog.Window()));
    PostMessageW(dialog.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    dialog.WaitForEnd();
  });
  EXPECT_EQ(asked, 2);
}

TEST_F(FormModal, TheFormCanBeDestroyedWithinAnEvent) {
  OnMain() = [&] { form.reset(); };
  Form& shown = *form;
  Use(shown, [&](const Dialog& dialog) {
    ClickMain(dialog);
    dialog.WaitForEnd();
  });
  EXPECT_EQ(form, nullptr);
  EXPECT_TRUE(IsWindowEnabled(owner.Window()));
}

TEST_F(FormModal, AnExceptionEndsAtTheWindowProcedure) {
  OnMain() = [&] {
    log.Add("thrown");
    throw Error(kInvalidArgument, L"test", L"a handler failed");
  };
  form->cboPostrove.onKeyPress = [](int&) -> void { throw 1; };
  EXPECT_NO_THROW(Use(*form, [&](const Dialog& dialog) {
    ClickMain(dialog);
    WaitFor("the throw", [&] { return log.Has("thrown"); });
    dialog.Type(form->cboPostrove, L"a");
    WaitFor("the text", [&] { return log.Has("cboPostrove change a"); });
  }));
}

TEST_F(FormModal, PassesTheEndOfTheProgramOn) {
  const DialogUser user([&, thread = GetCurrentThreadId()] {
    const Dialog dialog(L"Postrove");
    PostThreadMessageW(thread, WM_QUIT, 42, 0);
    dialog.WaitForEnd();
  });
  host->ShowModal(*form);
  EXPECT_TRUE(form->IsUnloaded());
  MSG message = {};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 42u);
}

TEST_F(FormModal, IsTopmostAndLowered) {
  const auto topmost = [](HWND window) {
    return (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  };
  // Wine lowers an owned window only when some window stands above the owner.
  const HWND above = CreateWindowExW(0, L"STATIC", L"above", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr,
                                     nullptr, nullptr);
  SetWindowPos(above, HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
  form->onActivate = [&] {
    host->SetTopmost(*form, true);
    log.Add("active");
  };
  OnMain() = [&] {
    host->SetTopmost(*form, false);
    log.Add("lowered");
  };
  Use(*form, [&](const Dialog& dialog) {
    WaitFor("the activation", [&] { return log.Has("active"); });
    EXPECT_TRUE(topmost(dialog.Window()));
    ClickMain(dialog);
    WaitFor("the click", [&] { return log.Has("lowered"); });
    EXPECT_FALSE(topmost(dialog.Window()));
  });
  DestroyWindow(above);
}

TEST_F(FormModal, CountsTheWaitCursorAndLeavesNestedDialogsWithout) {
  const HCURSOR wait = LoadCursorW(nullptr, IDC_WAIT);
  frmFolderMessage inner({});
  inner.onActivate = [&] {
    EXPECT_NE(GetCursor(), wait);
    host->SetWaitCursor(true);
    EXPECT_EQ(GetCursor(), wait);
    host->SetWaitCursor(false);
    EXPECT_NE(GetCursor(), wait);
    inner.Unload();
  };
  OnMain() = [&] {
    const bool kSteps[] = {true, true, false};
    for (const bool on : kSteps) host->SetWaitCursor(on);
    EXPECT_EQ(GetCursor(), wait) << "switched off once, on twice";
    host->ShowModal(inner);
    EXPECT_EQ(GetCursor(), wait);
    for (int i = 0; i < 2; ++i) host->SetWaitCursor(false);
    EXPECT_NE(GetCursor(), wait);
    host->SetWaitCursor(true);
    EXPECT_EQ(GetCursor(), wait) << "switched off too often before";
    host->SetWaitCursor(false);
    form->Unload();
  };
  Use(*form, [&](const Dialog& dialog) {
    ClickMain(dialog);
    dialog.WaitForEnd();
  });
}

// The host's own windows are made and measured in its handlers; ours are scaled by the monitor.
TEST_F(FormModal, RunsHandlersInTheHostsDpiMode) {
  const HMODULE windows = GetModuleHandleW(L"user32.dll");
  const auto find = [&](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(windows, name));
  };
  const auto set = reinterpret_cast<HANDLE(WINAPI*)(HANDLE)>(find("SetThreadDpiAwarenessContext"));
  const auto now = reinterpret_cast<HANDLE(WINAPI*)()>(find("GetThreadDpiAwarenessContext"));
  const auto of = reinterpret_cast<HANDLE(WINAPI*)(HWND)>(find("GetWindowDpiAwarenessContext"));
  const auto kind =
      reinterpret_cast<int(WINAPI*)(HANDLE)>(find("GetAwarenessFromDpiAwarenessContext"));
  if (!set || !now || !of || !kind) GTEST_SKIP() << "this system has one mode for all";
  constexpr int kUnaware = 0;
  constexpr int kPerMonitor = 2;
  const HANDLE before = set(reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1)));
  std::vector<int> modes;
  const auto note = [&] { modes.push_back(kind(now())); };
  form->onActivate = note;
  form->onUnload = [&](bool&) { note(); };
  form->cboPostrove.onGotFocus = note;
  form->cboPostrove.onLostFocus = note;
  form->cboPostrove.onClick = note;
  form->cboPostrove.onKeyPress = [&](int&) { note(); };
  form->cboPostrove.onChange = note;
  form->cboPostrove.SetItems({L"Alpha", L"Beta"});
  OnMain() = [&] {
    note();
    form->lblAlert(kNameLabel).SetVisible(true);
    host->DropDownList(form->cboPostrove);
    note();
    EXPECT_EQ(kind(of(GetActiveWindow())), kPerMonitor);
    log.Add("main");
  };
  Use(*form, [&](const Dialog& dialog) {
    dialog.Type(form->cboPostrove, L"a");
    dialog.Press(form->cboPostrove, VK_DOWN);
    ClickMain(dialog);
    WaitFor("the click", [&] { return log.Has("main"); });
  });
  EXPECT_EQ(kind(now()), kUnaware);
  set(before);
  EXPECT_GE(modes.size(), 10u);
  for (const int mode : modes) EXPECT_EQ(mode, kUnaware);
}

TEST_F(FormModal, IgnoresFormsThatAreNotShown) {
  host->SetTopmost(*form, true);
  host->BringToFront(*form);
  host->SetFocus(form->txtSaveAsName);
  host->DropDownList(form->cboPostrove);
  host->SendTab(*form);
  form->Unload();
  EXPECT_THROW(host->ShowModal(*form), Error);
}

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

TEST_F(FormModal, LeavesNothingBehind) {
  const auto windows = [] {
    int count = 0;
    EnumThreadWindows(GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&count));
    return count;
  };
  const auto showOnce = [&] {
    frmPostrove own({});
    own.onActivate = [&] {
      own.txtSaveAsName.SetBackColor(kYellow);
      host->DropDownList(own.cboPostrove);
      own.Unload();
    };
    host->ShowModal(own);
  };
  showOnce();  // what Windows keeps for the process is there now
  const int windowsBefore = windows();
  const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  for (int i = 0; i < 50; ++i) showOnce();
  EXPECT_EQ(windows(), windowsBefore);
  if (gdi == 0 && user == 0) GTEST_SKIP() << "this system does not count GDI and user objects";
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi + 5);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user + 5);
}

}  // namespace
}  // namespace postrove::forms
