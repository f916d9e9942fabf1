#include "controller/filing.h"

#include "outlook/IclsOutlook.h"
#include "outlook/office/ids.h"
#include "shared/error.h"

namespace postrove {

Filing TakeActiveMessage(const SharedObjects& shared) {
  const std::shared_ptr<IclsOutlook> outlook = shared.gOutlook;
  if (!outlook) throw Error(kObjectNotSet, L"gOutlook", L"Outlook is closing.");
  Filing filing;
  filing.inspector = outlook->App().ActiveInspector();
  if (!filing.inspector) {
    throw Error(kObjectNotSet, L"ActiveInspector", L"No message window is open.");
  }
  const office::Item item = filing.inspector.CurrentItem();
  if (item.Class() != office::kClassMail) {
    throw Error(kTypeMismatch, L"CurrentItem",
                L"The active window does not show an e-mail message. Click the button in the "
                L"window of the message that you want to save.");
  }
  const office::MailItem mail = office::MailItem::From(item);
  outlook->SetMailItem(mail);
  filing.sent = item.Sent();
  filing.subject = mail.Subject();
  return filing;
}

}  // namespace postrove
