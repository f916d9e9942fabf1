#include "forms/frmProjInfo.h"

#include <utility>

#include "forms/icons.h"
#include "forms/web_site.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 8700;
constexpr int kHeight = 4980;
constexpr int kMargin = 210;
constexpr int kInnerRight = kWidth - kMargin;
constexpr int kFieldLeft = 1920;
constexpr int kFieldHeight = 345;
constexpr int kLabelHeight = 240;
constexpr int kButtonHeight = 390;
constexpr int kAlertWidth = 780;
constexpr int kAlertLeft = kInnerRight - kAlertWidth;
constexpr int kActiveTop = 2055;

}  // namespace

frmProjInfo::frmProjInfo(std::weak_ptr<frmProjInfoEvents> events)
    : Form(L"frmProjInfo", kWidth, kHeight, true),
      chkProjActive(Design()),
      rtfFieldHints(Find(L"rtfFieldHints")),
      lblWebSite(Find(L"lblWebSite")) {
  Connect(std::move(events));
}

// Makes every control, in tab order, and answers the check box.
Control& frmProjInfo::Design() {
  SetCaption(L"Postrove Project Information");
  Control& title = Add(ControlKind::Label, L"lblFormTitle", -1,
                       {kMargin, 195, kInnerRight - kMargin, 330}, L"Postrove Project Information");
  title.bold = true;
  title.fontPoints = 12;
  title.anchors = kLeft | kTop | kRight;
  DesignFields();
  DesignFoot();
  return Find(L"chkProjActive");
}

void frmProjInfo::DesignFields() {
  struct Row {
    int index;
    int width;
    const wchar_t* label;
    const wchar_t* labelTip;
    const wchar_t* tip;
    const wchar_t* alert;
  };
  const int browseWidth = 435;
  const int browseLeft = kAlertLeft - 75 - browseWidth;
  const int nameWidth = kAlertLeft - 75 - kFieldLeft;
  const int folderWidth = browseLeft - 60 - kFieldLeft;
  // The tips of the boxes stand as they were designed.
  const Row rows[] = {
      {kProjInfoNumber, 2400, L"Project Number: ",
       L"The word used by your company to organize files on the server.",
       L"The Number Assigned to the Project. This will appear as part of the Email Subject Line.",
       L"Optional"},
      {kProjInfoName, nameWidth, L"Project Name: ",
       L"The Name Assigned to the Project. This will appear as part of the Email Subject Line.",
       L"Enter the Root Folder for Project E-mails. Click the Folder button to browse for folders.",
       L"Required"},
      {kProjInfoFolder, folderWidth, L"Project Folder: ",
       L"Enter the Root Folder for Project E-mails. CLick the Folder button to browse for folders.",
       L"The Folder Used for the Project FIles and Email Sub-Folder. Click the Folder button to "
       L"browse for folders.",
       L"Required"},
  };
  int top = 705;
  for (const Row& row : rows) {
    const bool required = row.index != kProjInfoNumber;  // these are the long ones, too
    Control& label = Add(ControlKind::Label, L"lblFieldLabel", row.index,
                         {kMargin, top + 60, kFieldLeft - kMargin - 60, kLabelHeight}, row.label);
    label.choosesKey = true;
    label.SetToolTip(row.labelTip);
    Control& field = Add(ControlKind::TextBox, L"txtProjInfo", row.index,
                         {kFieldLeft, top, row.width, kFieldHeight});
    field.SetToolTip(row.tip);
    if (required) field.SetTag(L"required");
    if (required) field.anchors = kLeft | kTop | kRight;
    if (row.index == kProjInfoFolder) {
      const wchar_t* const browseTip = L"Browse for a Project Root Folder";
      // The picture hides the caption, which screen readers speak.
      Control& browse = Add(ControlKind::CommandButton, L"cmdBrowse", 0,
                            {browseLeft, top - 15, browseWidth, kFieldHeight + 30}, browseTip);
      browse.anchors = kTop | kRight;
      browse.icon = kFolderIcon;
      browse.choosesKey = true;
      browse.SetToolTip(browseTip);
    }
    // Shown at first: the box beside it is empty.
    const int alertLeft = required ? kAlertLeft : kFieldLeft + row.width + 75;
    Control& alert = Add(ControlKind::Label, L"lblAlert", row.index,
                         {alertLeft, top + 60, kAlertWidth, kLabelHeight}, row.alert);
    if (required) alert.anchors = kTop | kRight;
    if (required) alert.SetForeColor(kRed);
    top += 435;
  }
  // Its box stands in the column of the fields.
  const int boxSize = 195;
  Control& active = Add(ControlKind::CheckBox, L"chkProjActive", -1,
                        {kMargin, kActiveTop, kFieldLeft + boxSize - kMargin, 270}, L"Active:  ");
  active.boxOnRight = true;
  active.choosesKey = true;
  active.SetToolTip(L"Select this to Activate or De-Activate the Project");
}

