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
      lblAlert(Find(L"lblAlert")),
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

  const int projectTop = 705;
  Add(ControlKind::Label, L"lblFieldLabel", kProjectLabel, LabelBox(projectTop), L"Project: ")
      .choosesKey = true;
  Control& project = Add(ControlKind::ComboBox, L"cboPostrove", -1,
                         {kFieldLeft, projectTop, kInnerRight - kFieldLeft, kFieldHeight});
  project.anchors = kLeft | kTop | kRight;
  project.SetToolTip(L"Choose the project, or type the first letters of its name.");

  const int projectButtonsTop = 1140;
  const int projectButtonWidth = 1500;
  const int editLeft = kFieldLeft + projectButtonWidth + kButtonGap;
  Add(ControlKind::CommandButton, L"cmdPostrove", kAddProjectButton,
      {kFieldLeft, projectButtonsTop, projectButtonWidth, kButtonHeight}, L"&Add Project...")
      .SetToolTip(L"Add a project to the list");
  Add(ControlKind::CommandButton, L"cmdPostrove", kEditProjectButton,
      {editLeft, projectButtonsTop, projectButtonWidth, kButtonHeight}, L"&Edit Project...")
      .SetToolTip(L"Edit the name and the folder of this project");
  Control& alert =
      Add(ControlKind::Label, L"lblAlert", -1,
          {editLeft + projectButtonWidth + 75, projectButtonsTop + 75, 1500, 240}, L"Required");
  alert.SetForeColor(kRed);
  alert.SetVisible(false);

  const int folderTop = 1770;
  const int browseWidth = 435;
  Add(ControlKind::Label, L"lblFieldLabel", kFolderLabel, LabelBox(folderTop), L"Save &Folder: ");
  Control& folder =
      Add(ControlKind::TextBox, L"txtSaveFolder", -1,
          {kFieldLeft, folderTop, kInnerRight - browseWidth - 60 - kFieldLeft, kFieldHeight});
  folder.anchors = kLeft | kTop | kRight;
  folder.SetTag(L"required");
  folder.SetToolTip(L"The folder that the message is saved in. Click the Folder button to browse.");
  Control& browse = Add(ControlKind::CommandButton, L"cmdPostrove", kBrowseFolderButton,
                        {kInnerRight - browseWidth, folderTop - 15, browseWidth, kFieldHeight + 30},
                        L"&Browse...");
  browse.anchors = kTop | kRight;
  browse.icon = kFolderIcon;
  browse.SetToolTip(L"Browse for a folder");

  const int nameTop = 2205;
  Add(ControlKind::Label, L"lblFieldLabel", kNameLabel, LabelBox(nameTop), L"File &Name: ");
  Control& name = Add(ControlKind::TextBox, L"txtSaveAsName", -1,
                      {kFieldLeft, nameTop, kInnerRight - kFieldLeft, kFieldHeight});
  name.anchors = kLeft | kTop | kRight;
  name.SetTag(L"required");
  name.SetToolTip(L"The name that the message is saved under, without an extension.");

  Control& hints = Add(ControlKind::RichTextBox, L"rtfFieldHints", -1,
                       {kMargin, 2745, kInnerRight - kMargin, 915});
  hints.anchors = kLeft | kTop | kRight | kBottom;
  hints.tabStop = false;
  hints.SetForeColor(kSystemInfoText);
  hints.SetBackColor(kSystemInfoBack);

  const int buttonsTop = 3840;
  const auto addButton = [&](int index, int left, int width, const wchar_t* caption,
                             const wchar_t* tip, unsigned anchors) -> Control& {
    Control& button = Add(ControlKind::CommandButton, L"cmdPostrove", index,
                          {left, buttonsTop, width, kButtonHeight}, caption);
    button.anchors = anchors;
    button.SetToolTip(tip);
    return button;
  };
  const int closeLeft = kInnerRight - 1260;
  const int mainLeft = closeLeft - kButtonGap - 1770;
  Control& main = addButton(kMainButton, mainLeft, 1770, L"Send and Save",
                            L"Save the message in the folder", kRight | kBottom);
  main.isDefault = true;
  main.choosesKey = true;
  addButton(kCloseButton, closeLeft, 1260, L"&Close", L"Close without saving", kRight | kBottom)
      .isCancel = true;
  addButton(kDefaultsButton, kMargin, 1260, L"&Defaults...", L"Set up the defaults of Postrove",
            kLeft | kBottom);
  addButton(kHelpButton, kMargin + 1260 + kButtonGap, 1260, L"&Help", L"Show Help", kLeft | kBottom)
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
  return title;
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
