// What the user does to a dialog with keyboard and mouse, and the events that come of it.
#include <algorithm>
#include <atomic>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "dialog_user.h"
#include "forms/frmPostrove.h"
#include "forms/frmSetup.h"
#include "forms/kit/access_key.h"
#include "forms/win32/WinFormHost.h"
#include "gtest/gtest.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

using testing::Dialog;
using testing::DialogUser;
using testing::EventLog;
using testing::OwnerWindow;
using testing::Record;
using testing::WaitFor;
using Events = std::vector<std::string>;

class FormKeyboard : public ::testing::Test {
 protected:
  FormKeyboard() {
    form.cboPostrove.SetItems({L"Alpha: 1", L"Beta: 2", L"Gamma: 3"});
    Record(form, log);
  }

  void TearDown() override {
    if (!HasFailure()) return;
    for (const std::string& event : log.All()) std::cout << "  " << event << '\n';
  }

  // Shows the dialog to a user who starts when the first field has the focus, and closes it.
  void Use(const std::function<void(Dialog&)>& steps) {
    const DialogUser user([&] {
      Dialog dialog(L"Postrove");
      WaitFor("the first focus", [&] { return log.Has("cboPostrove got"); });
      end = start = log.Count();
      steps(dialog);
      end = log.Count();
      if (IsWindow(dialog.Window())) dialog.Close();
    });
    host->ShowModal(form);
  }

  // The events between the user's first and last step.
  Events UserEvents() const {
    const Events all = log.All();
    return {all.begin() + static_cast<std::ptrdiff_t>(start),
            all.begin() + static_cast<std::ptrdiff_t>(end)};
  }
  void WaitForEvent(const std::string& event) {
    WaitFor(event, [&] { return log.Has(event); });
  }

  OwnerWindow owner;
  std::shared_ptr<FormHost> host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  frmPostrove form{{}};
  std::size_t start = 0;
  std::size_t end = 0;
};

// A field learns that it was left before the button acts on what it held.
TEST_F(FormKeyboard, EnterPressesTheDefaultButtonAfterTheFieldWasLeft) {
  Use([&](Dialog& dialog) {
    // The key that answered a message box is still down when the dialog is active again.
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_RETURN, 1 | (1 << 30));
    dialog.Type(form.cboPostrove, L"z");
    WaitForEvent("cboPostrove change z");
    dialog.Press(form.cboPostrove, VK_RETURN);
    WaitForEvent("cmdPostrove0 click");
  });
  EXPECT_EQ(log.All(),
            (Events{"activate", "cboPostrove got", "cboPostrove change z", "cboPostrove lost",
                    "cmdPostrove0 got", "cmdPostrove0 click", "cmdPostrove4 click", "unload"}));
}

// Only with Alt is a letter an access key, whatever has the focus.
TEST_F(FormKeyboard, NoPlainLetterPressesAButton) {
  Use([&](Dialog& dialog) {
    for (const Control* control :
         {&form.cmdPostrove(kAddProjectButton), &form.lblWebSite, &form.rtfFieldHints}) {
      PostMessageW(dialog.Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Item(*control)),
                   TRUE);
      dialog.WaitForFocus(*control);
      for (const wchar_t letter : {L's', L'a', L'h'}) {
        PostMessageW(dialog.Focus(), WM_CHAR, letter, 1);
      }
    }
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_F1, 1);
    WaitForEvent("cmdPostrove5 click");
    dialog.WaitForFocus(form.rtfFieldHints);
    dialog.PressAlt(L'e');
    WaitForEvent("cmdPostrove8 click");
    // Enter is for what has the focus, a link as well.
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_RETURN, 1);
    dialog.PressAlt(L'd');
    WaitForEvent("cmdPostrove3 click");
    PostMessageW(dialog.Window(), WM_NEXTDLGCTL,
                 reinterpret_cast<WPARAM>(dialog.Item(form.lblWebSite)), TRUE);
    dialog.WaitForFocus(form.lblWebSite);
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_RETURN, 1);
    WaitForEvent("lblWebSite click");
  });
  Events clicks = UserEvents();
  std::erase_if(clicks, [](const std::string& event) { return !event.ends_with("click"); });
  EXPECT_EQ(clicks, (Events{"cmdPostrove5 click", "cmdPostrove8 click", "cmdPostrove8 click",
                            "cmdPostrove3 click", "lblWebSite click"}));
}

