// The form model without windows: Visual Basic's events, and handlers that end their own form.
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/web_site.h"
#include "gtest/gtest.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

using Log = std::vector<std::string>;

class TestForm : public Form {
 public:
  TestForm() : Form(L"TestForm", 3000, 2000, false) {
    Add(ControlKind::TextBox, L"text", -1, {});
    Add(ControlKind::ComboBox, L"combo", -1, {});
    Add(ControlKind::CommandButton, L"button", 0, {}, L"&Go");
    Add(ControlKind::CheckBox, L"check", -1, {});
    Add(ControlKind::OptionButton, L"option", 0, {});
    Add(ControlKind::OptionButton, L"option", 1, {});
    Add(ControlKind::OptionButton, L"other", 0, {});
    Combo().SetItems({L"alpha", L"beta", L"gamma"});
  }
  Control& Text() { return Find(L"text"); }
  Control& Combo() { return Find(L"combo"); }
  Control& Button() { return Find(L"button", 0); }
  Control& Option(int index) { return Find(L"option", index); }
};

// Writes every event of the form down.
void Record(Form& form, Log& log) {
  for (const auto& item : form.Controls()) {
    Control& control = *item;
    std::string name(control.Name().begin(), control.Name().end());
    if (control.Index() >= 0) name += std::to_string(control.Index());
    control.onChange = [&log, name] { log.push_back(name + " change"); };
    control.onClick = [&log, name] { log.push_back(name + " click"); };
    control.onGotFocus = [&log, name] { log.push_back(name + " got"); };
    control.onLostFocus = [&log, name] { log.push_back(name + " lost"); };
    control.onKeyPress = [&log, name](int& key) {
      log.push_back(name + " key " + std::to_string(key));
      if (key == 'x') key = 0;
    };
    control.onMouseDown = [&log, name](int button, int, float, float) {
      log.push_back(name + " down " + std::to_string(button));
    };
  }
}

class RecordingView : public FormView {
 public:
  void ControlChanged(Control&, Property property) override { changes.push_back(property); }
  void CaptionChanged() override { ++captions; }
  void Unloaded() override { ++unloads; }

  std::vector<Property> changes;
  int captions = 0;
  int unloads = 0;
};

struct EventCase {
  const char* what;
  std::function<void(TestForm&)> prepare;
  std::function<void(TestForm&)> act;
  Log events;
  std::wstring comboText;
  int listIndex;
};

