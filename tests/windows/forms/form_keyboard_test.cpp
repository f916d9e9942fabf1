// What the user does to a dialog with keyboard and mouse, and the events that come of it.
#include <algorithm>
#include <atomic>
#include <iostream>
#include <string>
#include <vector>

#include "dialog_user.h"
#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/frmProjInfo.h"
#include "forms/frmSetup.h"
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

TEST_F(FormKeyboard, OpensWithItsFirstFieldActive) {
  Use([](Dialog&) {});
  EXPECT_EQ(log.All(), (Events{"activate", "cboPostrove got", "cmdPostrove4 click", "unload"}));
}

TEST_F(FormKeyboard, TabsThroughTheFieldsInOrder) {
  Use([&](Dialog& dialog) {
    for (const Control* control :
         {&form.txtSaveFolder, &form.cmdPostrove(kBrowseFolderButton), &form.txtSaveAsName,
          &form.cmdPostrove(kMainButton), &form.cmdPostrove(kCloseButton),
          &form.cmdPostrove(kAddProjectButton), &form.cmdPostrove(kEditProjectButton),
          &form.cmdPostrove(kDefaultsButton), &form.cmdPostrove(kHelpButton), &form.lblWebSite,
          &form.cboPostrove}) {
      PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_TAB, 1);
      dialog.WaitForFocus(*control);
    }
    WaitFor("the last event", [&] { return log.Count() == start + 22; });
  });
  const Events events = UserEvents();
  ASSERT_EQ(events.size(), 22u);
  EXPECT_EQ((Events{events.begin(), events.begin() + 6}),
            (Events{"cboPostrove lost", "txtSaveFolder got", "txtSaveFolder lost",
                    "cmdPostrove1 got", "cmdPostrove1 lost", "txtSaveAsName got"}));
}

// A field learns that it was left before the button acts on what it held.
TEST_F(FormKeyboard, EnterPressesTheDefaultButtonAfterTheFieldWasLeft) {
  Use([&](Dialog& dialog) {
    dialog.Press(form.cboPostrove, VK_RETURN);
    WaitForEvent("cmdPostrove0 click");
  });
  EXPECT_EQ(UserEvents(), (Events{"cboPostrove lost", "cmdPostrove0 got", "cmdPostrove0 click"}));
}

TEST_F(FormKeyboard, EnterPressesTheButtonThatHasTheFocus) {
  form.cmdPostrove(kHelpButton).onClick = [this] {
    log.Add("help");
    host->SetFocus(form.lblWebSite);
  };
  Use([&](Dialog& dialog) {
    dialog.PressAlt(L'h');
    WaitForEvent("help");
    dialog.WaitForFocus(form.lblWebSite);
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_RETURN, 1);
    WaitForEvent("lblWebSite click");
  });
  EXPECT_FALSE(log.Has("cmdPostrove0 click"));
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
    dialog.PressAlt(L's');
    WaitForEvent("cmdPostrove0 click");
  });
  const Events all = UserEvents();
  EXPECT_EQ(std::count_if(all.begin(), all.end(),
                          [](const std::string& event) { return event.ends_with("click"); }),
            2);
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

// The key that answered a message box is still down when the dialog is active again.
TEST_F(FormKeyboard, IgnoresAHeldDownEnter) {
  Use([&](Dialog& dialog) {
    PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_RETURN, 1 | (1 << 30));
    dialog.Type(form.cboPostrove, L"z");
    WaitForEvent("cboPostrove change z");
  });
  EXPECT_FALSE(log.Has("cmdPostrove0 click"));
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
  });
  EXPECT_EQ(keys, (std::vector<int>{'a', 'x', 'b', 13}));
  EXPECT_FALSE(log.Has("cmdPostrove0 click"));
  const Events events = UserEvents();
  EXPECT_EQ((Events{events.end() - 3, events.end()}),
            (Events{"enter", "cboPostrove lost", "txtSaveFolder got"}));
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

