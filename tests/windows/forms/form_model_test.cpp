// Changes of the model reach the windows, and come back from them only once.
#include <memory>
#include <string>
#include <vector>

#include "dialog_user.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "gtest/gtest.h"

namespace postrove::forms {
namespace {

using testing::Dialog;
using testing::DialogUser;
using testing::EventLog;
using testing::Record;
using testing::WaitFor;

class FormModel : public ::testing::Test {
 protected:
  FormModel() { Record(form, log); }

  // `change` runs in the dialog's thread, within a click; then the user looks.
  void Show(const std::function<void()>& change, const std::function<void(Dialog&)>& look) {
    form.cmdPostrove(kHelpButton).onClick = [&] {
      change();
      log.Add("changed");
    };
    const DialogUser user([&] {
      Dialog dialog(L"Postrove");
      dialog.Click(form.cmdPostrove(kHelpButton));
      WaitFor("the change", [&] { return log.Has("changed"); });
      look(dialog);
      dialog.Close();
    });
    host->ShowModal(form);
  }

  std::shared_ptr<FormHost> host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  frmPostrove form{{}};
};

TEST_F(FormModel, ShowsWhatWasSetBefore) {
  form.SetCaption(L"Postrove");
  form.txtSaveFolder.SetText(L"P:\\Jobs");
  form.cboPostrove.SetItems({L"A: 1", L"B: 2"});
  form.cboPostrove.SetListIndex(1);
  form.cmdPostrove(kEditProjectButton).SetVisible(false);
  form.txtSaveAsName.SetEnabled(false);
  Show([] {},
       [&](Dialog& dialog) {
         EXPECT_EQ(dialog.TextOf(form.txtSaveFolder), L"P:\\Jobs");
         EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"B: 2");
         EXPECT_FALSE(IsWindowVisible(dialog.Item(form.cmdPostrove(kEditProjectButton))));
         EXPECT_FALSE(IsWindowEnabled(dialog.Item(form.txtSaveAsName)));
       });
}

TEST_F(FormModel, AppliesEveryLaterChange) {
  RECT before = {};
  Show(
      [&] {
        form.txtSaveFolder.SetText(L"new");
        form.txtSaveFolder.Select(1, 2);
        form.txtSaveFolder.SetLocked(true);
        form.rtfFieldHints.SetText(L"\r\nHint: x");
        form.lblVersion.SetText(L"1.0 0");
        form.lblAlert(kNameLabel).SetVisible(true);
        form.cmdPostrove(kEditProjectButton).SetEnabled(false);
        form.cmdPostrove(kMainButton).SetText(L"Save");
        Box place = form.lblAlert(kNameLabel).Place();
        place.left += 1440;
        form.lblAlert(kNameLabel).SetPlace(place);
        form.cboPostrove.SetItems({L"A: 1"});
        form.cboPostrove.AddItem(L"B: 2");
        form.cboPostrove.SetListIndex(1);
        form.txtSaveAsName.SetBackColor(kYellow);
        form.txtSaveAsName.SetForeColor(kRed);
      },
      [&](Dialog& dialog) {
        const HWND folder = dialog.Item(form.txtSaveFolder);
        EXPECT_EQ(dialog.TextOf(form.txtSaveFolder), L"new");
        EXPECT_EQ(SendMessageW(folder, EM_GETSEL, 0, 0), MAKELONG(1, 3));
        EXPECT_NE(GetWindowLongPtrW(folder, GWL_STYLE) & ES_READONLY, 0);
        EXPECT_NE(dialog.TextOf(form.rtfFieldHints).find(L"Hint: x"), std::wstring::npos);
        EXPECT_EQ(dialog.TextOf(form.lblVersion), L"1.0 0");
        EXPECT_TRUE(IsWindowVisible(dialog.Item(form.lblAlert(kNameLabel))));
        EXPECT_FALSE(IsWindowEnabled(dialog.Item(form.cmdPostrove(kEditProjectButton))));
        EXPECT_EQ(dialog.TextOf(form.cmdPostrove(kMainButton)), L"&Save");
        EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"B: 2");
        GetWindowRect(dialog.Item(form.lblAlert(kNameLabel)), &before);
        RECT button;
        GetWindowRect(dialog.Item(form.cmdPostrove(kEditProjectButton)), &button);
        // The design puts the marker 75 twips beside the button.
        EXPECT_GT(before.left - button.right, 90);

        const HWND name = dialog.Item(form.txtSaveAsName);
        const HDC dc = GetDC(name);
        const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(dialog.Window(), WM_CTLCOLOREDIT,
                                                                 reinterpret_cast<WPARAM>(dc),
                                                                 reinterpret_cast<LPARAM>(name)));
        LOGBRUSH description = {};
        GetObjectW(brush, sizeof description, &description);
        EXPECT_EQ(description.lbColor, RGB(255, 255, 0));
        EXPECT_EQ(GetTextColor(dc), RGB(255, 0, 0));
        ReleaseDC(name, dc);
      });
  int changes = 0;
  for (const std::string& event : log.All()) {
    changes += event == "txtSaveFolder change new" || event == "cboPostrove change B: 2";
    EXPECT_EQ(event.find("cboPostrove click"), std::string::npos);
  }
  EXPECT_EQ(changes, 2) << "a change from code is told once";
}

