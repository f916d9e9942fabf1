#include <utility>

#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "data/label_places.h"
#include "outlook/IclsOutlook.h"
#include "outlook/office/ids.h"
#include "shared/text.h"

namespace postrove {

namespace {

std::wstring VersionText(const ProductVersion& version) {
  return text::FromNumber(version.major) + L"." + text::FromNumber(version.minor) + L"." +
         text::FromNumber(version.revision);
}

}  // namespace

void clsPostrove::mcbPostroveMenuButton_Click() {
  if (clicked_) {  // a dialog is modal to its own mail window only, and so is a message box
    if (frmPostroveEvent_) forms_->BringToFront(*frmPostroveEvent_);
    return;
  }
  // A button that is listened to since the middle of a click can hear of that click as well.
  if (std::exchange(buttonIsNew_, false) && forms_->InputTime() == clickedInput_) return;
  const Raised clicked(clicked_);
  const bool shown = Reporting(*utility_, L"clsPostrove", L"PostroveMenuButton_Click()", [this] {
    ReadMissingSettings();
    GetProjectList();
    // Not kept here: Outlook can quit while the dialog is open.
    const std::wstring subject = TakeActiveMessage().Subject();
    const auto form = std::make_shared<forms::frmPostrove>(weak_from_this());
    frmPostroveEvent_ = form;
    PrepareFrom(subject);
    if (form->IsUnloaded()) return;  // Outlook quit during a question
    FillSaveLabels(*form);
    ArrangeForm(*form);
    {
      const Raised filling(filling_);
      FillProjectCombo(form->cboPostrove);
      // A subject without a number can still name a listed project: the one shown is the one meant.
      const int named = form->cboPostrove.ListIndex();
      if (ProjectNumber.empty() && named >= 0) SelectProject(named);
      FillSaveFields(*form);
    }
    forms_->ShowModal(*form);
  });
  // What a failed click left behind must not reach the next message.
  if (!shown) ClearProject();
  frmPostroveEvent_.reset();
  clickedInspector_ = {};
  typedProject_ = false;
  toldOfLetters_ = false;
  clickedInput_ = forms_->InputTime();
}

office::MailItem clsPostrove::TakeActiveMessage() {
  const std::shared_ptr<IclsOutlook> outlook = shared_.gOutlook;
  if (!outlook) throw Error(kObjectNotSet, L"gOutlook", L"Outlook is closing.");
  const office::Inspector inspector = outlook->App().ActiveInspector();
  if (!inspector) {
    throw Error(kObjectNotSet, L"ActiveInspector", L"No message window is open.");
  }
  const office::Item item = inspector.CurrentItem();
  if (item.Class() != office::kClassMail) {
    throw Error(kTypeMismatch, L"CurrentItem",
                L"The active window does not show an e-mail message. Click the button in the "
                L"window of the message that you want to save.");
  }
  const office::MailItem mail = office::MailItem::From(item);
  outlook->SetMailItem(mail);
  clickedInspector_ = inspector;
  // Asked of this very item: ItemIsSent belongs to the window opened last.
  clickedIsSent_ = item.Sent();
  return mail;
}

void clsPostrove::PrepareFrom(std::wstring subject) {
  if (subject.empty()) return;
  if (!useQuillion_ || !ParseSubject(subject)) SaveAsName = subject;
  if (!ProjectNumber.empty()) ResolveSubjectProject();
}

void clsPostrove::FillSaveLabels(forms::frmPostrove& form) const {
  form.lblFormTitle.SetText(L"Postrove " + WorkUnit + L" EMail and File Location");
  form.lblProjectLabel.SetText(WorkUnit + L": ");
  form.lblFolderLabel.SetText(
      Label(labels::kSaveDialog, labels::kFolderCaption, form.lblFolderLabel.Text()));
  form.lblNameLabel.SetText(
      Label(labels::kSaveDialog, labels::kNameCaption, form.lblNameLabel.Text()));
}

void clsPostrove::ArrangeByMode(forms::frmPostrove& form) const {
  const auto moveTo = [](forms::Control& label, int left, int width) {
    forms::Box place = label.Place();
    place.left = left;
    place.width = width;
    label.SetPlace(place);
  };
  // Projects are added in Quillion where its data is shared. Title and link then stand in the
  // column of the fields, which tells at a glance whose projects these are.
  form.cmdPostrove(forms::kAddProjectButton).SetVisible(!useQuillion_);
  const int margin = form.lblProjectLabel.Place().left;
  const int left = useQuillion_ ? form.cboPostrove.Place().left : margin;
  const forms::Box title = form.lblFormTitle.Place();
  moveTo(form.lblFormTitle, left, title.left + title.width - left);
  moveTo(form.lblWebSite, left, form.lblWebSite.Place().width);
}

void clsPostrove::ArrangeForm(forms::frmPostrove& form) const {
  ArrangeByMode(form);

  // A label with the tag of the required fields marks one of them.
  for (const auto& control : form.Controls()) {
    if (control->Kind() != forms::ControlKind::Label || control->Tag() != L"required") continue;
    control->SetForeColor(forms::kRed);
    control->SetVisible(false);
    control->SetText(L"Required");
  }

  if (clickedIsSent_) form.cmdPostrove(forms::kMainButton).SetText(L"Save");

  form.lblVersion.SetText(VersionText(version_));
  forms::Box place = form.lblVersion.Place();
  place.top = form.Height() - place.height;
  form.lblVersion.SetPlace(place);
}

}  // namespace postrove
