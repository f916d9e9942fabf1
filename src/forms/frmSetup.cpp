#include "forms/frmSetup.h"

#include <utility>

#include "forms/web_site.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 9600;
constexpr int kHeight = 7080;
constexpr int kFrameWidth = kWidth - 2 * kMargin;
constexpr unsigned kWide = kLeft | kTop | kRight;

// The frame of the fields. Its text columns are those of the whole form.
constexpr int kFrameTop = 1275;
constexpr int kLabelLeft = kMargin + 165;
constexpr int kFieldLeft = 2130;
constexpr int kLabelWidth = kFieldLeft - kLabelLeft - 60;
constexpr int kRowRight = kMargin + kFrameWidth - 165;
constexpr int kAlertLeft = kRowRight - kAlertWidth;
constexpr int kBrowseLeft = kAlertLeft - kGap - kBrowseWidth;

enum Row {
  kDatabaseRow,
  kSettingsRow,
  kServerRow,
  kEmailRow,
  kWorkTypeRow,
  kDelimiterRow,
  kEndRow
};

constexpr int RowTop(int row) { return kFrameTop + 315 + row * kRowHeight; }

constexpr int kSampleHeight = 480;  // two lines
constexpr int kFrameBottom = RowTop(kEndRow) + kSampleHeight + 165;

constexpr int kDbFrameTop = 600;
constexpr int kOptionTop = kDbFrameTop + 195;
constexpr int kOptionWidth = 1500;
constexpr int kWorkTypeWidth = 2700;

// The row of the delimiters: word, delimiter, word, delimiter, word.
constexpr int kDelimiterWidth = 525;
constexpr int kUnitNumberWidth = 1800;
constexpr int kUnitWidth = 1400;
constexpr int kProjDelimLeft = kFieldLeft + kUnitNumberWidth + kGap;
constexpr int kUnitLeft = kProjDelimLeft + kDelimiterWidth + kGap;
constexpr int kSubjDelimLeft = kUnitLeft + kUnitWidth + kGap;
constexpr int kSubjectLeft = kSubjDelimLeft + kDelimiterWidth + kGap;

constexpr int kHintsTop = kFrameBottom + 150;
constexpr int kSiteTop = kHeight - kMargin - kLabelHeight;
constexpr int kSiteWidth = 2700;
constexpr int kButtonsTop = kSiteTop - 195 - kButtonHeight;

constexpr wchar_t kSampleTip[] =
    L"This is the path & filename format that will be used to save your email.";

void Move(Control& control, int down, int taller) {
  Box place = control.Place();
  place.top += down;
  place.height += taller;
  control.SetPlace(place);
}

}  // namespace

frmSetup::FolderRow::FolderRow(frmSetup& form, int index, int row, const wchar_t* caption,
                               const wchar_t* tip, int browseIndex, const wchar_t* browseCaption)
    : label(form.AddCaption(index, row, caption)),
      field(form.AddRequired(ControlKind::TextBox, L"txtSetup", index,
                             {kFieldLeft, RowTop(row), kBrowseLeft - 60 - kFieldLeft, kFieldHeight},
                             tip, kWide)),
      browse(form.AddBrowse(L"cmdBrowse", browseIndex, kBrowseLeft, RowTop(row), browseCaption,
                            text::Replace(browseCaption, L"&", L""))),
      alert(form.AddSettingAlert(index, kAlertLeft, row, kTop | kRight)) {}