// What the list shows counts when it is closed, and not by Esc; what was typed is not completed.
TEST_F(FormKeyboard, TheListTakesNothingOverUnasked) {
  const Control& box = form.cboPostrove;
  Use([&](Dialog& dialog) {
    const auto press = [&](WORD key, bool down, const std::wstring& shown) {
      dialog.Press(box, key);
      WaitFor("the list and " + std::string(shown.begin(), shown.end()), [&] {
        return (SendMessageW(dialog.Item(box), CB_GETDROPPEDSTATE, 0, 0) != 0) == down &&
               dialog.TextOf(box) == shown;
      });
    };
    for (const HWND part : {dialog.Edit(box), dialog.Item(box)}) {
      SendMessageW(part, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    }
    dialog.Type(box, L"al");
    WaitForEvent("cboPostrove change al");
    press(VK_F4, true, L"al");
    press(VK_RETURN, false, L"al");
    press(VK_F4, true, L"al");
    press(VK_DOWN, true, L"Beta: 2");
    press(VK_ESCAPE, false, L"al");
    EXPECT_FALSE(log.Has("cboPostrove click"));
    press(VK_F4, true, L"al");
    press(VK_DOWN, true, L"Beta: 2");
    press(VK_F4, false, L"Beta: 2");
    WaitForEvent("cboPostrove click");
  });
  EXPECT_EQ(UserEvents(), (Events{"cboPostrove change a", "cboPostrove change al",
                                  "cboPostrove change Beta: 2", "cboPostrove click"}));
}

TEST_F(FormKeyboard, GivesKeysToTheModelBeforeTheText) {
  std::vector<int> keys;
  form.cboPostrove.onKeyPress = [&](int& key) {
    keys.push_back(key);
    EXPECT_EQ(form.cboPostrove.SelectionStart(), static_cast<int>(form.cboPostrove.Text().size()));
    if (key == 13) {
      host->SendTab(form);
      key = 0;
      log.Add("enter");
    }
    if (key == 'x') key = 0;
  };
  Use([&](Dialog& dialog) {
    dialog.Type(form.cboPostrove, L"axb");
    WaitForEvent("cboPostrove change ab");
    dialog.Press(form.cboPostrove, VK_RETURN);
    WaitForEvent("txtSaveFolder got");
    dialog.Press(form.txtSaveFolder, VK_ESCAPE);  // the field is not left
    dialog.WaitForEnd();
  });
  EXPECT_EQ(keys, (std::vector<int>{'a', 'x', 'b', 13}));
  EXPECT_EQ(UserEvents(),
            (Events{"cboPostrove change a", "cboPostrove change ab", "enter", "cboPostrove lost",
                    "txtSaveFolder got", "cmdPostrove4 click", "unload"}));
}
// A press on Cancel is known before the field that is being left would check itself.
TEST_F(FormKeyboard, MousePressComesBeforeTheLossOfFocus) {
  Control& close = form.cmdPostrove(kCloseButton);
  close.onMouseDown = [this](int button, int, float x, float y) {
    log.Add("down " + std::to_string(button) + (x == 45.0f && y == 60.0f ? "" : " elsewhere"));
  };
  const unsigned dpi = [] {
    const HDC screen = GetDC(nullptr);
    const int value = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return static_cast<unsigned>(value);
  }();
  if (dpi != USER_DEFAULT_SCREEN_DPI) GTEST_SKIP() << "expects twips of a screen at 100 %";
  Use([&](Dialog& dialog) {
    const HWND button = dialog.Item(close);
    PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 4));
    PostMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(3, 4));
    WaitForEvent("unload");
  });
  EXPECT_EQ(UserEvents(), (Events{"down 1", "cboPostrove lost", "cmdPostrove4 got",
                                  "cmdPostrove4 click", "unload"}));
}

TEST_F(FormKeyboard, ADisabledFieldPassesTheFocusOn) {
  form.cmdPostrove(kDefaultsButton).onClick = [this] {
    form.cmdPostrove(kDefaultsButton).SetEnabled(false);
  };
  Use([&](Dialog& dialog) {
    dialog.Click(form.cmdPostrove(kDefaultsButton));
    dialog.WaitForFocus(form.cmdPostrove(kHelpButton));
  });
}

// As in Visual Basic: a field that keeps the focus, because its text was refused, keeps the button
// from being pressed.
TEST_F(FormKeyboard, AFieldThatTakesTheFocusBackLosesTheClick) {
  bool refusing = true;
  form.txtSaveAsName.onLostFocus = [&] {
    log.Add("txtSaveAsName lost");
    if (refusing) host->SetFocus(form.txtSaveAsName);
  };
  Use([&](Dialog& dialog) {
    for (const bool byEnter : {true, false}) {
      const std::size_t before = log.Count();
      PostMessageW(dialog.Window(), WM_NEXTDLGCTL,
                   reinterpret_cast<WPARAM>(dialog.Item(form.txtSaveAsName)), TRUE);
      dialog.WaitForFocus(form.txtSaveAsName);
      byEnter ? dialog.Press(form.txtSaveAsName, VK_RETURN)
              : dialog.Click(form.cmdPostrove(kMainButton));
      WaitFor("the refusal", [&] {
        const Events all = log.All();
        return std::count(all.begin() + static_cast<std::ptrdiff_t>(before), all.end(),
                          "txtSaveAsName lost") == 1;
      });
      dialog.WaitForFocus(form.txtSaveAsName);
    }
    EXPECT_FALSE(log.Has("cmdPostrove0 click"));
    refusing = false;
    dialog.Press(form.txtSaveAsName, VK_RETURN);
    WaitForEvent("cmdPostrove0 click");
  });
}