TEST(FormKit, RaisesTheEventsOfVisualBasic) {
  const auto nothing = [](TestForm&) {};
  const std::vector<EventCase> cases = {
      {"code sets another text",
       nothing,
       [](TestForm& f) { f.Text().SetText(L"a"); },
       {"text change"},
       L"",
       -1},
      {"code sets the same text",
       [](TestForm& f) { f.Text().SetText(L"a"); },
       [](TestForm& f) { f.Text().SetText(L"a"); },
       {},
       L"",
       -1},
      {"code selects an item",
       nothing,
       [](TestForm& f) { f.Combo().SetListIndex(1); },
       {"combo change"},
       L"beta",
       1},
      {"code selects the item whose text stands there",
       [](TestForm& f) { f.Combo().SetText(L"beta"); },
       [](TestForm& f) { f.Combo().SetListIndex(1); },
       {},
       L"beta",
       1},
      {"code selects none",
       [](TestForm& f) { f.Combo().SetListIndex(2); },
       [](TestForm& f) { f.Combo().SetListIndex(-1); },
       {"combo change"},
       L"",
       -1},
      {"code writes over a selection",
       [](TestForm& f) { f.Combo().SetListIndex(2); },
       [](TestForm& f) { f.Combo().SetText(L"new"); },
       {"combo change"},
       L"new",
       -1},
      {"code replaces the list",
       [](TestForm& f) { f.Combo().SetListIndex(2); },
       [](TestForm& f) {
         f.Combo().SetItems({L"one"});
         f.Combo().AddItem(L"two");
       },
       {},
       L"gamma",
       -1},
      {"user picks",
       nothing,
       [](TestForm& f) { f.Combo().UserPicked(2); },
       {"combo change", "combo click"},
       L"gamma",
       2},
      {"user picks the same again",
       [](TestForm& f) { f.Combo().SetListIndex(2); },
       [](TestForm& f) { f.Combo().UserPicked(2); },
       {"combo click"},
       L"gamma",
       2},
      {"user picks what the list has not",
       nothing,
       [](TestForm& f) { f.Combo().UserPicked(3); },
       {},
       L"",
       -1},
      {"user types over a selection",
       [](TestForm& f) { f.Combo().SetListIndex(0); },
       [](TestForm& f) { f.Combo().UserTyped(L"alp", 3, 0); },
       {"combo change"},
       L"alp",
       -1},
      {"user's key is passed on",
       nothing,
       [](TestForm& f) { EXPECT_FALSE(f.Combo().UserPressed(13)); },
       {"combo key 13"},
       L"",
       -1},
      {"user's key is swallowed",
       nothing,
       [](TestForm& f) { EXPECT_TRUE(f.Combo().UserPressed('x')); },
       {"combo key 120"},
       L"",
       -1},
      {"a disabled control is dead",
       [](TestForm& f) { f.Combo().SetEnabled(false); },
       [](TestForm& f) {
         f.Combo().UserTyped(L"a", 0, 0);
         f.Combo().UserPicked(0);
         f.Combo().UserEntered();
         f.Combo().UserMouseDown(1, 0, 0, 0);
         EXPECT_FALSE(f.Combo().UserPressed('x'));
       },
       {},
       L"",
       -1},
      {"an invisible button is dead",
       [](TestForm& f) { f.Button().SetVisible(false); },
       [](TestForm& f) { f.Button().UserClicked(); },
       {},
       L"",
       -1},
      {"a disabled control still hears code",
       [](TestForm& f) { f.Combo().SetEnabled(false); },
       [](TestForm& f) { f.Combo().SetText(L"a"); },
       {"combo change"},
       L"a",
       -1},
      {"a locked box is read only",
       [](TestForm& f) { f.Combo().SetLocked(true); },
       [](TestForm& f) {
         f.Combo().UserTyped(L"a", 1, 0);
         f.Combo().UserPicked(0);
         f.Combo().UserEntered();
       },
       {"combo got"},
       L"",
       -1},
      {"an unloaded form is dead",
       [](TestForm& f) { f.Unload(); },
       [](TestForm& f) {
         f.Button().UserClicked();
         f.Text().UserLeft();
         f.UserActivated();
       },
       {},
       L"",
       -1},
      {"options exclude each other",
       [](TestForm& f) { f.Option(0).UserClicked(); },
       [](TestForm& f) {
         f.Option(1).UserClicked();
         f.Option(1).UserClicked();
         EXPECT_FALSE(f.Option(0).Checked());
         EXPECT_TRUE(f.Option(1).Checked());
       },
       {"option1 click"},
       L"",
       -1},
      {"options of another array stay",
       [](TestForm& f) { f.Find(L"other", 0).SetChecked(true); },
       [](TestForm& f) {
         f.Option(0).SetChecked(true);
         EXPECT_TRUE(f.Find(L"other", 0).Checked());
       },
       {"option0 click"},
       L"",
       -1},
      {"a check box turns, by code as well",
       nothing,
       [](TestForm& f) {
         f.Find(L"check").UserClicked();
         f.Find(L"check").SetChecked(false);
         f.Find(L"check").SetChecked(false);
       },
       {"check click", "check click"},
       L"",
       -1},
  };
  for (const EventCase& test : cases) {
    SCOPED_TRACE(test.what);
    TestForm form;
    Log log;
    test.prepare(form);
    Record(form, log);
    test.act(form);
    EXPECT_EQ(log, test.events);
    EXPECT_EQ(form.Combo().Text(), test.comboText);
    EXPECT_EQ(form.Combo().ListIndex(), test.listIndex);
  }
}

TEST(FormKit, CutsTheSelectionToTheText) {
  struct Case {
    int start, length, expectedStart, expectedLength;
  };
  TestForm form;
  form.Text().SetText(L"abcd");
  for (const Case& test : {Case{1, 2, 1, 2}, Case{-3, 1, 0, 1}, Case{3, 9, 3, 1}, Case{9, 9, 4, 0},
                           Case{2, -1, 2, 0}}) {
    form.Text().Select(test.start, test.length);
    EXPECT_EQ(form.Text().SelectionStart(), test.expectedStart);
    EXPECT_EQ(form.Text().SelectionLength(), test.expectedLength);
  }
  form.Text().SetText(L"other");
  EXPECT_EQ(form.Text().SelectionStart(), 0);
  EXPECT_EQ(form.Text().SelectionLength(), 0);
}