// Whatever colours the system has, a text can be told from its ground.
TEST_F(FormModel, ShowsReadableColors) {
  constexpr Color kWhite = 0xFFFFFF;
  constexpr Color kBlack = 0;
  constexpr Color kBlue = 0xCC6600;
  const struct {
    Color text, ground;
    COLORREF shown;
  } kCases[] = {{kBlack, kYellow, RGB(0, 0, 0)},     {kWhite, kYellow, RGB(0, 0, 0)},
                {kRed, kYellow, RGB(255, 0, 0)},     {kRed, kBlack, RGB(255, 255, 255)},
                {kBlue, kBlack, RGB(255, 255, 255)}, {kBlue, kWhite, RGB(0, 102, 204)}};
  Show([] {},
       [&](Dialog& dialog) {
         const HWND name = dialog.Item(form.txtSaveAsName);
         const HDC dc = GetDC(name);
         for (const auto& one : kCases) {
           form.txtSaveAsName.SetForeColor(one.text);
           form.txtSaveAsName.SetBackColor(one.ground);
           SendMessageW(dialog.Window(), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                        reinterpret_cast<LPARAM>(name));
           EXPECT_EQ(GetTextColor(dc), one.shown);
         }
         ReleaseDC(name, dc);
       });
}

// Neither opening nor the first look at the list waits for all of it; the rest comes by itself.
TEST_F(FormModel, FillsALongListInPortions) {
  constexpr int kItems = 100000;
  std::vector<std::wstring> items;
  for (int i = 0; i < kItems; ++i) items.push_back(L"Project: " + std::to_wstring(i));
  form.cboPostrove.SetItems(items);
  form.cboPostrove.SetListIndex(77777);
  LRESULT listedAtFirst = -1;
  form.onActivate = [&] {
    if (listedAtFirst < 0) {
      listedAtFirst = SendMessageW(FindWindowExW(GetActiveWindow(), nullptr, L"ComboBox", nullptr),
                                   CB_GETCOUNT, 0, 0);
    }
  };
  Show([] {},
       [&](Dialog& dialog) {
         const HWND combo = dialog.Item(form.cboPostrove);
         EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"Project: 77777");
         SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
         EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 77777);
         WaitFor("the rest", [&] { return SendMessageW(combo, CB_GETCOUNT, 0, 0) == kItems; });
         EXPECT_EQ(SendMessageW(combo, CB_GETCURSEL, 0, 0), 77777);
         EXPECT_EQ(dialog.TextOf(form.cboPostrove), L"Project: 77777");
         SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
         dialog.Press(form.cboPostrove, VK_DOWN);
         WaitFor("the pick", [&] { return log.Has("cboPostrove click"); });
       });
  EXPECT_EQ(form.cboPostrove.ListIndex(), 77778);
  EXPECT_LE(listedAtFirst, 5000);
}

