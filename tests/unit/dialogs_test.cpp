// The dialogs without windows: every design can be used by keyboard, screen reader and eye.
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "controller/save_dialog_look.h"
#include "controller/type_ahead.h"
#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/frmProjInfo.h"
#include "forms/frmSetup.h"
#include "forms/kit/access_key.h"
#include "gtest/gtest.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

using Stops = std::vector<std::string>;

bool Within(const Box& inner, const Box& outer) {
  return inner.left >= outer.left && inner.top >= outer.top &&
         inner.left + inner.width <= outer.left + outer.width &&
         inner.top + inner.height <= outer.top + outer.height;
}

bool Apart(const Box& one, const Box& other) {
  return one.left >= other.left + other.width || other.left >= one.left + one.width ||
         one.top >= other.top + other.height || other.top >= one.top + one.height;
}

// Every visible control lies on the form, and on no other but a frame that holds it.
void CheckPlaces(const Form& form) {
  for (const auto& control : form.Controls()) {
    if (!control->Visible()) continue;
    SCOPED_TRACE(std::string(control->Name().begin(), control->Name().end()) + " " +
                 std::to_string(control->Index()));
    EXPECT_TRUE(Within(control->Place(), {0, 0, form.Width(), form.Height()}));
    for (const auto& other : form.Controls()) {
      if (other == control) break;
      if (!other->Visible()) continue;
      const bool held =
          other->Kind() == ControlKind::Frame && Within(control->Place(), other->Place());
      EXPECT_TRUE(held || Apart(control->Place(), other->Place()))
          << "lies on " << std::string(other->Name().begin(), other->Name().end());
    }
  }
}

// What every form must offer the keyboard, the screen reader and the eye.
void CheckDesign(Form& form) {
  for (const auto& control : form.Controls()) control->SetVisible(true);
  CheckPlaces(form);
  std::map<wchar_t, std::wstring> mnemonics;
  int defaults = 0;
  int cancels = 0;
  int helps = form.onHelp ? 1 : 0;
  const Control* before = nullptr;
  for (const auto& item : form.Controls()) {
    const Control& control = *item;
    SCOPED_TRACE(std::string(control.Name().begin(), control.Name().end()) + " " +
                 std::to_string(control.Index()));
    const std::wstring text = ShownCaption(control);
    const std::size_t mark = text.find(L'&');
    if (mark != std::wstring::npos) {
      const wchar_t key = text::Fold(text.at(mark + 1));
      EXPECT_EQ(mnemonics.count(key), 0u) << "a mnemonic is used twice";
      mnemonics[key] = control.Name();
    }
    defaults += control.isDefault;
    cancels += control.isCancel;
    helps += control.isHelp;
    if (control.Kind() == ControlKind::ComboBox ||
        (control.Kind() == ControlKind::TextBox && control.tabStop)) {
      ASSERT_NE(before, nullptr);
      EXPECT_EQ(before->Kind(), ControlKind::Label) << "the field has no name";
    }
    before = &control;
  }
  EXPECT_EQ(defaults, 1);
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(helps, 1);
}

// Every field that Tab reaches has a key in a label before it, all that is pressed one in its own
// caption.
void CheckKeys(const Form& form) {
  std::wstring labels;  // since the field before
  for (const auto& control : form.Controls()) {
    const ControlKind kind = control->Kind();
    if (kind == ControlKind::Label) labels += ShownCaption(*control);
    const bool field =
        kind == ControlKind::ComboBox || (kind == ControlKind::TextBox && control->tabStop);
    const bool pressed = kind == ControlKind::CommandButton || kind == ControlKind::CheckBox ||
                         kind == ControlKind::OptionButton;
    if (!field && !pressed) continue;
    const std::wstring caption = field ? std::exchange(labels, {}) : ShownCaption(*control);
    EXPECT_NE(caption.find(L'&'), std::wstring::npos) << text::ToUtf8(caption);
  }
}