TEST(FormKit, RefusesWhatDoesNotExist) {
  TestForm form;
  for (const int index : {-2, 3}) {
    EXPECT_THROW(form.Combo().SetListIndex(index), Error) << index;
  }
  EXPECT_THROW(form.Find(L"button"), Error);
  EXPECT_THROW(form.Find(L"button", 1), Error);
  RecordingView view;
  form.Attach(&view);
  EXPECT_THROW(form.Attach(&view), Error);
  form.Unload();
  EXPECT_THROW(form.Attach(&view), Error);
}

TEST(FormKit, TellsTheViewOfChangesOnly) {
  TestForm form;
  RecordingView view;
  form.Attach(&view);
  Control& text = form.Text();
  for (int round = 0; round < 2; ++round) {
    text.SetText(L"a");
    text.SetVisible(false);
    text.SetEnabled(false);
    text.SetLocked(true);
    text.SetToolTip(L"tip");
    text.SetForeColor(kRed);
    text.SetBackColor(kYellow);
    text.SetPlace({1, 2, 3, 4});
    form.SetCaption(L"caption");
  }
  EXPECT_EQ(view.changes,
            (std::vector<Property>{Property::Text, Property::Visible, Property::Enabled,
                                   Property::Locked, Property::ToolTip, Property::ForeColor,
                                   Property::BackColor, Property::Place}));
  EXPECT_EQ(view.captions, 1);
  form.Unload();
  text.SetText(L"b");
  EXPECT_EQ(view.changes.size(), 8u);
}

TEST(FormKit, UnloadsOnceAndCanBeRefused) {
  TestForm form;
  RecordingView view;
  form.Attach(&view);
  int asked = 0;
  form.onUnload = [&](bool& cancel) {
    cancel = ++asked == 1;
    form.Unload();  // within its own event: nothing
  };
  form.closable = false;
  form.UserClosed();
  EXPECT_EQ(asked, 0);
  form.closable = true;
  form.UserClosed();
  EXPECT_FALSE(form.IsUnloaded());
  EXPECT_EQ(view.unloads, 0);
  EXPECT_TRUE(form.Unload());
  EXPECT_TRUE(form.Unload());
  EXPECT_TRUE(form.IsUnloaded());
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(view.unloads, 1);
}

TEST(FormKit, CanUnloadAfterAHandlerThatThrew) {
  TestForm form;
  form.onUnload = [](bool&) { throw Error(kInvalidArgument, L"", L""); };
  EXPECT_THROW(form.Unload(), Error);
  EXPECT_FALSE(form.IsUnloaded());
  form.onUnload = nullptr;
  EXPECT_TRUE(form.Unload());
}

// Every event's handler may destroy the form that raises it; the sanitizers see what is touched
// afterwards.
TEST(FormKit, SurvivesTheEndOfTheFormInEveryEvent) {
  using Act = std::function<void(TestForm&)>;
  const std::vector<std::pair<const char*, Act>> acts = {
      {"set text", [](TestForm& f) { f.Text().SetText(L"a"); }},
      {"select item", [](TestForm& f) { f.Combo().SetListIndex(1); }},
      {"type", [](TestForm& f) { f.Text().UserTyped(L"a", 1, 0); }},
      {"pick", [](TestForm& f) { f.Combo().UserPicked(1); }},
      {"click", [](TestForm& f) { f.Button().UserClicked(); }},
      {"check", [](TestForm& f) { f.Option(1).UserClicked(); }},
      {"enter", [](TestForm& f) { f.Text().UserEntered(); }},
      {"leave", [](TestForm& f) { f.Text().UserLeft(); }},
      {"key", [](TestForm& f) { f.Text().UserPressed('a'); }},
      {"mouse", [](TestForm& f) { f.Button().UserMouseDown(1, 0, 0, 0); }},
      {"activate", [](TestForm& f) { f.UserActivated(); }},
      {"close", [](TestForm& f) { f.UserClosed(); }},
  };
  for (const auto& [what, act] : acts) {
    SCOPED_TRACE(what);
    auto form = std::make_unique<TestForm>();
    RecordingView view;
    form->Attach(&view);
    int events = 0;
    const auto end = [&] {
      ++events;
      form.reset();
    };
    for (const auto& control : form->Controls()) {
      control->onChange = control->onClick = control->onGotFocus = control->onLostFocus = end;
      control->onKeyPress = [end](int&) { end(); };
      control->onMouseDown = [end](int, int, float, float) { end(); };
    }
    form->onActivate = end;
    form->onUnload = [end](bool&) { end(); };
    act(*form);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(form, nullptr);
    EXPECT_EQ(view.unloads, 1);
  }
}

