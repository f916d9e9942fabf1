#include "forms/frmPostrove.h"

#include <utility>

#include "forms/web_site.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 8700;
constexpr int kHeight = 4980;
constexpr int kFieldLeft = 1620;
constexpr int kLabelWidth = kFieldLeft - kMargin - 60;
constexpr unsigned kWide = kLeft | kTop | kRight;

// The markers stand in a column of their own, behind the fields and the project's buttons.
constexpr int kAlertLeft = kWidth - kMargin - kAlertWidth;
constexpr int kFieldRight = kAlertLeft - kGap;
constexpr int kFieldWidth = kFieldRight - kFieldLeft;
constexpr int kBrowseLeft = kFieldRight - kBrowseWidth;

constexpr int kProjectTop = 705;
constexpr int kProjectButtonsTop = 1140;  // they end with the project's field
constexpr int kProjectButtonWidth = 1500;
constexpr int kEditLeft = kFieldRight - kProjectButtonWidth;
constexpr int kFolderTop = 1770;
constexpr int kNameTop = 2205;
constexpr int kHintsTop = 2745;
constexpr int kButtonsTop = 3840;
constexpr int kCloseLeft = kWidth - kMargin - kButtonWidth;
constexpr int kMainWidth = 1770;
constexpr int kSiteTop = 4425;

}  // namespace

frmPostrove::frmPostrove(std::weak_ptr<frmPostroveEvents> events)
    : DialogForm(L"frmPostrove", kWidth, kHeight, true),
      // The title holds the user's own word.
      lblFormTitle(AddTitle(L"Postrove EMail and File Location", false)),
      lblProjectLabel(AddLabel(L"lblFieldLabel", kProjectLabel, kMargin, kProjectTop, kLabelWidth,
                               L"Project: ", L"", {.choosesKey = true})),
      cboPostrove(Add(ControlKind::ComboBox, L"cboPostrove", -1,
                      {kFieldLeft, kProjectTop, kFieldWidth, kFieldHeight}, {},
                      L"Choose the project, or type the first letters of its name.",
                      {.anchors = kWide})),
      lblFolderLabel(AddLabel(L"lblFieldLabel", kFolderLabel, kMargin, kFolderTop, kLabelWidth,
                              L"Save &Folder: ")),
      txtSaveFolder(AddRequired(
          ControlKind::TextBox, L"txtSaveFolder", -1,
          {kFieldLeft, kFolderTop, kBrowseLeft - 60 - kFieldLeft, kFieldHeight},
          L"The folder that the message is saved in. Click the Folder button to browse.", kWide)),
      cmdBrowse(AddBrowse(L"cmdPostrove", kBrowseFolderButton, kBrowseLeft, kFolderTop,
                          L"&Browse...", L"Browse for a folder")),
      lblNameLabel(
          AddLabel(L"lblFieldLabel", kNameLabel, kMargin, kNameTop, kLabelWidth, L"File &Name: ")),
      txtSaveAsName(AddRequired(ControlKind::TextBox, L"txtSaveAsName", -1,
                                {kFieldLeft, kNameTop, kFieldWidth, kFieldHeight},
                                L"The name that the message is saved under, without an extension.",
                                kWide)),
      lblFolderAlert(AddAlert(kFolderLabel, kAlertLeft, kFolderTop, kTop | kRight)),
      lblNameAlert(AddAlert(kNameLabel, kAlertLeft, kNameTop, kTop | kRight)),
      rtfFieldHints(AddHints(kHintsTop, 915)),
      cmdMain(AddAction(kMainButton, kCloseLeft - kButtonGap - kMainWidth, kButtonsTop, kMainWidth,
                        L"Send and Save", L"Save the message in the folder",
                        {.anchors = kRight | kBottom, .isDefault = true, .choosesKey = true})),
      cmdClose(AddAction(kCloseButton, kCloseLeft, kButtonsTop, kButtonWidth, L"&Close",
                         L"Close without saving", {.anchors = kRight | kBottom, .isCancel = true})),
      cmdAddProject(AddAction(kAddProjectButton, kEditLeft - kButtonGap - kProjectButtonWidth,
                              kProjectButtonsTop, kProjectButtonWidth, L"&Add Project...",
                              L"Add a project to the list", {.anchors = kTop | kRight})),
      cmdEditProject(AddAction(kEditProjectButton, kEditLeft, kProjectButtonsTop,
                               kProjectButtonWidth, L"&Edit Project...",
                               L"Edit the name and the folder of this project",
                               {.anchors = kTop | kRight})),
      cmdDefaults(AddAction(kDefaultsButton, kMargin, kButtonsTop, kButtonWidth, L"&Defaults...",
                            L"Set up the defaults of Postrove", {.anchors = kLeft | kBottom})),
      cmdHelp(AddAction(kHelpButton, kMargin + kButtonWidth + kButtonGap, kButtonsTop, kButtonWidth,
                        L"&Help", L"Show Help", {.anchors = kLeft | kBottom, .isHelp = true})),
      lblWebSite(AddWebSite(-1, kMargin, kSiteTop, 3300, kWebSite,
                            L"Click here to go to the Postrove website")),
      lblVersion(Add(ControlKind::Label, L"lblVersion", -1, {kMargin, kHeight - 300, 3300, 300}, {},
                     {}, {.anchors = kLeft | kBottom})),
      lblAlert{&lblFolderAlert, &lblNameAlert},
      cmdPostrove{&cmdMain,  &cmdBrowse, &cmdAddProject, &cmdDefaults,
                  &cmdClose, &cmdHelp,   &cmdEditProject} {
  SetCaption(L"Postrove");
  for (Control* const alert : lblAlert) alert->SetTag(L"required");
  Connect(Raising<frmPostroveEvents>(std::move(events)));
}