TEST(FrmPostrove, IsDesignedForKeyboardAndScreenReader) {
  frmPostrove form({});
  CheckDesign(form);
  CheckKeys(form);
  EXPECT_EQ(form.cmdPostrove(kMainButton).Text(), L"Send and Save");
  EXPECT_TRUE(form.cmdPostrove(kMainButton).isDefault);
  EXPECT_TRUE(form.cmdPostrove(kCloseButton).isCancel);
  EXPECT_EQ(form.txtSaveFolder.Tag(), L"required");
  EXPECT_EQ(form.txtSaveAsName.Tag(), L"required");

  frmPostrove arranged({});
  ArrangeForm(arranged, false, {1, 2, 3});
  for (const auto& control : arranged.Controls()) {
    if (control->Kind() != ControlKind::Label || control->Tag() != L"required") continue;
    EXPECT_FALSE(control->Visible());
    EXPECT_EQ(control->Text(), L"Required");
    EXPECT_EQ(control->ForeColor(), 0xFFu);
  }
  const Box version = arranged.lblVersion.Place();
  EXPECT_EQ(version.top + version.height, arranged.Height());

  // Enter goes on to the next field, and whoever has filled them in is at the main button.
  std::vector<std::string> stops;
  for (const auto& control : form.Controls()) {
    if (control->Kind() == ControlKind::Label || !control->tabStop) continue;
    stops.push_back(std::string(control->Name().begin(), control->Name().end()));
    if (control->Index() >= 0) stops.back() += ' ' + std::to_string(control->Index());
  }
  EXPECT_EQ(stops, (Stops{"cboPostrove", "txtSaveFolder", "cmdPostrove 1", "txtSaveAsName",
                          "cmdPostrove 0", "cmdPostrove 4", "cmdPostrove 2", "cmdPostrove 8",
                          "cmdPostrove 3", "cmdPostrove 5"}));
}

// Keys are found for any word that stands for a project and in any language, a text that has an "&"
// shows it, and no label takes a button's key.
TEST(FrmPostrove, FindsAFreeAccessKey) {
  const struct {
    const wchar_t *project, *folder, *shownProject, *shownFolder;
  } kCases[] = {{L"Project: ", L"Save &Folder: ", L"&Project: ", L"Save &Folder: "},
                {L"Contract: ", L"&Ordner: ", L"Con&tract: ", L"&Ordner: "},
                {L"Set: ", L"&Speichern && ab: ", L"Se&t: ", L"S&peichern && ab: "},
                {L"R&D: ", L"&&: ", L"&R&&D: ", L"&&: "},
                {L"Bench: ", L"&Enc: ", L"Bench: ", L"E&nc: "},
                {L"&: ", L"&Name: ", L"&&: ", L"&Name: "},
                {L"\u00c9tude: ", L"x&", L"&\u00c9tude: ", L"x&"}};
  frmPostrove form({});
  for (const auto& one : kCases) {
    form.lblProjectLabel.SetText(one.project);
    form.lblFolderLabel.SetText(one.folder);
    EXPECT_EQ(ShownCaption(form.lblProjectLabel), one.shownProject);
    EXPECT_EQ(ShownCaption(form.lblFolderLabel), one.shownFolder);
    for (const wchar_t* const caption : {L"Send and Save", L"Save"}) {
      form.cmdPostrove(kMainButton).SetText(caption);
      EXPECT_EQ(ShownCaption(form.cmdPostrove(kMainButton)), L'&' + std::wstring(caption));
    }
  }
}

TEST(TypeAhead, CompletesCharacters) {
  for (const int key : {0x20, 0x7E, 0xA0, 0xFC, 0x3A9, 0xDE00})
    EXPECT_TRUE(IsCharacter(key)) << key;
  for (const int key : {8, 13, 0x1F, 0x7F, 0x9F, 0xD83D}) EXPECT_FALSE(IsCharacter(key)) << key;
}

