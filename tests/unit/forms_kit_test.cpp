// The form model without windows: Visual Basic's events, and handlers that end their own form.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "forms/kit/form_layout.h"
#include "gtest/gtest.h"
#include "shared/error.h"

namespace postrove::forms {
namespace {

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
void Record(Form& form, std::string& log) {
  for (const auto& item : form.Controls()) {
    Control& control = *item;
    std::string name(control.Name().begin(), control.Name().end());
    if (control.Index() >= 0) name += std::to_string(control.Index());
    control.onChange = [&log, name] { log += name + " change" + ","; };
    control.onClick = [&log, name] { log += name + " click" + ","; };
    control.onGotFocus = [&log, name] { log += name + " got" + ","; };
    control.onLostFocus = [&log, name] { log += name + " lost" + ","; };
    control.onKeyPress = [&log, name](int& key) {
      log += name + " key " + std::to_string(key) + ",";
      if (key == 'x') key = 0;
    };
    control.onMouseDown = [&log, name](int button, int, float, float) {
      log += name + " down " + std::to_string(button) + ",";
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

using Act = std::function<void(TestForm&)>;

struct EventCase {
  const char* what;
  Act prepare;
  Act act;
  std::string events;  // each with a comma behind it
  std::wstring comboText = L"";
  int listIndex = -1;
};

TEST(FormKit, RaisesTheEventsOfVisualBasic) {
  const Act nothing = [](TestForm&) {};
  const std::vector<EventCase> cases = {
      {"code sets another text", nothing, [](auto& f) { f.Text().SetText(L"a"); }, "text change,"},
      {"code sets the same text", [](auto& f) { f.Text().SetText(L"a"); },
       [](auto& f) { f.Text().SetText(L"a"); }, ""},
      {"code selects an item", nothing, [](auto& f) { f.Combo().SetListIndex(1); }, "combo change,",
       L"beta", 1},
      {"code selects the item whose text stands there", [](auto& f) { f.Combo().SetText(L"beta"); },
       [](auto& f) { f.Combo().SetListIndex(1); }, "", L"beta", 1},
      {"code selects none", [](auto& f) { f.Combo().SetListIndex(2); },
       [](auto& f) { f.Combo().SetListIndex(-1); }, "combo change,"},
      {"code writes over a selection", [](auto& f) { f.Combo().SetListIndex(2); },
       [](auto& f) { f.Combo().SetText(L"new"); }, "combo change,", L"new"},
      {"code replaces the list", [](auto& f) { f.Combo().SetListIndex(2); },
       [](auto& f) {
         f.Combo().SetItems({L"one"});
         f.Combo().AddItem(L"two");
       },
       "", L"gamma"},
      {"user picks", nothing, [](auto& f) { f.Combo().UserPicked(2); }, "combo change,combo click,",
       L"gamma", 2},
      {"user picks the same again", [](auto& f) { f.Combo().SetListIndex(2); },
       [](auto& f) { f.Combo().UserPicked(2); }, "combo click,", L"gamma", 2},
      {"user picks what the list has not", nothing, [](auto& f) { f.Combo().UserPicked(3); }, ""},
      {"user types over a selection", [](auto& f) { f.Combo().SetListIndex(0); },
       [](auto& f) { f.Combo().UserTyped(L"alp", 3, 0); }, "combo change,", L"alp"},
      {"user's key is passed on", nothing, [](auto& f) { EXPECT_FALSE(f.Combo().UserPressed(13)); },
       "combo key 13,"},
      {"user's key is swallowed", nothing, [](auto& f) { EXPECT_TRUE(f.Combo().UserPressed('x')); },
       "combo key 120,"},
      {"a disabled control is dead", [](auto& f) { f.Combo().SetEnabled(false); },
       [](auto& f) {
         f.Combo().UserTyped(L"a", 0, 0);
         f.Combo().UserPicked(0);
         f.Combo().UserEntered();
         f.Combo().UserMouseDown(1, 0, 0, 0);
         EXPECT_FALSE(f.Combo().UserPressed('x'));
       },
       ""},
      {"an invisible button is dead", [](auto& f) { f.Button().SetVisible(false); },
       [](auto& f) { f.Button().UserClicked(); }, ""},
      {"a disabled control still hears code", [](auto& f) { f.Combo().SetEnabled(false); },
       [](auto& f) { f.Combo().SetText(L"a"); }, "combo change,", L"a"},
      {"a locked box is read only", [](auto& f) { f.Combo().SetLocked(true); },
       [](auto& f) {
         f.Combo().UserTyped(L"a", 1, 0);
         f.Combo().UserPicked(0);
         f.Combo().UserEntered();
       },
       "combo got,"},
      {"an unloaded form is dead", [](auto& f) { f.Unload(); },
       [](auto& f) {
         f.Button().UserClicked();
         f.Text().UserLeft();
         f.UserActivated();
       },
       ""},
      {"the close box and Esc press the cancel button", [](auto& f) { f.Button().isCancel = true; },
       [](auto& f) {
         f.UserClosed();
         f.UserEscaped();
         EXPECT_FALSE(f.IsUnloaded());
       },
       "button0 click,button0 click,"},
      {"Esc can mean more than the close box",
       [](auto& f) {
         f.Button().isCancel = true;
         f.onEscape = [&f] { f.Option(0).SetChecked(true); };
       },
       [](auto& f) { f.UserEscaped(); }, "option0 click,"},
      {"F1 presses the help button", [](auto& f) { f.Button().isHelp = true; },
       [](auto& f) { f.UserAskedForHelp(); }, "button0 click,"},
      {"options exclude each other", [](auto& f) { f.Option(0).UserClicked(); },
       [](auto& f) {
         f.Option(1).UserClicked();
         f.Option(1).UserClicked();
         EXPECT_FALSE(f.Option(0).Checked());
         EXPECT_TRUE(f.Option(1).Checked());
       },
       "option1 click,"},
      {"options of another array stay", [](auto& f) { f.Find(L"other", 0).SetChecked(true); },
       [](auto& f) {
         f.Option(0).SetChecked(true);
         EXPECT_TRUE(f.Find(L"other", 0).Checked());
       },
       "option0 click,"},
      {"a check box turns, by code as well", nothing,
       [](auto& f) {
         f.Find(L"check").UserClicked();
         f.Find(L"check").SetChecked(false);
         f.Find(L"check").SetChecked(false);
       },
       "check click,check click,"},
  };
  for (const EventCase& test : cases) {
    SCOPED_TRACE(test.what);
    TestForm form;
    std::string log;
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
  view.changes.clear();
  Control& combo = form.Combo();
  combo.SetItems({L"a", L"b"});
  combo.AddItem(L"c");
  combo.SetListIndex(2);
  combo.Select(0, 1);
  combo.UserTyped(L"d", 1, 0);
  combo.UserPicked(0);
  form.Option(0).SetChecked(true);
  EXPECT_EQ(view.changes,
            (std::vector<Property>{Property::Items, Property::ItemAdded, Property::Text,
                                   Property::Selection, Property::Selection, Property::Text,
                                   Property::Text, Property::Selection, Property::Value}));
  EXPECT_EQ(combo.SelectionLength(), 1) << "what was picked is selected";
  const std::size_t told = view.changes.size();
  form.Unload();
  text.SetText(L"b");
  EXPECT_EQ(view.changes.size(), told);
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

// A caption moves what stands on its right: columns stay columns and fields keep their width.
TEST(FormKit, GivesCaptionsTheirRoom) {
  class Columns : public Form {
   public:
    Columns() : Form(L"Columns", 3000, 2000, true) {
      Add(ControlKind::Label, L"wide", -1, {100, 0, 400, 200});
      Add(ControlKind::TextBox, L"field", -1, {600, 0, 2300, 300}).anchors |= kRight;
      Add(ControlKind::Label, L"short", -1, {100, 400, 400, 200});
      Add(ControlKind::CommandButton, L"help", -1, {100, 1600, 400, 300}).anchors = kLeft | kBottom;
      Add(ControlKind::CommandButton, L"ok", -1, {2400, 1600, 500, 300}).anchors = kRight | kBottom;
    }
  } form;
  const struct {
    int wide, help, room;  // what the captions need, and the screen has
    int extra;             // the form is larger by that, in both directions
    int width;
    Box label, field, button;
  } kCases[] = {
      {0, 0, 9000, 0, 3000, {100, 400, 400, 200}, {600, 0, 2300, 300}, {2400, 1600, 500, 300}},
      {600, 0, 9000, 10, 3200, {100, 400, 600, 200}, {800, 0, 2310, 300}, {2610, 1610, 500, 300}},
      {0, 700, 9000, 0, 3300, {100, 400, 400, 200}, {600, 0, 2600, 300}, {2700, 1600, 500, 300}},
      {9000, 0, 9000, 0, 4500, {100, 400, 1900, 200}, {2100, 0, 2300, 300}, {3900, 1600, 500, 300}},
      // The screen has 3,100; the field lends what is missing, and the hints of the whole form.
      {9000,
       0,
       3100,
       -9000,
       4000,
       {100, 400, 1400, 200},
       {1600, 0, 1400, 300},
       {2500, 1360, 500, 300}},
  };
  for (const auto& one : kCases) {
    SCOPED_TRACE(one.width);
    const auto needs = [&](const Control& control) {
      if (control.Name() == L"short") return 450 * (one.wide > 0);
      return control.Name() == L"wide" ? one.wide : control.Name() == L"help" ? one.help : 0;
    };
    const FormLayout layout(form, needs, one.room);
    const auto place = [&](const wchar_t* name) {
      return layout.Place(form.Find(name), layout.Width() + one.extra, 2000 + one.extra);
    };
    EXPECT_EQ(layout.Width(), one.width);
    EXPECT_TRUE(place(L"short") == one.label);
    EXPECT_TRUE(place(L"field") == one.field);
    EXPECT_TRUE(place(L"ok") == one.button);
  }
}

// Every event's handler may destroy the form that raises it; the sanitizers see what is touched
// afterwards.
TEST(FormKit, SurvivesTheEndOfTheFormInEveryEvent) {
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

}  // namespace
}  // namespace postrove::forms
