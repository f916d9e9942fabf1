#include "controller/save_and_send.h"

#include <optional>

#include "controller/folder_message_dialog.h"
#include "controller/letters.h"
#include "controller/message_changes.h"
#include "controller/message_name.h"
#include "forms/kit/wait_cursor.h"
#include "outlook/IclsOutlook.h"
#include "outlook/office/ids.h"
#include "shared/raised.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBreak[] = L"\r\n";
constexpr int kFirstWithUnicodeFiles = 11;  // Outlook 2003

// A version that cannot be told counts as one that has no such files.
bool HasUnicodeFiles(const IclsOutlook& outlook) {
  try {
    return text::LeadingNumber(outlook.App().Version()) >= kFirstWithUnicodeFiles;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

bool SaveAndSend::SaveAndSendMail(const std::wstring& folder, const Settings& settings) {
  bool handled = false;
  Reporting(utility_, L"clsPostrove", L"SaveAndSendMail()", [&] {
    const std::shared_ptr<IclsOutlook> outlook = shared_.gOutlook;
    // Sending closes the message's window, and with it the tracker lets the item go.
    const office::MailItem mail = outlook ? outlook->MailItem() : office::MailItem();
    if (!mail || dialogs_.IsOver()) {
      throw Error(kObjectNotSet, L"MailItem",
                  L"The message is no longer open. Open it again and click its button.");
    }
    if (mail.RecipientCount() == 0) {
      SendUnfiled(mail);
      handled = true;
    } else {
      handled = File(mail, *outlook, folder, settings);
    }
  });
  return handled;
}

bool SaveAndSend::File(const office::MailItem& mail, const IclsOutlook& outlook,
                       const std::wstring& folder, const Settings& settings) {
  std::wstring subject = mail.Subject();
  std::optional<FilledSubject> filled;
  if (subject.empty()) {
    const Project& project = filing_.project;
    subject = project.number + settings.ProjDelim + project.name + settings.SubjDelim +
              filing_.saveAsName;
    filled.emplace(mail, subject);
  }
  const office::Attachments attachments = mail.Attachments();
  const bool marked = attachments.Count() != 0;
  const bool unicodeFiles = HasUnicodeFiles(outlook);
  const bool keepsLetters =
      KeepsLetters(mail, subject, marked ? attachments : office::Attachments(), unicodeFiles);
  if (dialogs_.IsOver()) return false;  // Outlook quit meanwhile
  FilePlace place(utility_);
  if (!ChooseFileName(place, folder, MessageFileName(filing_.saveAsName, folder, marked))) {
    return false;
  }
  const bool plain = !unicodeFiles || (keepsLetters && utility_.InCodePage(place.Path()));
  WriteAndSend(mail, place, plain ? outlook.SaveType() : office::kSaveTypeMsgUnicode);
  if (filled) filled->Keep();
  return true;
}

// Takes the place of a file, with the question about one that exists. False when the user
// cancelled.
bool SaveAndSend::ChooseFileName(FilePlace& place, const std::wstring& folder,
                                 std::wstring fileName) {
  while (!place.Claim(folder + fileName)) {
    const std::wstring path = folder + fileName;
    const std::optional<FileIdentity> existing = utility_.IdentifyFile(path);
    const bool readOnly = existing && existing->readOnly;
    const std::optional<std::wstring> accepted = FolderMessageDialog::Ask(
        dialogs_, utility_,
        {L"Existing File Name",
         std::wstring(L"The file ") + kBreak + text::Quoted(path) + kBreak + L" already exists." +
             (readOnly ? std::wstring(kBreak) + L" It is read-only." : std::wstring()),
         fileName,
         std::wstring(L"You may:") + kBreak + L"-Edit the name and click 'OK' to save the file." +
             kBreak + L"-Just click 'OK' to overwrite the existing file." + kBreak +
             L"-Click 'Cancel' to return to the Postrove form and modify the file name."});
    if (!accepted) return false;
    if (*accepted != fileName) {
      // It is asked about in its turn when it is taken as well.
      fileName = MessageFileName(*accepted, folder, false);
    } else if (existing) {
      if (place.Replace(path, *existing)) return true;
    } else if (place.Claim(path)) {
      return true;  // gone meanwhile
    } else {
      throw Error(
          kInvalidArgument, L"clsPostrove.SaveAndSendMail()",
          L"What is at " + text::Quoted(path) + L" cannot be written over. Choose another name.");
    }
  }
  return true;
}

bool SaveAndSend::KeepsLetters(const office::MailItem& mail, const std::wstring& subject,
                               const office::Attachments& attachments, bool unicodeFiles) {
  if (filing_.toldOfLetters || FitsCodePage(mail, subject, attachments, utility_, unicodeFiles)) {
    return true;
  }
  if (!unicodeFiles) {
    filing_.toldOfLetters = true;
    utility_.ShowMessage(
        L"This E-mail has letters that this version of Outlook cannot keep in a message file on "
        L"this computer. In the subject, in names and in plain text the file will have question "
        L"marks in their place; in formatted (HTML) text they stay.",
        L"Letters Cannot Be Kept", MessageButtons::Ok, MessageIcon::Information);
  }
  return false;
}

void SaveAndSend::WriteAndSend(const office::MailItem& mail, FilePlace& place,
                               std::int32_t saveType) {
  // Outlook may ask something itself meanwhile, and lets the user reach the dialog.
  const Raised writing(writing_);
  const DialogStack::Lowered lowered(dialogs_);
  const forms::WaitCursor wait(dialogs_.Host());
  std::optional<FootedBody> footed;
  place.Write([&] {  // which tells what stays of the place, whatever fails in here
    const std::int32_t editor = filing_.inspector.EditorType();
    const bool html = editor == office::kEditorWord || editor == office::kEditorHtml;
    footed.emplace(mail, html, place.Path());
    mail.SaveAs(place.Path(), saveType);
  });
  if (!filing_.sent) mail.Send();
  footed->Keep();
}

// Nothing is filed without recipients. Outlook refuses a new message and says why, unless
// something in it that reads along knows where to send it.
void SaveAndSend::SendUnfiled(const office::MailItem& mail) {
  if (!filing_.sent) {
    const Raised writing(writing_);
    const DialogStack::Lowered lowered(dialogs_);
    mail.Send();
  }
  utility_.ShowMessage(filing_.sent
                           ? L"This E-mail has no recipients. It was not saved."
                           : L"This E-mail was sent, but it was not saved, because it had no "
                             L"recipients. To save it, open it in \"Sent Items\".",
                       L"Cannot Save", MessageButtons::Ok, MessageIcon::Information);
}

}  // namespace postrove