void frmProjInfo::DesignFoot() {
  const int hintsTop = kActiveTop + 270 + 180;
  const int siteTop = kHeight - kMargin - kLabelHeight;
  const int buttonsTop = siteTop - 195 - kButtonHeight;
  Control& hints = Add(ControlKind::RichTextBox, L"rtfFieldHints", -1,
                       {kMargin, hintsTop, kInnerRight - kMargin, buttonsTop - 180 - hintsTop});
  hints.anchors = kLeft | kTop | kRight | kBottom;
  hints.tabStop = false;
  hints.SetForeColor(kSystemInfoText);
  hints.SetBackColor(kSystemInfoBack);

  const int buttonWidth = 1260;
  const auto addButton = [&](int index, int left, const wchar_t* caption, Anchor side) -> Control& {
    Control& button = Add(ControlKind::CommandButton, L"cmdProjInfo", index,
                          {left, buttonsTop, buttonWidth, kButtonHeight}, caption);
    button.anchors = side | kBottom;
    button.choosesKey = true;
    return button;
  };
  const int cancelLeft = kInnerRight - buttonWidth;
  addButton(kProjInfoSave, cancelLeft - 105 - buttonWidth, L"Save", kRight).isDefault = true;
  addButton(kProjInfoCancel, cancelLeft, L"Cancel", kRight).isCancel = true;
  addButton(kProjInfoHelp, kMargin, L"Help", kLeft).isHelp = true;

  Control& site =
      Add(ControlKind::Label, L"lblWebSite", -1, {kMargin, siteTop, 3300, kLabelHeight}, kWebSite);
  site.anchors = kLeft | kBottom;
  site.link = true;
  site.SetForeColor(kSystemLink);
}

void frmProjInfo::Connect(std::weak_ptr<frmProjInfoEvents> events) {
  const auto raise = [events = std::move(events)](auto event, auto... arguments) {
    if (const auto listener = events.lock()) (listener.get()->*event)(arguments...);
  };
  using Events = frmProjInfoEvents;

  onActivate = [raise] { raise(&Events::frmProjInfoEvent_FormActivate); };
  for (const int index : {kProjInfoSave, kProjInfoCancel, kProjInfoHelp}) {
    Control& button = cmdProjInfo(index);
    button.onClick = [raise, index] { raise(&Events::frmProjInfoEvent_ButtonClicked, index); };
    button.onMouseDown = [raise, index](int mouseButton, int shift, float x, float y) {
      raise(&Events::frmProjInfoEvent_ButtonMouseDown, index, mouseButton, shift, x, y);
    };
  }
  for (const int index : {kProjInfoNumber, kProjInfoName, kProjInfoFolder}) {
    Control& field = txtProjInfo(index);
    field.onChange = [raise, index] {
      raise(&Events::frmProjInfoEvent_ProjInfoFieldChange, index);
    };
    field.onGotFocus = [raise, index] {
      raise(&Events::frmProjInfoEvent_ProjInfoFieldGotFocus, index);
    };
    field.onLostFocus = [raise, index] {
      raise(&Events::frmProjInfoEvent_ProjInfoFieldLostFocus, index);
    };
  }
  cmdBrowse(0).onClick = [raise] { raise(&Events::frmProjInfoEvent_BrowseClicked, 0); };
  chkProjActive.onClick = [raise] { raise(&Events::frmProjInfoEvent_ProjActiveClicked); };
  // The text is copied: the handler may destroy the form while it reads it.
  lblWebSite.onClick = [raise, &label = lblWebSite] {
    raise(&Events::frmProjInfoEvent_ProjInfoWebLabelClick, std::wstring(label.Text()));
  };
}

}  // namespace postrove::forms
