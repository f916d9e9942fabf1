#include "controller/clsPostrove.h"
#include "forms/kit/guards.h"
#include "forms/web_site.h"
#include "shared/text.h"

// The controller's handlers of the folder message dialog's events, and how it asks through it.
namespace postrove {

namespace {

// Without the ending of a message file.
std::size_t StemLength(std::wstring_view name) {
  constexpr std::wstring_view kEnding = L".msg";
  if (name.size() < kEnding.size()) return name.size();
  const std::size_t stem = name.size() - kEnding.size();
  return text::EqualsIgnoreCase(name.substr(stem), kEnding) ? stem : name.size();
}

}  // namespace

std::wstring clsPostrove::AskFolderMessage(const std::wstring& caption, const std::wstring& message,
                                           const std::wstring& name,
                                           const std::wstring& instructions) {
  const std::shared_ptr<forms::frmPostrove> saveDialog = frmPostroveEvent_;
  if (!saveDialog) return {};  // Outlook quit
  const auto form = std::make_shared<forms::frmFolderMessage>(weak_from_this());
  frmFolderMessageEvent_ = form;
  form->txtFolderMessage(0).SetText(message);
  form->txtFolderMessage(1).SetText(name);
  form->lblWarning().SetText(instructions);
  form->SetCaption(caption);

  folderMessageAnswered_ = false;
  {
    const forms::Lowered lowered(*forms_, saveDialog, lowered_);
    forms_->ShowModal(*form);
  }
  frmFolderMessageEvent_.reset();
  // Nobody waits for the answer once the save dialog is gone (Outlook quits, the program is ended).
  if (saveDialog->IsUnloaded()) return {};
  // A dialog that went without either button has not been answered; what the property holds then is
  // the answer to an earlier question.
  return folderMessageAnswered_ ? FolderMessageReturn : std::wstring();
}

void clsPostrove::frmFolderMessageEvent_ButtonClicked(int Index) {
  const std::shared_ptr<forms::frmFolderMessage> form = frmFolderMessageEvent_;
  if (!form) return;
  if (Index == 0) {
    FolderMessageReturn = form->txtFolderMessage(1).Text();
    folderMessageAnswered_ = true;
  } else if (Index == 1) {
    FolderMessageReturn.clear();
    folderMessageAnswered_ = true;
  }
  frmFolderMessageEvent_.reset();
  form->Unload();
}

void clsPostrove::frmFolderMessageEvent_ButtonMouseDown(int, int, int, float, float) {}
void clsPostrove::frmFolderMessageEvent_FolderMessageFieldChange(int) {}
void clsPostrove::frmFolderMessageEvent_FolderMessageFieldGotFocus(int) {}
void clsPostrove::frmFolderMessageEvent_FolderMessageFieldLostFocus(int) {}

void clsPostrove::frmFolderMessageEvent_FormActivate() {
  const std::shared_ptr<forms::frmFolderMessage> form = frmFolderMessageEvent_;
  if (!form) return;
  // What is typed replaces the name; the ending of a file stays.
  forms::Control& name = form->txtFolderMessage(1);
  forms_->SetFocus(name);
  name.Select(0, static_cast<int>(StemLength(name.Text())));
}

void clsPostrove::frmFolderMessageEvent_FormHelp() {
  Reporting(*utility_, L"clsPostrove", L"frmFolderMessageEvent_FormHelp()", [this] {
    utility_->OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp_files/messages.htm");
  });
}

}  // namespace postrove