// As by its Cancel button, which a screen reader's user finds too.
TEST(FolderMessage, IsCancelledByItsTitleBar) {
  const OwnerWindow owner;
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  frmFolderMessage form({});
  Record(form, log);
  form.txtFolderMessage(0).SetText(L"The file \r\n\"a\"\r\n already exists.");
  form.onActivate = [&] { host->SetFocus(form.txtFolderMessage(1)); };
  form.onHelp = [&] { log.Add("help"); };
  const DialogUser user([&] {
    const Dialog dialog(form.Caption());
    WaitFor("the name's focus", [&] { return log.Has("txtFolderMessage1 got"); });
    EXPECT_NE(GetWindowLongPtrW(dialog.Window(), GWL_STYLE) & WS_SYSMENU, 0);
    EXPECT_EQ(dialog.TextOf(form.txtFolderMessage(0)), form.txtFolderMessage(0).Text());
    dialog.Type(form.txtFolderMessage(0), L"q");
    dialog.Type(form.txtFolderMessage(1), L" ");
    WaitFor("the typed blank", [&] { return form.txtFolderMessage(1).Text().front() == L' '; });
    dialog.Press(form.txtFolderMessage(1), VK_F1);
    WaitFor("the help", [&] { return log.Has("help"); });
    PostMessageW(dialog.Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    dialog.WaitForEnd();
  });
  host->ShowModal(form);
  EXPECT_TRUE(log.Has("cmdFolderMessage1 click"));
  EXPECT_FALSE(log.Has("txtFolderMessage0 got"));
  EXPECT_EQ(form.txtFolderMessage(0).Text(), L"The file \r\n\"a\"\r\n already exists.");
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

TEST(OptionButtons, AreChosenByTheArrowKeysAndNotByTheFirstFocus) {
  const OwnerWindow owner;
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  frmSetup form({});
  Control& own = form.optDbType(kSetupOwnDb);
  Control& sibling = form.optDbType(kSetupSiblingDb);
  sibling.SetChecked(true);
  Record(form, log);
  const auto marked = [](const Dialog& dialog, const Control& option) {
    return SendMessageW(dialog.Item(option), BM_GETCHECK, 0, 0) == BST_CHECKED;
  };
  const DialogUser user([&] {
    const Dialog dialog(form.Caption());
    dialog.WaitForFocus(sibling);
    WaitFor("the first focus", [&] { return log.Has("optDbType1 got"); });
    EXPECT_FALSE(log.Has("optDbType0 click"));
    dialog.Press(sibling, VK_LEFT);
    WaitFor("the choice", [&] { return log.Has("optDbType0 click"); });
    dialog.WaitForFocus(own);
    WaitFor("the marks", [&] { return marked(dialog, own) && !marked(dialog, sibling); });
    dialog.Press(own, VK_TAB);
    dialog.WaitForFocus(form.txtSetup(kSetupDatabase));
    WaitFor("the field", [&] { return log.Has("txtSetup4 got"); });
    dialog.Close();
  });
  host->ShowModal(form);
  const Events all = log.All();
  EXPECT_EQ((Events{all.end() - 4, all.end()}),
            (Events{"txtSetup4 lost", "cmdSetup0 got", "cmdSetup0 click", "unload"}));
  EXPECT_TRUE(own.Checked());
  EXPECT_FALSE(sibling.Checked());
}

// What Tab reaches, in this order, and the label with the key of a field; all else has its own.
struct Stop {
  Control& control;
  Control& keyed;
};

// Goes through a form by Tab and then by the keys that its windows show. Links have none.
void CheckKeyboard(Form& form, const std::vector<Stop>& stops, Control& cancel) {
  const OwnerWindow owner;
  const auto host = CreateWinFormHost(GetModuleHandleW(nullptr));
  EventLog log;
  Record(form, log);
  std::atomic<bool> done = false;
  cancel.onClick = [&] {
    if (done) form.Unload();
  };
  const DialogUser user([&] {
    const Dialog dialog(form.Caption());
    dialog.WaitForFocus(stops.front().control);
    for (std::size_t i = 1; i <= stops.size(); ++i) {
      PostMessageW(dialog.Focus(), WM_KEYDOWN, VK_TAB, 1);
      dialog.WaitForFocus(stops[i % stops.size()].control);
    }
    for (std::size_t i = stops.size(); i-- > 0;) {
      if (stops[i].control.link) continue;
      const std::wstring caption = dialog.TextOf(stops[i].keyed);
      const std::size_t mark = caption.find(L'&');
      if (mark == std::wstring::npos) throw std::runtime_error("no key: " + text::ToUtf8(caption));
      dialog.PressAlt(text::Fold(caption.at(mark + 1)));
      dialog.WaitForFocus(stops[i].control);
    }
    done = true;
    dialog.Close();
  });
  host->ShowModal(form);
}

TEST(Keyboard, ReachesAllOfTheProjectInformation) {
  frmProjInfo form({});
  std::vector<Stop> stops;
  for (const int index : {kProjInfoNumber, kProjInfoName, kProjInfoFolder}) {
    stops.push_back({form.txtProjInfo(index), form.lblFieldLabel(index)});
  }
  for (Control* const one :
       {&form.cmdBrowse(0), &form.chkProjActive, &form.cmdProjInfo(kProjInfoSave),
        &form.cmdProjInfo(kProjInfoCancel), &form.cmdProjInfo(kProjInfoHelp), &form.lblWebSite}) {
    stops.push_back({*one, *one});
  }
  CheckKeyboard(form, stops, form.cmdProjInfo(kProjInfoCancel));
}

TEST(Keyboard, ReachesAllOfTheDefaultsSetup) {
  frmSetup form({});
  form.optDbType(kSetupOwnDb).SetChecked(true);
  std::vector<Stop> stops = {{form.optDbType(kSetupOwnDb), form.optDbType(kSetupOwnDb)}};
  const struct {
    int field;
    int browse;
  } folders[] = {{kSetupDatabase, kSetupBrowseDatabase},
                 {kSetupSettings, kSetupBrowseSettings},
                 {kSetupServerFolder, kSetupBrowseServerFolder},
                 {kSetupEmailFolder, kSetupBrowseEmailFolder}};
  for (const auto& row : folders) {
    stops.push_back({form.txtSetup(row.field), form.lblFieldLabel(row.field)});
    stops.push_back({form.cmdBrowse(row.browse), form.cmdBrowse(row.browse)});
  }
  stops.push_back({form.cboWorkType, form.lblFieldLabel(kSetupWorkType)});
  stops.push_back(
      {form.txtSetup(kSetupProjectDelimiter), form.lblFieldLabel(kSetupDelimiterLabel)});
  stops.push_back({form.txtSetup(kSetupSubjectDelimiter), form.lblDelimLabel(1)});
  for (Control* const one : {&form.cmdSetup(kSetupReturn), &form.cmdSetup(kSetupHelp),
                             &form.lblWebSite(0), &form.lblWebSite(1)}) {
    stops.push_back({*one, *one});
  }
  CheckKeyboard(form, stops, form.cmdSetup(kSetupReturn));
}

}  // namespace
}  // namespace postrove::forms
