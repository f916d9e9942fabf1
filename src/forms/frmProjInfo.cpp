#include "forms/frmProjInfo.h"

#include <utility>

#include "forms/web_site.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 8700;
constexpr int kHeight = 4980;
constexpr int kFieldLeft = 1920;
constexpr int kLabelWidth = kFieldLeft - kMargin - 60;
constexpr int kAlertLeft = kWidth - kMargin - kAlertWidth;
constexpr int kBrowseLeft = kAlertLeft - kGap - kBrowseWidth;
constexpr unsigned kWide = kLeft | kTop | kRight;

constexpr int kNumberTop = 705;
constexpr int kNumberWidth = 2400;
constexpr int kNameTop = kNumberTop + kRowHeight;
constexpr int kFolderTop = kNameTop + kRowHeight;
constexpr int kActiveTop = 2055;
constexpr int kCheckSize = 195;
constexpr int kHintsTop = kActiveTop + 270 + 180;
constexpr int kSiteTop = kHeight - kMargin - kLabelHeight;
constexpr int kButtonsTop = kSiteTop - 195 - kButtonHeight;
constexpr int kCancelLeft = kWidth - kMargin - kButtonWidth;

constexpr wchar_t kBrowseTip[] = L"Browse for a Project Root Folder";

}  // namespace

// The tips of the boxes stand as they were designed.
frmProjInfo::frmProjInfo(std::weak_ptr<frmProjInfoEvents> events)
    : DialogForm(L"frmProjInfo", kWidth, kHeight, true),
      lblFormTitle(AddTitle(L"Postrove Project Information")),
      lblNumber(AddCaption(kProjInfoNumber, kNumberTop, L"Project Number: ",
                           L"The word used by your company to organize files on the server.")),
      txtNumber(Add(ControlKind::TextBox, L"txtProjInfo", kProjInfoNumber,
                    {kFieldLeft, kNumberTop, kNumberWidth, kFieldHeight}, {},
                    L"The Number Assigned to the Project. This will appear as part of the Email "
                    L"Subject Line.")),
      lblNumberAlert(AddAlert(kProjInfoNumber, kFieldLeft + kNumberWidth + kGap, kNumberTop,
                              kLeft | kTop, L"Optional")),
      lblName(AddCaption(kProjInfoName, kNameTop, L"Project Name: ",
                         L"The Name Assigned to the Project. This will appear as part of the "
                         L"Email Subject Line.")),
      txtName(AddRequired(ControlKind::TextBox, L"txtProjInfo", kProjInfoName,
                          {kFieldLeft, kNameTop, kAlertLeft - kGap - kFieldLeft, kFieldHeight},
                          L"Enter the Root Folder for Project E-mails. Click the Folder button to "
                          L"browse for folders.",
                          kWide)),
      lblNameAlert(AddAlert(kProjInfoName, kAlertLeft, kNameTop, kTop | kRight)),
      lblFolder(AddCaption(kProjInfoFolder, kFolderTop, L"Project Folder: ",
                           L"Enter the Root Folder for Project E-mails. CLick the Folder button to "
                           L"browse for folders.")),
      txtFolder(AddRequired(ControlKind::TextBox, L"txtProjInfo", kProjInfoFolder,
                            {kFieldLeft, kFolderTop, kBrowseLeft - 60 - kFieldLeft, kFieldHeight},
                            L"The Folder Used for the Project FIles and Email Sub-Folder. Click "
                            L"the Folder button to browse for folders.",
                            kWide)),
      cmdBrowseFolder(
          AddBrowse(L"cmdBrowse", 0, kBrowseLeft, kFolderTop, kBrowseTip, kBrowseTip, true)),
      lblFolderAlert(AddAlert(kProjInfoFolder, kAlertLeft, kFolderTop, kTop | kRight)),
      // Its box stands in the column of the fields.
      chkProjActive(Add(ControlKind::CheckBox, L"chkProjActive", -1,
                        {kMargin, kActiveTop, kFieldLeft + kCheckSize - kMargin, 270}, L"Active:  ",
                        L"Select this to Activate or De-Activate the Project",
                        {.choosesKey = true, .boxOnRight = true})),
      rtfFieldHints(AddHints(kHintsTop, kButtonsTop - 180 - kHintsTop)),
      cmdSave(AddAction(kProjInfoSave, kCancelLeft - kButtonGap - kButtonWidth, L"Save",
                        {.anchors = kRight | kBottom, .isDefault = true, .choosesKey = true})),
      cmdCancel(AddAction(kProjInfoCancel, kCancelLeft, L"Cancel",
                          {.anchors = kRight | kBottom, .isCancel = true, .choosesKey = true})),
      cmdHelp(AddAction(kProjInfoHelp, kMargin, L"Help",
                        {.anchors = kLeft | kBottom, .isHelp = true, .choosesKey = true})),
      lblWebSite(AddWebSite(-1, kMargin, kSiteTop, 3300, kWebSite, L"")),
      lblFieldLabel{&lblNumber, &lblName, &lblFolder},
      txtProjInfo{&txtNumber, &txtName, &txtFolder},
      lblAlert{&lblNumberAlert, &lblNameAlert, &lblFolderAlert},
      cmdBrowse{&cmdBrowseFolder},
      cmdProjInfo{&cmdSave, &cmdCancel, &cmdHelp} {
  SetCaption(L"Postrove Project Information");
  for (Control* const alert : {&lblNameAlert, &lblFolderAlert}) alert->SetForeColor(kRed);
  Connect(Raising<frmProjInfoEvents>(std::move(events)));
}

Control& frmProjInfo::AddCaption(int index, int top, const wchar_t* text, const wchar_t* tip) {
  return AddLabel(L"lblFieldLabel", index, kMargin, top, kLabelWidth, text, tip,
                  {.choosesKey = true});
}

Control& frmProjInfo::AddAction(int index, int left, const wchar_t* caption, const Design& design) {
  return AddButton(L"cmdProjInfo", index, left, kButtonsTop, kButtonWidth, caption, L"", design);
}

void frmProjInfo::Connect(const Raising<frmProjInfoEvents>& raise) {
  using Events = frmProjInfoEvents;
  onActivate = raise.As(&Events::frmProjInfoEvent_FormActivate);
  for (Control* const button : cmdProjInfo) {
    const int index = button->Index();
    button->onClick = raise.As(&Events::frmProjInfoEvent_ButtonClicked, index);
    button->onMouseDown = [raise, index](int mouseButton, int shift, float x, float y) {
      raise(&Events::frmProjInfoEvent_ButtonMouseDown, index, mouseButton, shift, x, y);
    };
  }
  for (Control* const field : txtProjInfo) {
    const int index = field->Index();
    field->onChange = raise.As(&Events::frmProjInfoEvent_ProjInfoFieldChange, index);
    field->onGotFocus = raise.As(&Events::frmProjInfoEvent_ProjInfoFieldGotFocus, index);
    field->onLostFocus = raise.As(&Events::frmProjInfoEvent_ProjInfoFieldLostFocus, index);
  }
  cmdBrowseFolder.onClick = raise.As(&Events::frmProjInfoEvent_BrowseClicked, 0);
  chkProjActive.onClick = raise.As(&Events::frmProjInfoEvent_ProjActiveClicked);
  lblWebSite.onClick = raise.WithText(&Events::frmProjInfoEvent_ProjInfoWebLabelClick, lblWebSite);
}

}  // namespace postrove::forms
