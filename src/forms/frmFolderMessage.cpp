#include "forms/frmFolderMessage.h"

#include <utility>

namespace postrove::forms {
namespace {

constexpr int kWidth = 7200;
constexpr int kHeight = 4155;
constexpr int kInner = kWidth - 2 * kMargin;
constexpr int kButtonTop = kHeight - kMargin - kButtonHeight;
constexpr int kCancelLeft = kWidth - kMargin - kButtonWidth;

}  // namespace

frmFolderMessage::frmFolderMessage(std::weak_ptr<frmFolderMessageEvents> events)
    : DialogForm(L"frmFolderMessage", kWidth, kHeight, false),
      // Five lines: a long name between the first and the last line wraps.
      txtMessage(Add(ControlKind::TextBox, L"txtFolderMessage", 0, {kMargin, 210, kInner, 1170},
                     L"The Folder \"XX\\XXX\" Does not exist.", {},
                     {.tabStop = false, .multiLine = true, .border = false})),
      lblWarning(Add(ControlKind::Label, L"lblWarning", -1, {kMargin, 1440, kInner, 1440},
                     L"Click 'OK' to create a new folder. You may edit the folder name before "
                     L"creating it.",
                     {}, {.multiLine = true})),
      txtName(AddRequired(ControlKind::TextBox, L"txtFolderMessage", 1,
                          {kMargin, 2940, kInner, kFieldHeight}, L"", kLeft | kTop)),
      cmdOk(AddButton(L"cmdFolderMessage", 0, kCancelLeft - kButtonGap - kButtonWidth, kButtonTop,
                      kButtonWidth, L"OK", L"", {.isDefault = true})),
      cmdCancel(AddButton(L"cmdFolderMessage", 1, kCancelLeft, kButtonTop, kButtonWidth, L"Cancel",
                          L"", {.isCancel = true})),
      txtFolderMessage{&txtMessage, &txtName},
      cmdFolderMessage{&cmdOk, &cmdCancel} {
  SetCaption(L" Folder Not Found");
  txtMessage.SetLocked(true);
  txtMessage.SetForeColor(kSystemButtonText);
  txtMessage.SetBackColor(kSystemButtonFace);
  txtName.SetText(L"XXXXXXXXXX");

  using Events = frmFolderMessageEvents;
  const Raising<Events> raise(std::move(events));
  onActivate = raise.As(&Events::frmFolderMessageEvent_FormActivate);
  onHelp = raise.As(&Events::frmFolderMessageEvent_FormHelp);
  for (Control* const field : txtFolderMessage) {
    const int index = field->Index();
    field->onChange = raise.As(&Events::frmFolderMessageEvent_FolderMessageFieldChange, index);
    field->onGotFocus = raise.As(&Events::frmFolderMessageEvent_FolderMessageFieldGotFocus, index);
    field->onLostFocus =
        raise.As(&Events::frmFolderMessageEvent_FolderMessageFieldLostFocus, index);
  }
  for (Control* const button : cmdFolderMessage) {
    const int index = button->Index();
    button->onClick = raise.As(&Events::frmFolderMessageEvent_ButtonClicked, index);
    button->onMouseDown = [raise, index](int mouseButton, int shift, float x, float y) {
      raise(&Events::frmFolderMessageEvent_ButtonMouseDown, index, mouseButton, shift, x, y);
    };
  }
}

}  // namespace postrove::forms
