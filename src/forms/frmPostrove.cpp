#include "forms/frmPostrove.h"

#include <utility>

#include "forms/icons.h"
#include "forms/web_site.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 8700;
constexpr int kHeight = 4980;
constexpr int kMargin = 210;
constexpr int kFieldLeft = 1620;
constexpr int kInnerRight = kWidth - kMargin;
constexpr int kFieldHeight = 345;
constexpr int kButtonHeight = 390;
constexpr int kButtonGap = 105;

// The markers stand in a column of their own, behind the fields and the project's buttons.
constexpr int kAlertWidth = 780;
constexpr int kAlertGap = 75;
constexpr int kAlertLeft = kInnerRight - kAlertWidth;
constexpr int kFieldRight = kAlertLeft - kAlertGap;

constexpr int kProjectTop = 705;
constexpr int kFolderTop = 1770;
constexpr int kNameTop = 2205;

// The label stands on the line of its field's text.
Box LabelBox(int fieldTop) { return {kMargin, fieldTop + 60, kFieldLeft - kMargin - 60, 240}; }

}  // namespace

frmPostrove::frmPostrove(std::weak_ptr<frmPostroveEvents> events)
    : Form(L"frmPostrove", kWidth, kHeight, true),
      lblFormTitle(Design()),
      lblProjectLabel(Find(L"lblFieldLabel", kProjectLabel)),
      cboPostrove(Find(L"cboPostrove")),
      lblFolderLabel(Find(L"lblFieldLabel", kFolderLabel)),
      txtSaveFolder(Find(L"txtSaveFolder")),
      lblNameLabel(Find(L"lblFieldLabel", kNameLabel)),
      txtSaveAsName(Find(L"txtSaveAsName")),
      rtfFieldHints(Find(L"rtfFieldHints")),
      lblVersion(Find(L"lblVersion")),
      lblWebSite(Find(L"lblWebSite")) {
  Connect(std::move(events));
}

// Makes every control, in tab order, and answers the title.
Control& frmPostrove::Design() {
  SetCaption(L"Postrove");

  Control& title =
      Add(ControlKind::Label, L"lblFormTitle", -1, {kMargin, 195, kInnerRight - kMargin, 330},
          L"Postrove EMail and File Location");
  title.bold = true;
  title.mnemonic = false;  // it holds the user's own word
  title.fontPoints = 12;
  title.anchors = kLeft | kTop | kRight;

  DesignFields();
  DesignFoot();
  return title;
}

Control& frmPostrove::AddButton(int index, Box place, const wchar_t* caption, const wchar_t* tip,
                                unsigned anchors) {
  Control& button = Add(ControlKind::CommandButton, L"cmdPostrove", index, place, caption);
  button.anchors = anchors;
  button.SetToolTip(tip);
  return button;
}

void frmPostrove::DesignFields() {
  Add(ControlKind::Label, L"lblFieldLabel", kProjectLabel, LabelBox(kProjectTop), L"Project: ")
      .choosesKey = true;
  Control& project = Add(ControlKind::ComboBox, L"cboPostrove", -1,
                         {kFieldLeft, kProjectTop, kFieldRight - kFieldLeft, kFieldHeight});
  project.anchors = kLeft | kTop | kRight;
  project.SetToolTip(L"Choose the project, or type the first letters of its name.");

  const int browseWidth = 435;
  const int browseLeft = kFieldRight - browseWidth;
  Add(ControlKind::Label, L"lblFieldLabel", kFolderLabel, LabelBox(kFolderTop), L"Save &Folder: ");
  Control& folder = Add(ControlKind::TextBox, L"txtSaveFolder", -1,
                        {kFieldLeft, kFolderTop, browseLeft - 60 - kFieldLeft, kFieldHeight});
  folder.anchors = kLeft | kTop | kRight;
  folder.SetTag(L"required");
  folder.SetToolTip(L"The folder that the message is saved in. Click the Folder button to browse.");
  AddButton(kBrowseFolderButton, {browseLeft, kFolderTop - 15, browseWidth, kFieldHeight + 30},
            L"&Browse...", L"Browse for a folder", kTop | kRight)
      .icon = kFolderIcon;

  Add(ControlKind::Label, L"lblFieldLabel", kNameLabel, LabelBox(kNameTop), L"File &Name: ");
  Control& name = Add(ControlKind::TextBox, L"txtSaveAsName", -1,
                      {kFieldLeft, kNameTop, kFieldRight - kFieldLeft, kFieldHeight});
  name.anchors = kLeft | kTop | kRight;
  name.SetTag(L"required");
  name.SetToolTip(L"The name that the message is saved under, without an extension.");

  for (const auto& [index, top] : {std::pair{kFolderLabel, kFolderTop}, {kNameLabel, kNameTop}}) {
    Control& alert = Add(ControlKind::Label, L"lblAlert", index,
                         {kAlertLeft, top + 60, kAlertWidth, 240}, L"Required");
    alert.anchors = kTop | kRight;
    alert.SetTag(L"required");
  }
}