// An option button without the mark is no tab stop, and the first focus does not choose it.
TEST(Keyboard, ChoosesOptionsByArrowKeysAndByClicks) {
  class Choices : public Form {
   public:
    Choices() : Form(L"Choices", 3000, 2000, false) {
      SetCaption(L"Choices");
      Add(ControlKind::Frame, L"frame", -1, {0, 0, 2800, 900}, L"Frame");
      Add(ControlKind::OptionButton, L"option", 0, {100, 300, 1200, 300}, L"One");
      Add(ControlKind::OptionButton, L"option", 1, {1400, 300, 1200, 300}, L"Two");
      Add(ControlKind::CheckBox, L"check", -1, {100, 1000, 1200, 300}, L"Check");
      Find(L"option", 1).SetChecked(true);
    }
  } form;
  EventLog log;
  Record(form, log);
  const OwnerWindow owner;
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  const Control& one = form.Find(L"option", 0);
  const Control& two = form.Find(L"option", 1);
  const Control& check = form.Find(L"check");
  const DialogUser user([&] {
    const Dialog dialog(L"Choices");
    const auto marks = [&](bool first, bool second) {
      WaitFor("the marks", [&] {
        return (SendMessageW(dialog.Item(one), BM_GETCHECK, 0, 0) != 0) == first &&
               (SendMessageW(dialog.Item(two), BM_GETCHECK, 0, 0) != 0) == second;
      });
    };
    dialog.WaitForFocus(two);
    WaitFor("the first focus", [&] { return log.Has("option1 got"); });
    marks(false, true);
    dialog.Press(two, VK_LEFT);
    marks(true, false);
    dialog.Click(two);
    marks(false, true);
    dialog.Press(two, VK_TAB);
    dialog.WaitForFocus(check);
    dialog.Click(check);
    WaitFor("the check", [&] { return SendMessageW(dialog.Item(check), BM_GETCHECK, 0, 0); });
    dialog.Close();
  });
  host->ShowModal(form);
  EXPECT_EQ(log.All(), (Events{"activate", "option1 got", "option1 lost", "option0 got",
                               "option0 click", "option0 lost", "option1 got", "option1 click",
                               "option1 lost", "check got", "check click", "unload"}));
}

// Tab goes through the controls in their order; the key that a window shows leads to its control,
// that of a label to the field behind it.
TEST(Keyboard, ReachesEveryControl) {
  frmSetup form({});
  form.optDbType(kSetupOwnDb).SetChecked(true);
  std::vector<const Control*> stops;
  std::vector<std::pair<const Control*, const Control*>> keyed;
  for (const auto& item : form.Controls()) {
    const ControlKind kind = item->Kind();
    const bool label = kind == ControlKind::Label && !item->link;
    const bool stop = item->tabStop && item->Visible() && !label && kind != ControlKind::Frame &&
                      (kind != ControlKind::OptionButton || item->Checked());
    if (stop) stops.push_back(item.get());
    if (stop && !keyed.empty() && !keyed.back().second) keyed.back().second = item.get();
    if (kind == ControlKind::CommandButton) keyed.push_back({item.get(), item.get()});
    if (label && ShownCaption(*item).find(L'&') != std::wstring::npos) {
      keyed.push_back({item.get(), nullptr});
    }
  }
  ASSERT_EQ(stops.size(), 16u);
  ASSERT_EQ(keyed.size(), 14u);
  const OwnerWindow owner;
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  std::atomic<bool> done = false;
  std::atomic<bool> left = false;
  form.txtSetup(kSetupEmailFolder).onGotFocus = [&] { left = false; };
  form.txtSetup(kSetupEmailFolder).onLostFocus = [&] { left = true; };
  form.cmdSetup(kSetupReturn).onClick = [&] {
    if (done) form.Unload();
  };
  const DialogUser user([&] {
    const Dialog dialog(form.Caption());
    dialog.WaitForFocus(*stops.front());
    for (std::size_t i = 1; i <= stops.size(); ++i) {
      PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_TAB, 1);
      dialog.WaitForFocus(*stops[i % stops.size()]);
    }
    for (const auto& [shown, target] : keyed) {
      const std::wstring caption = dialog.TextOf(*shown);
      dialog.PressAlt(text::Fold(caption.at(caption.find(L'&') + 1)));
      dialog.WaitForFocus(*target);
    }
    // Its title bar takes over what was typed, as the button that is default and cancel in one.
    dialog.PressAlt(L'e');
    dialog.WaitForFocus(form.txtSetup(kSetupEmailFolder));
    done = true;
    dialog.Close();
  });
  host->ShowModal(form);
  EXPECT_TRUE(left);
}

}  // namespace
}  // namespace postrove::forms
