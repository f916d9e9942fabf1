#include <algorithm>

#include "controller/clsPostrove.h"
#include "controller/file_place.h"
#include "controller/letters.h"
#include "controller/message_changes.h"
#include "controller/raised.h"
#include "forms/kit/guards.h"
#include "outlook/IclsOutlook.h"
#include "outlook/office/ids.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBreak[] = L"\r\n";
constexpr wchar_t kAttachmentMark[] = L"(att)";
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

void clsPostrove::SaveButtonClicked() {
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  // Enter presses the button without leaving the name box.
  SaveAsName = form->txtSaveAsName.Text();

  const std::wstring errors = ValidateSave();
  if (form->IsUnloaded()) return;  // Outlook quit during a question
  if (!errors.empty()) {
    const std::wstring verb = clickedIsSent_ ? L"save" : L"send";
    utility_->ShowMessage(L"Postrove cannot " + verb + L" this E-mail... " + kBreak + errors,
                          clickedIsSent_ ? L"Cannot Save" : L"Cannot Send", MessageButtons::Ok,
                          MessageIcon::Information);
    return;
  }
  std::wstring folder = CleanFolder(form->txtSaveFolder.Text());
  form->txtSaveFolder.SetText(folder);
  if (!EnsureFolder(folder)) return;
  form->txtSaveFolder.SetText(folder);
  if (SaveAndSendMail()) form->Unload();
}

std::wstring clsPostrove::ValidateSave() {
  const std::shared_ptr<forms::frmPostrove> held = frmPostroveEvent_;
  forms::frmPostrove& form = *held;
  if (typedProject_) ResolveTypedProject();
  std::wstring errors;
  const auto require = [&errors](bool present, const std::wstring& message) {
    if (!present) errors += kBreak + message;
  };
  const std::wstring project = text::Replace(form.cboPostrove.Text(), L":", {});
  require(!text::IsBlank(project), L"You must select a " + WorkUnit + L".");
  const std::wstring folder = CleanFolder(form.txtSaveFolder.Text());
  require(!folder.empty(), L"You must select a Folder to save this E-mail in.");
  const std::wstring fault = FolderFault(folder);
  require(folder.empty() || fault.empty(), fault);
  // A name of which nothing can stand in a file name is none.
  const std::wstring name = form.txtSaveAsName.Text();
  require(!utility_->MakeFileName(std::wstring(WithoutMessageEnding(name))).empty(),
          L"You must select a Filename for this E-mail.");
  const std::wstring drive = DriveProblem(folder, L"Folder");
  require(drive.empty(), drive);
  return errors;
}

bool clsPostrove::FolderIsProposed(const forms::frmPostrove& form) const {
  return text::EqualsIgnoreCase(CleanFolder(form.txtSaveFolder.Text()),
                                CleanFolder(proposedFolder_));
}

void clsPostrove::ResolveTypedProject() {
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  TakeTypedProject();
  if (text::IsBlank(ProjectNumber) && text::IsBlank(ProjectName)) return;  // none
  ResolveSubjectProject();
  typedProject_ = false;  // asked about once
  // The folder of the project before is not that of the typed one; one that the user chose stays.
  if (!form->IsUnloaded() && FolderIsProposed(*form)) ProposeFolder(*form);
}

void clsPostrove::TakeTypedProject() {
  const std::wstring typed = frmPostroveEvent_->cboPostrove.Text();
  const std::size_t colon = typed.find(L':');
  if (colon == std::wstring::npos) {
    ProjectName = text::Trim(typed);
    ProjectNumber.clear();
  } else {
    ProjectName = typed.substr(0, colon);
    ProjectNumber = text::Trim(std::wstring_view(typed).substr(colon + 1));
  }
  Active = true;
  ProjectID = 0;
  ProjFilePath.clear();  // that of the project before
}

std::wstring clsPostrove::FileNameFor(const std::wstring& name, const std::wstring& folder,
                                      bool attachments) {
  const std::wstring ending =
      (attachments ? std::wstring(kAttachmentMark) : std::wstring()) + kMessageEnding;
  const std::size_t room = RoomForName(folder, ending);
  if (room == 0) {
    throw Error(kInvalidArgument, L"clsPostrove.SaveAndSendMail()",
                L"The folder " + text::Quoted(folder) +
                    L" leaves no room for a file name. Choose a folder with a shorter path.");
  }
  const std::wstring cleaned = utility_->MakeFileName(std::wstring(WithoutMessageEnding(name)),
                                                      std::min(kMaxNameUnits, room));
  if (cleaned.empty()) {
    throw Error(
        kInvalidArgument, L"clsPostrove.SaveAndSendMail()",
        L"Nothing of " + text::Quoted(name) + L" can stand in a file name. Choose another name.");
  }
  return cleaned + ending;
}

