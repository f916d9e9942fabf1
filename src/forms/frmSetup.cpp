#include "forms/frmSetup.h"

#include <utility>

#include "forms/icons.h"
#include "forms/web_site.h"
#include "shared/text.h"

namespace postrove::forms {
namespace {

constexpr int kWidth = 9600;
constexpr int kHeight = 7080;
constexpr int kMargin = 210;
constexpr int kInnerRight = kWidth - kMargin;
constexpr int kFieldHeight = 345;
constexpr int kLabelHeight = 240;
constexpr int kButtonHeight = 390;
constexpr int kBrowseWidth = 435;

// The frame of the fields. Its text columns are those of the whole form.
constexpr int kFrameTop = 1275;
constexpr int kLabelLeft = kMargin + 165;
constexpr int kFieldLeft = 2130;
constexpr int kRowRight = kInnerRight - 165;
constexpr int kAlertWidth = 780;
constexpr int kAlertLeft = kRowRight - kAlertWidth;
constexpr int kBrowseLeft = kAlertLeft - 75 - kBrowseWidth;

enum Row {
  kDatabaseRow,
  kSettingsRow,
  kServerRow,
  kEmailRow,
  kWorkTypeRow,
  kDelimiterRow,
  kEndRow
};

constexpr int kRowHeight = 435;
constexpr int RowTop(int row) { return kFrameTop + 315 + row * kRowHeight; }

// A label stands on the line of its field's text.
constexpr Box LabelBox(int left, int row, int width) {
  return {left, RowTop(row) + 60, width, kLabelHeight};
}

constexpr int kSampleHeight = 480;  // two lines
constexpr int kFrameBottom = RowTop(kEndRow) + kSampleHeight + 165;

void Move(Control& control, int down, int taller) {
  Box place = control.Place();
  place.top += down;
  place.height += taller;
  control.SetPlace(place);
}

}  // namespace

frmSetup::frmSetup(std::weak_ptr<frmSetupEvents> events)
    : Form(L"frmSetup", kWidth, kHeight, true),
      fraDbOption(Design()),
      fraSettings(Find(L"fraSettings")),
      cboWorkType(Find(L"cboWorkType")),
      lblSavePathSample(Find(L"lblSavePathSample")),
      rtfFieldHints(Find(L"rtfFieldHints")) {
  Connect(std::move(events));
}

void frmSetup::ShowSettingsLocation(bool show) {
  Control& field = txtSetup(kSetupSettings);
  if (field.Visible() == show) return;
  Control& alert = lblAlert(kSetupSettings);
  field.SetVisible(show);
  lblFieldLabel(kSetupSettings).SetVisible(show);
  cmdBrowse(kSetupBrowseSettings).SetVisible(show);
  alert.SetVisible(show && field.Text().empty());

  const int down = show ? kRowHeight : -kRowHeight;
  // In tab order the rows below stand between the row's last control and the hint box.
  bool below = false;
  for (const auto& control : Controls()) {
    if (control.get() == &rtfFieldHints) break;
    if (below) Move(*control, down, 0);
    below = below || control.get() == &alert;
  }
  Move(fraSettings, 0, down);
  Move(rtfFieldHints, down, -down);
}

// Makes every control, in tab order, and answers the first frame.
Control& frmSetup::Design() {
  SetCaption(L"Postrove Defaults Setup");
  Control& title = Add(ControlKind::Label, L"lblFormTitle", -1,
                       {kMargin, 195, kInnerRight - kMargin, 330}, L"Postrove Defaults Setup");
  title.bold = true;
  title.fontPoints = 12;
  title.anchors = kLeft | kTop | kRight;
  DesignDbType();
  Add(ControlKind::Frame, L"fraSettings", -1,
      {kMargin, kFrameTop, kInnerRight - kMargin, kFrameBottom - kFrameTop}, L"Settings")
      .anchors = kLeft | kTop | kRight;
  DesignFolders();
  DesignSubjectLine();
  DesignFoot();
  return Find(L"fraDbOption");
}

void frmSetup::DesignDbType() {
  const int frameTop = 600;
  const int optionTop = frameTop + 195;
  const int optionWidth = 1500;
  Add(ControlKind::Label, L"lblFieldLabel", kSetupDbTypeLabel,
      {kLabelLeft, optionTop + 15, kFieldLeft - kLabelLeft - 60, kLabelHeight},
      L"Database &Type: ");
  // Without a caption: the label before it says what is chosen.
  Add(ControlKind::Frame, L"fraDbOption", -1, {kFieldLeft, frameTop, 2 * optionWidth + 300, 555});
  Add(ControlKind::OptionButton, L"optDbType", kSetupOwnDb,
      {kFieldLeft + 150, optionTop, optionWidth, 270}, L"&Postrove")
      .SetToolTip(L"Select this option to use the Postrove database");
  Add(ControlKind::OptionButton, L"optDbType", kSetupSiblingDb,
      {kFieldLeft + 150 + optionWidth, optionTop, optionWidth, 270}, L"&Quillion")
      .SetToolTip(L"Select this option to use the Quillion database");
}

Control& frmSetup::AddLabel(int index, int row, const wchar_t* text) {
  return Add(ControlKind::Label, L"lblFieldLabel", index,
             LabelBox(kLabelLeft, row, kFieldLeft - kLabelLeft - 60), text);
}

Control& frmSetup::AddField(int index, Box place, const wchar_t* tip) {
  Control& field = Add(ControlKind::TextBox, L"txtSetup", index, place);
  field.SetTag(L"required");
  field.SetToolTip(tip);
  return field;
}

void frmSetup::AddAlert(int index, int left, int row, unsigned side) {
  Control& alert =
      Add(ControlKind::Label, L"lblAlert", index, LabelBox(left, row, kAlertWidth), L"Required");
  alert.SetForeColor(kRed);
  alert.SetVisible(false);
  alert.anchors = kTop | side;
}

void frmSetup::AddFolder(int index, int row, const wchar_t* label, const wchar_t* tip,
                         int browseIndex, const wchar_t* browseCaption) {
  AddLabel(index, row, label);
  const int top = RowTop(row);
  AddField(index, {kFieldLeft, top, kBrowseLeft - 60 - kFieldLeft, kFieldHeight}, tip).anchors =
      kLeft | kTop | kRight;
  // The picture hides the caption, which screen readers speak.
  Control& browse = Add(ControlKind::CommandButton, L"cmdBrowse", browseIndex,
                        {kBrowseLeft, top - 15, kBrowseWidth, kFieldHeight + 30}, browseCaption);
  browse.anchors = kTop | kRight;
  browse.icon = kFolderIcon;
  browse.SetToolTip(text::Replace(browseCaption, L"&", L""));
  AddAlert(index, kAlertLeft, row, kRight);
}

void frmSetup::DesignFolders() {
  AddFolder(kSetupDatabase, kDatabaseRow, L"&Database Location: ",
            L"Enter the path for the Postrove database location. Click the Folder button to browse "
            L"for folders.",
            kSetupBrowseDatabase, L"&Browse for a Database Location Folder");
  AddFolder(
      kSetupSettings, kSettingsRow, L"&Settings Location: ",
      L"Enter the path for the Settings Configuration file. Click the Folder button to browse "
      L"for folders.",
      kSetupBrowseSettings, L"Browse for a Settings Confi&guration File folder");
  AddFolder(kSetupServerFolder, kServerRow, L"Server &Folder: ",
            L"Enter the Server Folder for Project Emails. Click the Folder button to browse for "
            L"folders.",
            kSetupBrowseServerFolder, L"Browse for a Ser&ver Project Folder");
  AddFolder(kSetupEmailFolder, kEmailRow, L"&Email Sub-Folder: ",
            L"Enter the Sub-Folder project E-mails will be saved to. Click the Folder button to "
            L"browse for folders.",
            kSetupBrowseEmailFolder, L"Browse for an E-&mail Sub-Folder");
}

// The work-unit word, the delimiters and the example of what they make.
void frmSetup::DesignSubjectLine() {
  AddLabel(kSetupWorkType, kWorkTypeRow, L"&Work Unit Type: ");
  const int workTypeWidth = 2700;
  Control& workType = Add(ControlKind::ComboBox, L"cboWorkType", -1,
                          {kFieldLeft, RowTop(kWorkTypeRow), workTypeWidth, kFieldHeight});
  workType.SetTag(L"required");
  workType.SetToolTip(L"The word used by your company to organize files on the server.");
  AddAlert(kSetupWorkType, kFieldLeft + workTypeWidth + 75, kWorkTypeRow, kLeft);

  AddLabel(kSetupDelimiterLabel, kDelimiterRow, L"De&limiters:")
      .SetToolTip(L"The strings to be used to separate the segments of the E-mail Subject Line.");
  const int delimiterWidth = 525;
  const int gap = 75;
  int left = kFieldLeft;
  const auto addWord = [&](int index, int width, const wchar_t* text) -> Control& {
    Control& label = Add(ControlKind::Label, L"lblDelimLabel", index,
                         LabelBox(left, kDelimiterRow, width), text);
    label.SetTag(text);  // the word is put into it
    label.mnemonic = false;
    left += width + gap;
    return label;
  };
  const auto addDelimiter = [&](int index, const wchar_t* tip) {
    AddField(index, {left, RowTop(kDelimiterRow), delimiterWidth, kFieldHeight}, tip);
    left += delimiterWidth + gap;
  };
  addWord(0, 1800, L"<~Unit~ No.>");
  addDelimiter(kSetupProjectDelimiter,
               L"Enter the string to be used to separate the Project Number and Project Name on "
               L"the E-mail Subject Line.");
  Control& unit = addWord(1, 1400, L"<~Unit~>");
  unit.mnemonic = true;  // the key of the field behind it
  unit.choosesKey = true;
  addDelimiter(kSetupSubjectDelimiter,
               L"Enter the string to be used to separate the Project Name and Email Subject on "
               L"the E-mail Subject Line.");
  addWord(2, 900, L"<Subject>");
  // Both at the end of the row, in the order of their fields.
  AddAlert(kSetupProjectDelimiter, kAlertLeft - kAlertWidth - gap, kDelimiterRow, kRight);
  AddAlert(kSetupSubjectDelimiter, kAlertLeft, kDelimiterRow, kRight);

  const wchar_t* const sampleTip =
      L"This is the path & filename format that will be used to save your email.";
  AddLabel(kSetupExampleLabel, kEndRow, L"Example: ").SetToolTip(sampleTip);
  Control& sample = Add(ControlKind::Label, L"lblSavePathSample", -1,
                        {kFieldLeft, RowTop(kEndRow) + 60, kRowRight - kFieldLeft, kSampleHeight});
  sample.mnemonic = false;
  sample.multiLine = true;
  sample.anchors = kLeft | kTop | kRight;
  sample.SetToolTip(sampleTip);
}

void frmSetup::DesignFoot() {
  const int hintsTop = kFrameBottom + 150;
  const int siteTop = kHeight - kMargin - kLabelHeight;
  const int buttonsTop = siteTop - 195 - kButtonHeight;
  Control& hints = Add(ControlKind::RichTextBox, L"rtfFieldHints", -1,
                       {kMargin, hintsTop, kInnerRight - kMargin, buttonsTop - 180 - hintsTop});
  hints.anchors = kLeft | kTop | kRight | kBottom;
  hints.tabStop = false;
  hints.SetForeColor(kSystemInfoText);
  hints.SetBackColor(kSystemInfoBack);

  const int buttonWidth = 1260;
  Control& back =
      Add(ControlKind::CommandButton, L"cmdSetup", kSetupReturn,
          {kInnerRight - buttonWidth, buttonsTop, buttonWidth, kButtonHeight}, L"&Return");
  back.anchors = kRight | kBottom;
  back.isDefault = true;
  back.isCancel = true;
  back.SetToolTip(L"Return to the Postrove Form");
  Control& help = Add(ControlKind::CommandButton, L"cmdSetup", kSetupHelp,
                      {kMargin, buttonsTop, buttonWidth, kButtonHeight}, L"&Help");
  help.anchors = kLeft | kBottom;
  help.isHelp = true;
  help.SetToolTip(L"Show Help");

  const int siteWidth = 2700;
  const auto addSite = [&](int index, int left, const wchar_t* caption, const wchar_t* tip) {
    Control& site = Add(ControlKind::Label, L"lblWebSite", index,
                        {left, siteTop, siteWidth, kLabelHeight}, caption);
    site.anchors = kLeft | kBottom;
    site.link = true;
    site.SetForeColor(kSystemLink);
    site.SetToolTip(tip);
  };
  addSite(0, kMargin, kWebSite, L"Click here to go to the Postrove website");
  addSite(1, kMargin + siteWidth + 300, L"Find Out About Quillion",
          L"Click here to go to the Quillion website");
}

void frmSetup::Connect(std::weak_ptr<frmSetupEvents> events) {
  const auto raise = [events = std::move(events)](auto event, auto&&... arguments) {
    if (const auto listener = events.lock()) {
      (listener.get()->*event)(std::forward<decltype(arguments)>(arguments)...);
    }
  };
  using Events = frmSetupEvents;

  onEscape = [raise] { raise(&Events::frmSetupEvent_FormEscape); };
  for (const auto& item : Controls()) {
    Control& control = *item;
    const int index = control.Index();
    if (control.Name() == L"cmdBrowse") {
      control.onClick = [raise, index] { raise(&Events::frmSetupEvent_BrowseClicked, index); };
    } else if (control.Name() == L"cmdSetup") {
      control.onClick = [raise, index] { raise(&Events::frmSetupEvent_ButtonClicked, index); };
    } else if (control.Name() == L"optDbType") {
      control.onClick = [raise] { raise(&Events::frmSetupEvent_SetupDbTypeOptionClick); };
    } else if (control.Name() == L"lblWebSite") {
      control.onClick = [raise, &control] {
        raise(&Events::frmSetupEvent_SetupWebLabelClick, std::wstring(control.Text()));
      };
    } else if (control.Name() == L"txtSetup") {
      control.onChange = [raise, index] { raise(&Events::frmSetupEvent_SetupFieldChange, index); };
    }
  }
  const auto connectFocus = [&raise](Control& field, int index) {
    field.onGotFocus = [raise, index] { raise(&Events::frmSetupEvent_SetupFieldGotFocus, index); };
    field.onLostFocus = [raise, index] {
      raise(&Events::frmSetupEvent_SetupFieldLostFocus, index);
    };
  };
  for (int index = kSetupServerFolder; index < kSetupWorkType; ++index) {
    connectFocus(txtSetup(index), index);
  }
  connectFocus(cboWorkType, kSetupWorkType);

  // The text is copied: the handler may write the box, or destroy the form, while it reads it.
  cboWorkType.onChange = [raise, &combo = cboWorkType] {
    raise(&Events::frmSetupEvent_SetupListChange, std::wstring(combo.Text()));
  };
  cboWorkType.onClick = [raise] { raise(&Events::frmSetupEvent_SetupListClick); };
  cboWorkType.onKeyPress = [raise, &combo = cboWorkType](int& key) {
    raise(&Events::frmSetupEvent_SetupListKeyPress, key, std::wstring(combo.Text()));
  };
}

}  // namespace postrove::forms