// A dialog whose listener is gone still closes.
TEST(FrmFolderMessage, IsDesignedForKeyboardAndScreenReader) {
  frmFolderMessage form({});
  CheckDesign(form);
  EXPECT_EQ(form.Caption(), L" Folder Not Found");
  EXPECT_EQ(form.txtFolderMessage(1).Tag(), L"required");
  const Control& message = form.txtFolderMessage(0);  // looks like a label, can be copied from
  EXPECT_TRUE(message.Locked());
  EXPECT_EQ(message.ForeColor(), 0x80000012u);
  EXPECT_EQ(message.BackColor(), 0x8000000Fu);
  form.cmdFolderMessage(0).UserClicked();
  form.UserClosed();
}

TEST(FrmSetup, IsEndedByItsReturnButtonOnly) {
  frmSetup form({});
  for (const auto& control : form.Controls()) {  // nothing is wrong before the user begins
    if (control->Name() != L"lblAlert") continue;
    EXPECT_FALSE(control->Visible());
    EXPECT_EQ(control->ForeColor(), 0xFFu);
  }
  CheckDesign(form);
  CheckKeys(form);
  EXPECT_TRUE(form.cmdSetup(kSetupReturn).isDefault);
  EXPECT_TRUE(form.cmdSetup(kSetupReturn).isCancel);
  for (const int index : {0, 1, 2, 3, 4, 5}) EXPECT_EQ(form.txtSetup(index).Tag(), L"required");
  EXPECT_EQ(form.cboWorkType.Tag(), L"required");
  form.cmdBrowse(0).UserClicked();
  EXPECT_TRUE(form.Unload());
}

TEST(FrmSetup, ClosesTheGapOfTheHiddenSettingsRow) {
  frmSetup form({});
  std::vector<Box> designed;
  for (const auto& control : form.Controls()) designed.push_back(control->Place());
  for (const int index : {0, 1, 2, 3, 4, 5, 6}) form.lblAlert(index).SetVisible(true);
  const int hintsEnd = form.rtfFieldHints.Place().top + form.rtfFieldHints.Place().height;
  const Box row = form.txtSetup(kSetupSettings).Place();

  for (const int repeated : {0, 1}) {
    SCOPED_TRACE(repeated);
    form.ShowSettingsLocation(false);
    EXPECT_FALSE(form.txtSetup(kSetupSettings).Visible());
    EXPECT_FALSE(form.lblFieldLabel(kSetupSettings).Visible());
    EXPECT_FALSE(form.lblAlert(kSetupSettings).Visible());
    EXPECT_FALSE(form.cmdBrowse(kSetupBrowseSettings).Visible());
    CheckPlaces(form);
    EXPECT_EQ(form.txtSetup(kSetupServerFolder).Place(), row);
    const Box& hints = form.rtfFieldHints.Place();
    EXPECT_EQ(hints.top + hints.height, hintsEnd);
  }

  form.txtSetup(kSetupSettings).SetText(L"C:\\Settings");
  form.ShowSettingsLocation(true);
  EXPECT_TRUE(form.txtSetup(kSetupSettings).Visible());
  EXPECT_FALSE(form.lblAlert(kSetupSettings).Visible());
  for (std::size_t i = 0; i < designed.size(); ++i) {
    EXPECT_EQ(form.Controls()[i]->Place(), designed[i]) << i;
  }
}

TEST(FrmProjInfo, AnswersByItsButtonsOnly) {
  frmProjInfo form({});
  CheckDesign(form);
  CheckKeys(form);
  EXPECT_TRUE(form.cmdProjInfo(kProjInfoSave).isDefault);
  EXPECT_TRUE(form.cmdProjInfo(kProjInfoCancel).isCancel);
  EXPECT_EQ(form.txtProjInfo(kProjInfoNumber).Tag(), L"");
  EXPECT_EQ(form.txtProjInfo(kProjInfoName).Tag(), L"required");
  EXPECT_EQ(form.txtProjInfo(kProjInfoFolder).Tag(), L"required");
  form.cmdProjInfo(kProjInfoSave).UserClicked();
}

}  // namespace
}  // namespace postrove::forms