bool clsPostrove::ChooseFileName(FilePlace& place, const std::wstring& folder,
                                 std::wstring fileName) {
  while (!place.Claim(folder + fileName)) {
    const std::wstring path = folder + fileName;
    const std::optional<FileIdentity> existing = utility_->IdentifyFile(path);
    const bool readOnly = existing && existing->readOnly;
    const std::wstring accepted = AskFolderMessage(
        L"Existing File Name",
        std::wstring(L"The file ") + kBreak + text::Quoted(path) + kBreak + L" already exists." +
            (readOnly ? std::wstring(kBreak) + L" It is read-only." : std::wstring()),
        fileName,
        std::wstring(L"You may:") + kBreak + L"-Edit the name and click 'OK' to save the file." +
            kBreak + L"-Just click 'OK' to overwrite the existing file." + kBreak +
            L"-Click 'Cancel' to return to the Postrove form and modify the file name.");
    if (accepted.empty()) return false;
    if (accepted != fileName) {
      // It is asked about in its turn when it is taken as well.
      fileName = FileNameFor(accepted, folder, false);
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

bool clsPostrove::SaveAndSendMail() {
  bool handled = false;
  Reporting(*utility_, L"clsPostrove", L"SaveAndSendMail()", [&] {
    const std::shared_ptr<IclsOutlook> outlook = shared_.gOutlook;
    // Sending closes the message's window, and with it the tracker lets the item go.
    const office::MailItem mail = outlook ? outlook->MailItem() : office::MailItem();
    const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
    if (!mail || !form) {
      throw Error(kObjectNotSet, L"MailItem",
                  L"The message is no longer open. Open it again and click its button.");
    }
    if (mail.RecipientCount() == 0) {
      SendUnfiled(mail);
      handled = true;
      return;
    }
    std::wstring subject = mail.Subject();
    std::optional<FilledSubject> filled;
    if (subject.empty()) {
      subject = ProjectNumber + ProjDelim + ProjectName + SubjDelim + SaveAsName;
      filled.emplace(mail, subject);
    }
    const std::wstring folder = form->txtSaveFolder.Text();
    const office::Attachments attachments = mail.Attachments();
    const bool marked = attachments.Count() != 0;
    const bool unicodeFiles = HasUnicodeFiles(*outlook);
    const bool keepsLetters =
        KeepsLetters(mail, subject, marked ? attachments : office::Attachments(), unicodeFiles);
    if (form->IsUnloaded()) return;  // Outlook quit meanwhile
    FilePlace place(*utility_);
    if (!ChooseFileName(place, folder, FileNameFor(SaveAsName, folder, marked))) return;
    const bool plain = !unicodeFiles || (keepsLetters && utility_->InCodePage(place.Path()));
    WriteAndSend(mail, place, plain ? outlook->SaveType() : office::kSaveTypeMsgUnicode);
    if (filled) filled->Keep();
    handled = true;
  });
  return handled;
}

bool clsPostrove::KeepsLetters(const office::MailItem& mail, const std::wstring& subject,
                               const office::Attachments& attachments, bool unicodeFiles) {
  if (toldOfLetters_ || FitsCodePage(mail, subject, attachments, *utility_, unicodeFiles)) {
    return true;
  }
  if (!unicodeFiles) {
    toldOfLetters_ = true;
    utility_->ShowMessage(
        L"This E-mail has letters that this version of Outlook cannot keep in a message file on "
        L"this computer. In the subject, in names and in plain text the file will have question "
        L"marks in their place; in formatted (HTML) text they stay.",
        L"Letters Cannot Be Kept", MessageButtons::Ok, MessageIcon::Information);
  }
  return false;
}

void clsPostrove::WriteAndSend(const office::MailItem& mail, FilePlace& place,
                               std::int32_t saveType) {
  // Outlook may ask something itself meanwhile, and lets the user reach the dialog.
  const Raised writing(writing_);
  const forms::Lowered lowered(*forms_, frmPostroveEvent_, lowered_);
  const forms::WaitCursor wait(*forms_);
  const std::int32_t editor = clickedInspector_.EditorType();
  const bool html = editor == office::kEditorWord || editor == office::kEditorHtml;
  FootedBody footed(mail, html, place.Path());
  place.Write([&] { mail.SaveAs(place.Path(), saveType); });
  if (!clickedIsSent_) mail.Send();
  footed.Keep();
}

// Nothing is filed without recipients. Outlook refuses a new message and says why, unless
// something in it that reads along knows where to send it.
void clsPostrove::SendUnfiled(const office::MailItem& mail) {
  if (!clickedIsSent_) {
    const Raised writing(writing_);
    const forms::Lowered lowered(*forms_, frmPostroveEvent_, lowered_);
    mail.Send();
  }
  utility_->ShowMessage(clickedIsSent_
                            ? L"This E-mail has no recipients. It was not saved."
                            : L"This E-mail was sent, but it was not saved, because it had no "
                              L"recipients. To save it, open it in \"Sent Items\".",
                        L"Cannot Save", MessageButtons::Ok, MessageIcon::Information);
}

}  // namespace postrove