Control& frmPostrove::AddAction(int index, int left, int top, int width, const wchar_t* caption,
                                const wchar_t* tip, const Design& design) {
  return AddButton(L"cmdPostrove", index, left, top, width, caption, tip, design);
}

void frmPostrove::Connect(const Raising<frmPostroveEvents>& raise) {
  using Events = frmPostroveEvents;
  for (Control* const button : cmdPostrove) {
    button->onClick = raise.As(&Events::frmPostroveEvent_ButtonClicked, button->Index());
  }
  // The close button's own work is the form's.
  cmdClose.onClick = [this, pressed = cmdClose.onClick] {
    pressed();
    Unload();
  };
  onUnload = [raise](bool& cancel) { raise(&Events::frmPostroveEvent_FormUnload, cancel); };
  onActivate = raise.As(&Events::frmPostroveEvent_FormActivate);

  cboPostrove.onChange = raise.WithText(&Events::frmPostroveEvent_ProjectComboChange, cboPostrove);
  cboPostrove.onClick = raise.As(&Events::frmPostroveEvent_ProjectComboClick);
  cboPostrove.onGotFocus = raise.As(&Events::frmPostroveEvent_ProjectComboGotFocus);
  cboPostrove.onKeyPress = [raise](int& key) {
    raise(&Events::frmPostroveEvent_ProjectComboKeyPress, key);
  };
  cboPostrove.onLostFocus = raise.As(&Events::frmPostroveEvent_ProjectComboLostFocus);

  txtSaveAsName.onChange = raise.As(&Events::frmPostroveEvent_SaveAsNameChanged);
  txtSaveAsName.onGotFocus = raise.As(&Events::frmPostroveEvent_SaveAsNameGotFocus);
  txtSaveAsName.onLostFocus = raise.As(&Events::frmPostroveEvent_SaveAsNameLostFocus);
  txtSaveFolder.onChange = raise.As(&Events::frmPostroveEvent_SaveFolderChanged);
  txtSaveFolder.onGotFocus = raise.As(&Events::frmPostroveEvent_SaveFolderGotFocus);
  txtSaveFolder.onLostFocus = raise.As(&Events::frmPostroveEvent_SaveFolderLostFocus);

  lblWebSite.onClick = raise.WithText(&Events::frmPostroveEvent_WebLabelClick, lblWebSite);
}

}  // namespace postrove::forms