TEST_F(FormModel, ResizesWithItsFieldsAndNotBelowItsDesign) {
  Show([] {},
       [&](Dialog& dialog) {
         const auto place = [&](const Control& control) {
           RECT area;
           GetWindowRect(dialog.Item(control), &area);
           MapWindowPoints(nullptr, dialog.Window(), reinterpret_cast<POINT*>(&area), 2);
           return area;
         };
         const RECT folder = place(form.txtSaveFolder);
         const RECT close = place(form.cmdPostrove(kCloseButton));
         const RECT hints = place(form.rtfFieldHints);
         const RECT help = place(form.cmdPostrove(kHelpButton));
         RECT designed;
         GetWindowRect(dialog.Window(), &designed);
         const int width = designed.right - designed.left;
         const int height = designed.bottom - designed.top;
         SetWindowPos(dialog.Window(), nullptr, 0, 0, width + 60, height + 40, SWP_NOMOVE);
         EXPECT_EQ(place(form.txtSaveFolder).left, folder.left);
         EXPECT_EQ(place(form.txtSaveFolder).right, folder.right + 60);
         EXPECT_EQ(place(form.txtSaveFolder).bottom, folder.bottom);
         EXPECT_EQ(place(form.cmdPostrove(kCloseButton)).left, close.left + 60);
         EXPECT_EQ(place(form.cmdPostrove(kCloseButton)).top, close.top + 40);
         EXPECT_EQ(place(form.rtfFieldHints).bottom, hints.bottom + 40);
         EXPECT_EQ(place(form.cmdPostrove(kHelpButton)).left, help.left);
         MINMAXINFO limits = {};
         SendMessageW(dialog.Window(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
         EXPECT_EQ(limits.ptMinTrackSize.x, width);
         EXPECT_EQ(limits.ptMinTrackSize.y, height);
       });
}

// The user's size comes back at the next opening, whole on the monitor and not below the design.
TEST_F(FormModel, RemembersTheSizeThatTheUserGave) {
  const struct {
    int grow;   // pixels, in both directions
    bool user;  // by dragging
    int more;   // what the next opening is larger by; -1: it fills the monitor
  } kCases[] = {{60, true, 60}, {200, false, 60}, {-50, true, 0}, {9000, true, -1}};
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Postrove\\Forms");
  const auto size = [](const Dialog& dialog) {
    RECT place;
    GetWindowRect(dialog.Window(), &place);
    return SIZE{place.right - place.left, place.bottom - place.top};
  };
  const auto show = [&](const std::function<void(Dialog&)>& look) {
    frmPostrove own({});
    const DialogUser user([&] {
      Dialog dialog(L"Postrove");
      look(dialog);
      dialog.Close();
    });
    host->ShowModal(own);
  };
  SIZE designed = {};
  show([&](Dialog& dialog) { designed = size(dialog); });
  for (const auto& one : kCases) {
    SCOPED_TRACE(one.grow);
    show([&](Dialog& dialog) {
      if (one.user) SendMessageW(dialog.Window(), WM_SIZING, WMSZ_BOTTOMRIGHT, 0);
      SetWindowPos(dialog.Window(), nullptr, 0, 0, designed.cx + one.grow, designed.cy + one.grow,
                   SWP_NOMOVE | SWP_NOSENDCHANGING);
    });
    show([&](Dialog& dialog) {
      RECT work;
      SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
      RECT place;
      GetWindowRect(dialog.Window(), &place);
      if (one.more < 0) {
        EXPECT_TRUE(EqualRect(&place, &work));
      } else {
        EXPECT_NEAR(size(dialog).cx, designed.cx + one.more, 1);
        EXPECT_NEAR(size(dialog).cy, designed.cy + one.more, 1);
      }
    });
  }
  // What others left there is no size.
  HKEY key;
  RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Postrove\\Forms", &key);
  RegSetValueExW(key, L"frmPostrove", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"wide"), 10);
  RegCloseKey(key);
  show([&](Dialog& dialog) { EXPECT_EQ(size(dialog).cx, designed.cx); });
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Postrove\\Forms");
}

TEST_F(FormModel, ScalesWithTheMonitor) {
  Show([] {},
       [&](Dialog& dialog) {
         RECT before;
         GetWindowRect(dialog.Item(form.txtSaveFolder), &before);
         LOGFONTW small = {};
         const auto font = [&] {
           return reinterpret_cast<HFONT>(
               SendMessageW(dialog.Item(form.txtSaveFolder), WM_GETFONT, 0, 0));
         };
         GetObjectW(font(), sizeof small, &small);
         RECT window;
         GetWindowRect(dialog.Window(), &window);
         RECT suggested = {window.left, window.top, window.left + 2 * (window.right - window.left),
                           window.top + 2 * (window.bottom - window.top)};
         constexpr UINT kDpiChanged = 0x02E0;
         const HDC screen = GetDC(nullptr);
         const auto doubled = static_cast<WORD>(2 * GetDeviceCaps(screen, LOGPIXELSY));
         ReleaseDC(nullptr, screen);
         SendMessageW(dialog.Window(), kDpiChanged, MAKEWPARAM(doubled, doubled),
                      reinterpret_cast<LPARAM>(&suggested));
         LOGFONTW large = {};
         GetObjectW(font(), sizeof large, &large);
         EXPECT_NEAR(large.lfHeight, 2 * small.lfHeight, 1);
         RECT after;
         GetWindowRect(dialog.Item(form.txtSaveFolder), &after);
         EXPECT_NEAR(after.bottom - after.top, 2 * (before.bottom - before.top), 1);
         // The text stands in the middle, as its label does.
         for (const Control* field : {&form.txtSaveFolder, &form.cboPostrove}) {
           RECT whole;
           RECT line;
           GetWindowRect(dialog.Edit(*field), &whole);
           GetClientRect(dialog.Edit(*field), &line);
           MapWindowPoints(dialog.Edit(*field), nullptr, reinterpret_cast<POINT*>(&line), 2);
           EXPECT_NEAR(line.top - whole.top, whole.bottom - line.bottom, 1);
           EXPECT_GE(line.bottom - line.top, -large.lfHeight);
         }
       });
}

// Option buttons, check boxes and frames, which the larger dialogs use.
TEST(FormKinds, ShowsOptionsChecksAndFrames) {
  class Kinds : public Form {
   public:
    Kinds() : Form(L"Kinds", 3000, 2000, false) {
      SetCaption(L"Kinds");
      Add(ControlKind::Frame, L"frame", -1, {0, 0, 2800, 900}, L"Frame");
      Add(ControlKind::OptionButton, L"option", 0, {100, 300, 1200, 300}, L"One").SetChecked(true);
      Add(ControlKind::OptionButton, L"option", 1, {1400, 300, 1200, 300}, L"Two");
      Add(ControlKind::CheckBox, L"check", -1, {100, 1000, 1200, 300}, L"Check");
    }
  } form;
  EventLog log;
  Record(form, log);
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  const Control& one = form.Find(L"option", 0);
  const Control& two = form.Find(L"option", 1);
  const Control& check = form.Find(L"check");
  const DialogUser user([&] {
    const Dialog dialog(L"Kinds");
    const auto marked = [&](const Control& control) {
      return SendMessageW(dialog.Item(control), BM_GETCHECK, 0, 0) == BST_CHECKED;
    };
    EXPECT_TRUE(marked(one));
    dialog.Click(two);
    WaitFor("the option", [&] { return marked(two); });
    EXPECT_FALSE(marked(one));
    dialog.Click(check);
    WaitFor("the check", [&] { return marked(check); });
    dialog.Close();
  });
  host->ShowModal(form);
  EXPECT_TRUE(two.Checked());
  EXPECT_TRUE(check.Checked());
}

}  // namespace
}  // namespace postrove::forms
