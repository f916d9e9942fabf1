#include "controller/folder_message_dialog.h"

#include "controller/handler.h"
#include "forms/web_site.h"
#include "shared/file_name.h"

namespace postrove {

namespace {
constexpr int kName = 1;  // of txtFolderMessage
}  // namespace

FolderMessageDialog::FolderMessageDialog(DialogStack& dialogs, clsSharedUtil& utility,
                                         const Texts& texts)
    : dialogs_(dialogs),
      utility_(utility),
      events_(Listening<forms::frmFolderMessageEvents>(*this)),
      form_(std::make_shared<forms::frmFolderMessage>(events_)) {
  form_->txtFolderMessage(0).SetText(texts.message);
  form_->txtFolderMessage(kName).SetText(texts.name);
  form_->lblWarning.SetText(texts.instructions);
  form_->SetCaption(texts.caption);
}

std::optional<std::wstring> FolderMessageDialog::Ask(DialogStack& dialogs, clsSharedUtil& utility,
                                                     const Texts& texts) {
  if (dialogs.IsOver()) return std::nullopt;
  FolderMessageDialog dialog(dialogs, utility, texts);
  dialogs.ShowAbove(dialog.form_);
  // Nobody waits for the answer once the save dialog is gone.
  if (dialogs.IsOver() || dialog.FolderMessageReturn.empty()) return std::nullopt;
  return dialog.FolderMessageReturn;
}

void FolderMessageDialog::frmFolderMessageEvent_ButtonClicked(int Index) {
  if (Index == 0) FolderMessageReturn = form_->txtFolderMessage(kName).Text();
  form_->Unload();
}

void FolderMessageDialog::frmFolderMessageEvent_FormActivate() {
  // What is typed replaces the name; the ending of a file stays.
  forms::Control& name = form_->txtFolderMessage(kName);
  dialogs_.Host().SetFocus(name);
  name.Select(0, static_cast<int>(WithoutMessageEnding(name.Text()).size()));
}

void FolderMessageDialog::frmFolderMessageEvent_FormHelp() {
  Handle(utility_, *form_, L"frmFolderMessageEvent_FormHelp()", [this] {
    utility_.OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp_files/messages.htm");
  });
}

}  // namespace postrove