frmSetup::frmSetup(std::weak_ptr<frmSetupEvents> events)
    : DialogForm(L"frmSetup", kWidth, kHeight, true),
      lblFormTitle(AddTitle(L"Postrove Defaults Setup")),
      lblDbType(Add(ControlKind::Label, L"lblFieldLabel", kSetupDbTypeLabel,
                    {kLabelLeft, kOptionTop + 15, kLabelWidth, kLabelHeight}, L"Database &Type: ")),
      // Without a caption: the label before it says what is chosen.
      fraDbOption(Add(ControlKind::Frame, L"fraDbOption", -1,
                      {kFieldLeft, kDbFrameTop, 2 * kOptionWidth + 300, 555})),
      optOwnDb(
          AddOption(kSetupOwnDb, L"&Postrove", L"Select this option to use the Postrove database")),
      optSiblingDb(AddOption(kSetupSiblingDb, L"&Quillion",
                             L"Select this option to use the Quillion database")),
      fraSettings(Add(ControlKind::Frame, L"fraSettings", -1,
                      {kMargin, kFrameTop, kFrameWidth, kFrameBottom - kFrameTop}, L"Settings", {},
                      {.anchors = kWide})),
      database(*this, kSetupDatabase, kDatabaseRow, L"&Database Location: ",
               L"Enter the path for the Postrove database location. Click the Folder button to "
               L"browse for folders.",
               kSetupBrowseDatabase, L"&Browse for a Database Location Folder"),
      settings(*this, kSetupSettings, kSettingsRow, L"&Settings Location: ",
               L"Enter the path for the Settings Configuration file. Click the Folder button to "
               L"browse for folders.",
               kSetupBrowseSettings, L"Browse for a Settings Confi&guration File folder"),
      serverFolder(*this, kSetupServerFolder, kServerRow, L"Server &Folder: ",
                   L"Enter the Server Folder for Project Emails. Click the Folder button to browse "
                   L"for folders.",
                   kSetupBrowseServerFolder, L"Browse for a Ser&ver Project Folder"),
      emailFolder(*this, kSetupEmailFolder, kEmailRow, L"&Email Sub-Folder: ",
                  L"Enter the Sub-Folder project E-mails will be saved to. Click the Folder button "
                  L"to browse for folders.",
                  kSetupBrowseEmailFolder, L"Browse for an E-&mail Sub-Folder"),
      lblWorkType(AddCaption(kSetupWorkType, kWorkTypeRow, L"&Work Unit Type: ")),
      cboWorkType(AddRequired(ControlKind::ComboBox, L"cboWorkType", -1,
                              {kFieldLeft, RowTop(kWorkTypeRow), kWorkTypeWidth, kFieldHeight},
                              L"The word used by your company to organize files on the server.",
                              kLeft | kTop)),
      lblWorkTypeAlert(AddSettingAlert(kSetupWorkType, kFieldLeft + kWorkTypeWidth + kGap,
                                       kWorkTypeRow, kTop | kLeft)),
      lblDelimiters(AddCaption(kSetupDelimiterLabel, kDelimiterRow, L"De&limiters:",
                               L"The strings to be used to separate the segments of the E-mail "
                               L"Subject Line.")),
      lblUnitNumber(AddWord(0, kFieldLeft, kUnitNumberWidth, L"<~Unit~ No.>", {.mnemonic = false})),
      txtProjDelim(AddDelimiter(kSetupProjectDelimiter, kProjDelimLeft,
                                L"Enter the string to be used to separate the Project Number and "
                                L"Project Name on the E-mail Subject Line.")),
      lblUnit(AddWord(1, kUnitLeft, kUnitWidth, L"<~Unit~>", {.choosesKey = true})),
      txtSubjDelim(AddDelimiter(kSetupSubjectDelimiter, kSubjDelimLeft,
                                L"Enter the string to be used to separate the Project Name and "
                                L"Email Subject on the E-mail Subject Line.")),
      lblSubject(AddWord(2, kSubjectLeft, 900, L"<Subject>", {.mnemonic = false})),
      // Both at the end of the row, in the order of their fields.
      lblProjDelimAlert(AddSettingAlert(kSetupProjectDelimiter, kAlertLeft - kAlertWidth - kGap,
                                        kDelimiterRow, kTop | kRight)),
      lblSubjDelimAlert(
          AddSettingAlert(kSetupSubjectDelimiter, kAlertLeft, kDelimiterRow, kTop | kRight)),
      lblExample(AddCaption(kSetupExampleLabel, kEndRow, L"Example: ", kSampleTip)),
      lblSavePathSample(
          Add(ControlKind::Label, L"lblSavePathSample", -1,
              {kFieldLeft, RowTop(kEndRow) + 60, kRowRight - kFieldLeft, kSampleHeight}, {},
              kSampleTip, {.anchors = kWide, .multiLine = true, .mnemonic = false})),
      rtfFieldHints(AddHints(kHintsTop, kButtonsTop - 180 - kHintsTop)),
      cmdReturn(AddButton(L"cmdSetup", kSetupReturn, kWidth - kMargin - kButtonWidth, kButtonsTop,
                          kButtonWidth, L"&Return", L"Return to the Postrove Form",
                          {.anchors = kRight | kBottom, .isDefault = true, .isCancel = true})),
      cmdHelp(AddButton(L"cmdSetup", kSetupHelp, kMargin, kButtonsTop, kButtonWidth, L"&Help",
                        L"Show Help", {.anchors = kLeft | kBottom, .isHelp = true})),
      lblPostroveSite(AddWebSite(0, kMargin, kSiteTop, kSiteWidth, kWebSite,
                                 L"Click here to go to the Postrove website")),
      lblQuillionSite(AddWebSite(1, kMargin + kSiteWidth + 300, kSiteTop, kSiteWidth,
                                 L"Find Out About Quillion",
                                 L"Click here to go to the Quillion website")),
      lblFieldLabel{&lblDbType,         &database.label, &settings.label, &serverFolder.label,
                    &emailFolder.label, &lblWorkType,    &lblDelimiters,  &lblExample},
      lblAlert{&database.alert,   &settings.alert,    &serverFolder.alert, &emailFolder.alert,
               &lblWorkTypeAlert, &lblProjDelimAlert, &lblSubjDelimAlert},
      lblDelimLabel{&lblUnitNumber, &lblUnit, &lblSubject},
      lblWebSite{&lblPostroveSite, &lblQuillionSite},
      txtSetup{&database.field,    &settings.field, &serverFolder.field,
               &emailFolder.field, &txtProjDelim,   &txtSubjDelim},
      optDbType{&optOwnDb, &optSiblingDb},
      cmdBrowse{&database.browse, &settings.browse, &serverFolder.browse, &emailFolder.browse},
      cmdSetup{&cmdReturn, &cmdHelp} {
  SetCaption(L"Postrove Defaults Setup");
  Connect(Raising<frmSetupEvents>(std::move(events)));
}

