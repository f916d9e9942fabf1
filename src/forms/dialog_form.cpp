#include "forms/dialog_form.h"

#include "forms/icons.h"

namespace postrove::forms {

namespace {
constexpr unsigned kWide = kLeft | kTop | kRight;
constexpr int kTextTop = 60;  // of a label's text, on the line of its field's
}  // namespace

Control& DialogForm::AddTitle(const wchar_t* text, bool mnemonic) {
  return Add(ControlKind::Label, L"lblFormTitle", -1, {kMargin, 195, InnerRight() - kMargin, 330},
             text, {}, {.anchors = kWide, .bold = true, .mnemonic = mnemonic, .fontPoints = 12});
}

Control& DialogForm::AddLabel(const wchar_t* name, int index, int left, int fieldTop, int width,
                              const wchar_t* text, const wchar_t* tip, const Design& design) {
  return Add(ControlKind::Label, name, index, {left, fieldTop + kTextTop, width, kLabelHeight},
             text, tip, design);
}

Control& DialogForm::AddRequired(ControlKind kind, const wchar_t* name, int index, Box place,
                                 const wchar_t* tip, unsigned anchors) {
  Control& field = Add(kind, name, index, place, {}, tip, {.anchors = anchors});
  field.SetTag(L"required");
  return field;
}

Control& DialogForm::AddBrowse(const wchar_t* name, int index, int left, int fieldTop,
                               const wchar_t* caption, const std::wstring& tip, bool choosesKey) {
  return Add(ControlKind::CommandButton, name, index,
             {left, fieldTop - 15, kBrowseWidth, kFieldHeight + 30}, caption, tip,
             {.anchors = kTop | kRight, .choosesKey = choosesKey, .icon = kFolderIcon});
}

Control& DialogForm::AddAlert(int index, int left, int fieldTop, unsigned anchors,
                              const wchar_t* text) {
  return AddLabel(L"lblAlert", index, left, fieldTop, kAlertWidth, text, L"", {.anchors = anchors});
}

Control& DialogForm::AddHints(int top, int height) {
  Control& hints = Add(ControlKind::RichTextBox, L"rtfFieldHints", -1,
                       {kMargin, top, InnerRight() - kMargin, height}, {}, {},
                       {.anchors = kWide | kBottom, .tabStop = false});
  hints.SetForeColor(kSystemInfoText);
  hints.SetBackColor(kSystemInfoBack);
  return hints;
}

Control& DialogForm::AddButton(const wchar_t* name, int index, int left, int top, int width,
                               const wchar_t* caption, const wchar_t* tip, const Design& design) {
  return Add(ControlKind::CommandButton, name, index, {left, top, width, kButtonHeight}, caption,
             tip, design);
}

Control& DialogForm::AddWebSite(int index, int left, int top, int width, const wchar_t* caption,
                                const wchar_t* tip) {
  Control& site = Add(ControlKind::Label, L"lblWebSite", index, {left, top, width, kLabelHeight},
                      caption, tip, {.anchors = kLeft | kBottom, .link = true});
  site.SetForeColor(kSystemLink);
  return site;
}

}  // namespace postrove::forms