// A control event of the save dialog arrives as the event of the form, with its values.
class PostroveListener final : public frmPostroveEvents {
 public:
  void frmPostroveEvent_ButtonClicked(int Index) override { Add("button", Index); }
  void frmPostroveEvent_FormUnload(bool& Cancel) override {
    Cancel = refuse;
    Add("unload");
  }
  void frmPostroveEvent_FormActivate() override { Add("activate"); }
  void frmPostroveEvent_ProjectComboChange(const std::wstring& Text) override {
    Add("project " + std::string(Text.begin(), Text.end()));
  }
  void frmPostroveEvent_ProjectComboClick() override { Add("project click"); }
  void frmPostroveEvent_ProjectComboGotFocus() override { Add("project got"); }
  void frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) override {
    Add("project key", KeyAscii);
    KeyAscii = 0;
  }
  void frmPostroveEvent_ProjectComboLostFocus() override { Add("project lost"); }
  void frmPostroveEvent_SaveAsNameChanged() override { Add("name"); }
  void frmPostroveEvent_SaveAsNameGotFocus() override { Add("name got"); }
  void frmPostroveEvent_SaveAsNameLostFocus() override { Add("name lost"); }
  void frmPostroveEvent_SaveFolderChanged() override { Add("folder"); }
  void frmPostroveEvent_SaveFolderGotFocus() override { Add("folder got"); }
  void frmPostroveEvent_SaveFolderLostFocus() override { Add("folder lost"); }
  void frmPostroveEvent_WebLabelClick(const std::wstring& Caption) override {
    EXPECT_EQ(Caption, kWebSite);
    Add("web");
  }

  Log log;
  bool refuse = false;

 private:
  void Add(std::string event) { log.push_back(std::move(event)); }
  void Add(const std::string& event, int value) { Add(event + " " + std::to_string(value)); }
};

TEST(FrmPostrove, RaisesOneEventForEachOfItsControls) {
  const auto listener = std::make_shared<PostroveListener>();
  frmPostrove form(listener);
  listener->refuse = true;  // so that the close button leaves the form to go on with
  form.UserActivated();
  for (const int index : {0, 1, 2, 3, 4, 5, 8}) form.cmdPostrove(index).UserClicked();
  form.cboPostrove.SetItems({L"P"});
  form.cboPostrove.UserPicked(0);
  form.cboPostrove.UserEntered();
  EXPECT_TRUE(form.cboPostrove.UserPressed(13));
  form.cboPostrove.UserLeft();
  form.txtSaveAsName.SetText(L"n");
  form.txtSaveAsName.UserEntered();
  form.txtSaveAsName.UserLeft();
  form.txtSaveFolder.SetText(L"f");
  form.txtSaveFolder.UserEntered();
  form.txtSaveFolder.UserLeft();
  form.lblWebSite.UserClicked();
  EXPECT_FALSE(form.Unload());
  EXPECT_EQ(listener->log,
            (Log{"activate",      "button 0",    "button 1",       "button 2",     "button 3",
                 "button 4",      "unload",      "button 5",       "button 8",     "project P",
                 "project click", "project got", "project key 13", "project lost", "name",
                 "name got",      "name lost",   "folder",         "folder got",   "folder lost",
                 "web",           "unload"}));
  for (const int index : {6, 7}) EXPECT_THROW(form.cmdPostrove(index), Error) << index;
}

TEST(FrmPostrove, OutlivesItsListener) {
  auto listener = std::make_shared<PostroveListener>();
  frmPostrove form(listener);
  listener.reset();
  form.cmdPostrove(kMainButton).UserClicked();
  form.txtSaveAsName.SetText(L"n");
  EXPECT_TRUE(form.Unload());
}