Control& frmSetup::AddCaption(int index, int row, const wchar_t* text, const wchar_t* tip) {
  return AddLabel(L"lblFieldLabel", index, kLabelLeft, RowTop(row), kLabelWidth, text, tip);
}

Control& frmSetup::AddOption(int index, const wchar_t* caption, const wchar_t* tip) {
  return Add(ControlKind::OptionButton, L"optDbType", index,
             {kFieldLeft + 150 + index * kOptionWidth, kOptionTop, kOptionWidth, 270}, caption,
             tip);
}

Control& frmSetup::AddSettingAlert(int index, int left, int row, unsigned anchors) {
  Control& alert = AddAlert(index, left, RowTop(row), anchors);
  alert.SetForeColor(kRed);
  alert.SetVisible(false);
  return alert;
}

Control& frmSetup::AddWord(int index, int left, int width, const wchar_t* text,
                           const Design& design) {
  Control& word =
      AddLabel(L"lblDelimLabel", index, left, RowTop(kDelimiterRow), width, text, L"", design);
  word.SetTag(text);  // the word is put into it
  return word;
}

Control& frmSetup::AddDelimiter(int index, int left, const wchar_t* tip) {
  return AddRequired(ControlKind::TextBox, L"txtSetup", index,
                     {left, RowTop(kDelimiterRow), kDelimiterWidth, kFieldHeight}, tip,
                     kLeft | kTop);
}

void frmSetup::ShowSettingsLocation(bool show) {
  if (settings.field.Visible() == show) return;
  settings.field.SetVisible(show);
  settings.label.SetVisible(show);
  settings.browse.SetVisible(show);
  settings.alert.SetVisible(show && settings.field.Text().empty());

  const int down = show ? kRowHeight : -kRowHeight;
  // In tab order the rows below stand between the row's last control and the hint box.
  bool below = false;
  for (const auto& control : Controls()) {
    if (control.get() == &rtfFieldHints) break;
    if (below) Move(*control, down, 0);
    below = below || control.get() == &settings.alert;
  }
  Move(fraSettings, 0, down);
  Move(rtfFieldHints, down, -down);
}

void frmSetup::Connect(const Raising<frmSetupEvents>& raise) {
  using Events = frmSetupEvents;
  onEscape = raise.As(&Events::frmSetupEvent_FormEscape);
  for (Control* const button : cmdBrowse) {
    button->onClick = raise.As(&Events::frmSetupEvent_BrowseClicked, button->Index());
  }
  for (Control* const button : cmdSetup) {
    button->onClick = raise.As(&Events::frmSetupEvent_ButtonClicked, button->Index());
  }
  for (Control* const option : optDbType) {
    option->onClick = raise.As(&Events::frmSetupEvent_SetupDbTypeOptionClick);
  }
  for (Control* const site : lblWebSite) {
    site->onClick = raise.WithText(&Events::frmSetupEvent_SetupWebLabelClick, *site);
  }
  const auto connectFocus = [&raise](Control& field, int index) {
    field.onGotFocus = raise.As(&Events::frmSetupEvent_SetupFieldGotFocus, index);
    field.onLostFocus = raise.As(&Events::frmSetupEvent_SetupFieldLostFocus, index);
  };
  for (Control* const field : txtSetup) {
    field->onChange = raise.As(&Events::frmSetupEvent_SetupFieldChange, field->Index());
    connectFocus(*field, field->Index());
  }
  connectFocus(cboWorkType, kSetupWorkType);

  cboWorkType.onChange = raise.WithText(&Events::frmSetupEvent_SetupListChange, cboWorkType);
  cboWorkType.onClick = raise.As(&Events::frmSetupEvent_SetupListClick);
  cboWorkType.onKeyPress = [raise, &combo = cboWorkType](int& key) {
    raise(&Events::frmSetupEvent_SetupListKeyPress, key, std::wstring(combo.Text()));
  };
}

}  // namespace postrove::forms
