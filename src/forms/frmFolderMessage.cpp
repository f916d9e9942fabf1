#include "forms/frmFolderMessage.h"

#include <utility>

namespace postrove::forms {
namespace {

constexpr int kWidth = 7200;
constexpr int kHeight = 4155;
constexpr int kMargin = 210;
constexpr int kInner = kWidth - 2 * kMargin;
constexpr int kButtonWidth = 1260;
constexpr int kButtonHeight = 390;
constexpr int kButtonTop = kHeight - kMargin - kButtonHeight;

}  // namespace

frmFolderMessage::frmFolderMessage(std::weak_ptr<frmFolderMessageEvents> events)
    : Form(L"frmFolderMessage", kWidth, kHeight, false) {
  SetCaption(L" Folder Not Found");

  // Five lines: a long name between the first and the last line wraps.
  Control& message = Add(ControlKind::TextBox, L"txtFolderMessage", 0, {kMargin, 210, kInner, 1170},
                         L"The Folder \"XX\\XXX\" Does not exist.");
  message.multiLine = true;
  message.border = false;
  message.tabStop = false;
  message.SetLocked(true);
  message.SetForeColor(kSystemButtonText);
  message.SetBackColor(kSystemButtonFace);
  // Before the name, which it describes.
  Add(ControlKind::Label, L"lblWarning", -1, {kMargin, 1440, kInner, 1440},
      L"Click 'OK' to create a new folder. You may edit the folder name before creating it.")
      .multiLine = true;
  Add(ControlKind::TextBox, L"txtFolderMessage", 1, {kMargin, 2940, kInner, 345}, L"XXXXXXXXXX")
      .SetTag(L"required");
  const int cancelLeft = kWidth - kMargin - kButtonWidth;
  Add(ControlKind::CommandButton, L"cmdFolderMessage", 0,
      {cancelLeft - 105 - kButtonWidth, kButtonTop, kButtonWidth, kButtonHeight}, L"OK")
      .isDefault = true;
  Add(ControlKind::CommandButton, L"cmdFolderMessage", 1,
      {cancelLeft, kButtonTop, kButtonWidth, kButtonHeight}, L"Cancel")
      .isCancel = true;

  const auto raise = [events = std::move(events)](auto event, auto... arguments) {
    if (const auto listener = events.lock()) (listener.get()->*event)(arguments...);
  };
  using Events = frmFolderMessageEvents;
  onActivate = [raise] { raise(&Events::frmFolderMessageEvent_FormActivate); };
  onHelp = [raise] { raise(&Events::frmFolderMessageEvent_FormHelp); };
  for (const int index : {0, 1}) {
    Control& field = txtFolderMessage(index);
    field.onChange = [raise, index] {
      raise(&Events::frmFolderMessageEvent_FolderMessageFieldChange, index);
    };
    field.onGotFocus = [raise, index] {
      raise(&Events::frmFolderMessageEvent_FolderMessageFieldGotFocus, index);
    };
    field.onLostFocus = [raise, index] {
      raise(&Events::frmFolderMessageEvent_FolderMessageFieldLostFocus, index);
    };
    Control& button = cmdFolderMessage(index);
    button.onClick = [raise, index] { raise(&Events::frmFolderMessageEvent_ButtonClicked, index); };
    button.onMouseDown = [raise, index](int mouseButton, int shift, float x, float y) {
      raise(&Events::frmFolderMessageEvent_ButtonMouseDown, index, mouseButton, shift, x, y);
    };
  }
}

}  // namespace postrove::forms