// What every form must offer the keyboard and the screen reader.
void CheckDesign(const Form& form) {
  std::map<wchar_t, std::wstring> mnemonics;
  int defaults = 0;
  int cancels = 0;
  const Control* before = nullptr;
  for (const auto& item : form.Controls()) {
    const Control& control = *item;
    SCOPED_TRACE(std::string(control.Name().begin(), control.Name().end()) + " " +
                 std::to_string(control.Index()));
    const std::wstring& text = control.Text();
    const std::size_t mark = text.find(L'&');
    if (mark != std::wstring::npos) {
      EXPECT_EQ(mnemonics.count(text.at(mark + 1)), 0u) << "a mnemonic is used twice";
      mnemonics[text.at(mark + 1)] = control.Name();
    }
    defaults += control.isDefault;
    cancels += control.isCancel;
    if (control.Kind() == ControlKind::ComboBox ||
        (control.Kind() == ControlKind::TextBox && control.tabStop)) {
      ASSERT_NE(before, nullptr);
      EXPECT_EQ(before->Kind(), ControlKind::Label) << "the field has no name";
    }
    const Box& box = control.Place();
    EXPECT_GE(box.left, 0);
    EXPECT_GE(box.top, 0);
    EXPECT_LE(box.left + box.width, form.Width());
    EXPECT_LE(box.top + box.height, form.Height());
    for (const auto& other : form.Controls()) {
      if (other.get() == &control) break;
      const Box& taken = other->Place();
      EXPECT_TRUE(box.left >= taken.left + taken.width || taken.left >= box.left + box.width ||
                  box.top >= taken.top + taken.height || taken.top >= box.top + box.height)
          << "lies on " << std::string(other->Name().begin(), other->Name().end());
    }
    before = &control;
  }
  EXPECT_EQ(defaults, 1);
  EXPECT_EQ(cancels, 1);
}

TEST(FrmPostrove, IsDesignedForKeyboardAndScreenReader) {
  frmPostrove form({});
  CheckDesign(form);
  EXPECT_EQ(form.cmdPostrove(kMainButton).Text(), L"&Send and Save");
  EXPECT_TRUE(form.cmdPostrove(kMainButton).isDefault);
  EXPECT_TRUE(form.cmdPostrove(kCloseButton).isCancel);
  EXPECT_EQ(form.txtSaveFolder.Tag(), L"required");
  EXPECT_EQ(form.txtSaveAsName.Tag(), L"required");
}

TEST(FrmFolderMessage, AnswersByItsButtonsOnly) {
  class Listener final : public frmFolderMessageEvents {
   public:
    void frmFolderMessageEvent_ButtonClicked(int Index) override {
      log.push_back("button " + std::to_string(Index));
    }
    void frmFolderMessageEvent_ButtonMouseDown(int Index, int Button, int Shift, float X,
                                               float Y) override {
      EXPECT_EQ(Shift, 3);
      EXPECT_EQ(X, 15.0f);
      EXPECT_EQ(Y, 30.0f);
      log.push_back("down " + std::to_string(Index) + std::to_string(Button));
    }
    void frmFolderMessageEvent_FolderMessageFieldChange(int Index) override {
      log.push_back("change " + std::to_string(Index));
    }
    void frmFolderMessageEvent_FolderMessageFieldGotFocus(int Index) override {
      log.push_back("got " + std::to_string(Index));
    }
    void frmFolderMessageEvent_FolderMessageFieldLostFocus(int Index) override {
      log.push_back("lost " + std::to_string(Index));
    }
    void frmFolderMessageEvent_FormActivate() override { log.push_back("activate"); }
    Log log;
  };
  const auto listener = std::make_shared<Listener>();
  frmFolderMessage form(listener);
  CheckDesign(form);
  EXPECT_EQ(form.Caption(), L" Folder Not Found");
  EXPECT_EQ(form.txtFolderMessage(1).Tag(), L"required");
  form.UserClosed();
  EXPECT_FALSE(form.IsUnloaded());
  form.UserActivated();
  form.txtFolderMessage(0).UserTyped(L"edited", 0, 0);
  form.txtFolderMessage(1).UserEntered();
  form.txtFolderMessage(1).UserTyped(L" name ", 6, 0);
  form.txtFolderMessage(1).UserLeft();
  form.cmdFolderMessage(1).UserMouseDown(2, 3, 15, 30);
  form.cmdFolderMessage(0).UserClicked();
  EXPECT_EQ(form.txtFolderMessage(1).Text(), L" name ");
  EXPECT_EQ(listener->log, (Log{"activate", "got 1", "change 1", "lost 1", "down 12", "button 0"}));
}

}  // namespace
}  // namespace postrove::forms