// Behind the fields the main button comes first: whoever types needs nothing else.
void frmPostrove::DesignFoot() {
  Control& hints = Add(ControlKind::RichTextBox, L"rtfFieldHints", -1,
                       {kMargin, 2745, kInnerRight - kMargin, 915});
  hints.anchors = kLeft | kTop | kRight | kBottom;
  hints.tabStop = false;
  hints.SetForeColor(kSystemInfoText);
  hints.SetBackColor(kSystemInfoBack);

  const int buttonsTop = 3840;
  const int buttonWidth = 1260;
  const int closeLeft = kInnerRight - buttonWidth;
  const int mainWidth = 1770;
  const int mainLeft = closeLeft - kButtonGap - mainWidth;
  Control& main = AddButton(kMainButton, {mainLeft, buttonsTop, mainWidth, kButtonHeight},
                            L"Send and Save", L"Save the message in the folder", kRight | kBottom);
  main.isDefault = true;
  main.choosesKey = true;
  AddButton(kCloseButton, {closeLeft, buttonsTop, buttonWidth, kButtonHeight}, L"&Close",
            L"Close without saving", kRight | kBottom)
      .isCancel = true;

  // The project's buttons end with its field, so that the markers stand behind them as well.
  const int projectButtonsTop = 1140;
  const int projectButtonWidth = 1500;
  const int editLeft = kFieldRight - projectButtonWidth;
  AddButton(kAddProjectButton,
            {editLeft - kButtonGap - projectButtonWidth, projectButtonsTop, projectButtonWidth,
             kButtonHeight},
            L"&Add Project...", L"Add a project to the list", kTop | kRight);
  AddButton(kEditProjectButton, {editLeft, projectButtonsTop, projectButtonWidth, kButtonHeight},
            L"&Edit Project...", L"Edit the name and the folder of this project", kTop | kRight);

  AddButton(kDefaultsButton, {kMargin, buttonsTop, buttonWidth, kButtonHeight}, L"&Defaults...",
            L"Set up the defaults of Postrove", kLeft | kBottom);
  AddButton(kHelpButton,
            {kMargin + buttonWidth + kButtonGap, buttonsTop, buttonWidth, kButtonHeight}, L"&Help",
            L"Show Help", kLeft | kBottom)
      .isHelp = true;

  Control& webSite =
      Add(ControlKind::Label, L"lblWebSite", -1, {kMargin, 4425, 3300, 240}, kWebSite);
  webSite.anchors = kLeft | kBottom;
  webSite.link = true;
  webSite.SetForeColor(kSystemLink);
  webSite.SetToolTip(L"Click here to go to the Postrove website");
  Control& version =
      Add(ControlKind::Label, L"lblVersion", -1, {kMargin, kHeight - 300, 3300, 300});
  version.anchors = kLeft | kBottom;
}

void frmPostrove::Connect(std::weak_ptr<frmPostroveEvents> events) {
  const auto raise = [events = std::move(events)](auto event, auto&&... arguments) {
    if (const auto listener = events.lock()) {
      (listener.get()->*event)(std::forward<decltype(arguments)>(arguments)...);
    }
  };
  using Events = frmPostroveEvents;

  for (const auto& control : Controls()) {
    if (control->Kind() != ControlKind::CommandButton) continue;
    control->onClick = [raise, index = control->Index()] {
      raise(&Events::frmPostroveEvent_ButtonClicked, index);
    };
  }
  // The close button's own work is the form's.
  cmdPostrove(kCloseButton).onClick = [this, raise] {
    raise(&Events::frmPostroveEvent_ButtonClicked, static_cast<int>(kCloseButton));
    Unload();
  };
  onUnload = [raise](bool& cancel) { raise(&Events::frmPostroveEvent_FormUnload, cancel); };
  onActivate = [raise] { raise(&Events::frmPostroveEvent_FormActivate); };

  // The text is copied: the handler may write the box, or destroy the form, while it reads it.
  cboPostrove.onChange = [raise, &combo = cboPostrove] {
    raise(&Events::frmPostroveEvent_ProjectComboChange, std::wstring(combo.Text()));
  };
  cboPostrove.onClick = [raise] { raise(&Events::frmPostroveEvent_ProjectComboClick); };
  cboPostrove.onGotFocus = [raise] { raise(&Events::frmPostroveEvent_ProjectComboGotFocus); };
  cboPostrove.onKeyPress = [raise](int& key) {
    raise(&Events::frmPostroveEvent_ProjectComboKeyPress, key);
  };
  cboPostrove.onLostFocus = [raise] { raise(&Events::frmPostroveEvent_ProjectComboLostFocus); };

  txtSaveAsName.onChange = [raise] { raise(&Events::frmPostroveEvent_SaveAsNameChanged); };
  txtSaveAsName.onGotFocus = [raise] { raise(&Events::frmPostroveEvent_SaveAsNameGotFocus); };
  txtSaveAsName.onLostFocus = [raise] { raise(&Events::frmPostroveEvent_SaveAsNameLostFocus); };
  txtSaveFolder.onChange = [raise] { raise(&Events::frmPostroveEvent_SaveFolderChanged); };
  txtSaveFolder.onGotFocus = [raise] { raise(&Events::frmPostroveEvent_SaveFolderGotFocus); };
  txtSaveFolder.onLostFocus = [raise] { raise(&Events::frmPostroveEvent_SaveFolderLostFocus); };

  lblWebSite.onClick = [raise, &label = lblWebSite] {
    raise(&Events::frmPostroveEvent_WebLabelClick, std::wstring(label.Text()));
  };
}

}  // namespace postrove::forms
