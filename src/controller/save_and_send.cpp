#include <algorithm>

#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "forms/kit/guards.h"
#include "forms/messages.h"
#include "forms/web_site.h"
#include "outlook/IclsOutlook.h"
#include "outlook/office/ids.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBreak[] = L"\r\n";
constexpr wchar_t kExtension[] = L".msg";
constexpr wchar_t kAttachmentMark[] = L"(att)";
constexpr wchar_t kFooter[] = L"Save important emails with ";

// The subject that an empty one is filled with; empty again unless the message was filed, so that
// another try can name another project.
class FilledSubject {
 public:
  FilledSubject(const office::MailItem& mail, const std::wstring& subject)
      : mail_(mail), filled_(mail.Subject().empty()) {
    if (filled_) mail_.SetSubject(subject);
  }
  FilledSubject(const FilledSubject&) = delete;
  FilledSubject& operator=(const FilledSubject&) = delete;
  ~FilledSubject() {
    if (!filled_) return;
    try {
      mail_.SetSubject({});
    } catch (...) {
      // The message may be gone.
    }
  }

  void Keep() { filled_ = false; }

 private:
  const office::MailItem mail_;
  bool filled_;
};

// The place of a file that is about to be written. A file that the user agreed to write over is out
// of the way under another name until the new one is there; whatever fails before, the place is
// then as it was. Throws Error when a file is there that nobody agreed about, or that cannot be
// moved.
class FilePlace {
 public:
  FilePlace(clsSharedUtil& utility, const std::wstring& path, bool overwrite)
      : utility_(utility), path_(path) {
    if (!overwrite) {
      if (utility_.FileSize(path) < 0) return;
      // Another user may have filed it meanwhile.
      throw Error(kPathFileAccess, L"clsPostrove.SaveAndSendMail()",
                  L"The file " + text::Quoted(path) + L" already exists.");
    }
    // No longer than the path itself, which may have no room left.
    const std::wstring stem = path.substr(0, path.rfind(L'.')) + L".old";
    std::wstring aside = stem;
    for (int n = 2; utility_.FileSize(aside) >= 0; ++n) aside = stem + text::FromNumber(n);
    utility_.RenameFile(path, aside);
    aside_ = aside;
  }
  FilePlace(const FilePlace&) = delete;
  FilePlace& operator=(const FilePlace&) = delete;
  ~FilePlace() {
    if (kept_) return;
    try {
      // Half a message must not pass for a filed one.
      if (utility_.FileSize(path_) >= 0) utility_.RemoveFile(path_);
      if (!aside_.empty()) utility_.RenameFile(aside_, path_);
    } catch (...) {
      if (aside_.empty()) return;
      utility_.ShowMessage(L"The file " + text::Quoted(path_) +
                               L" could not be put back. What it held is now in " +
                               text::Quoted(aside_) + L".",
                           L"Postrove", MessageButtons::Ok, MessageIcon::Information);
    }
  }

  void Keep() {
    kept_ = true;
    if (aside_.empty()) return;
    try {
      utility_.RemoveFile(aside_);
    } catch (const Error&) {
      // The new file is there; one too many harms nobody.
    }
  }

 private:
  clsSharedUtil& utility_;
  const std::wstring path_;
  std::wstring aside_;
  bool kept_ = false;
};

// The message with the footer for as long as it is being filed: what was there before is put back
// unless the filing succeeded, so that another try does not add a second footer.
class FootedBody {
 public:
  FootedBody(const office::MailItem& mail, bool html, const std::wstring& path)
      : mail_(mail), html_(html), before_(html ? mail.HtmlBody() : mail.Body()) {
    if (html_) {
      mail_.SetHtmlBody(WithHtmlFooter(before_, path));
    } else {
      mail_.SetBody(before_ + kBreak + path + kBreak + kFooter + forms::kWebSite + kBreak);
    }
  }

  FootedBody(const FootedBody&) = delete;
  FootedBody& operator=(const FootedBody&) = delete;

  ~FootedBody() {
    if (kept_) return;
    try {
      if (html_) {
        mail_.SetHtmlBody(before_);
      } else {
        mail_.SetBody(before_);
      }
    } catch (...) {
      // The message may be gone; there is nothing left to put back.
    }
  }

  void Keep() { kept_ = true; }

 private:
  static std::wstring WithHtmlFooter(const std::wstring& html, const std::wstring& path) {
    const std::wstring site = text::EscapeHtml(forms::kWebSite);
    const std::wstring footer = L"<DIV><P>" + text::EscapeHtml(path) + L"<BR>" + kFooter +
                                L"<A HREF=\"" + site + L"\">" + site + L"</A></P></DIV>";
    const std::wstring end = L"</BODY>";
    // A body without an end tag still gets its footer.
    if (text::FindIgnoreCase(html, end) == std::wstring::npos) return html + footer;
    return text::ReplaceIgnoreCase(html, end, footer + end);
  }

  const office::MailItem mail_;
  const bool html_;
  const std::wstring before_;
  bool kept_ = false;
};

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
  std::wstring folder = text::NormaliseFolder(text::Trim(form->txtSaveFolder.Text()));
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
  require(!form.cboPostrove.Text().empty(), L"You must select a " + WorkUnit + L".");
  const std::wstring folder = text::Trim(form.txtSaveFolder.Text());
  require(!folder.empty(), L"You must select a Folder to save this E-mail in.");
  require(folder.empty() || text::IsRootedPath(folder), forms::kRootedFolder);
  // A name of which nothing can stand in a file name is none.
  require(!utility_->MakeFileName(form.txtSaveAsName.Text()).empty(),
          L"You must select a Filename for this E-mail.");
  const std::wstring drive = DriveProblem(folder, L"Folder");
  require(drive.empty(), drive);
  return errors;
}

void clsPostrove::ResolveTypedProject() {
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  TakeTypedProject();
  ResolveSubjectProject();
  typedProject_ = false;  // asked about once
  if (form->IsUnloaded()) return;
  // The folder of the project before is not that of the typed one; one that the user chose stays.
  const std::wstring shown = text::NormaliseFolder(text::Trim(form->txtSaveFolder.Text()));
  if (text::EqualsIgnoreCase(shown, proposedFolder_)) ProposeFolder(*form);
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
      (attachments ? std::wstring(kAttachmentMark) : std::wstring()) + kExtension;
  const std::size_t taken = text::ToUtf16(folder).size() + ending.size();
  if (taken >= kMaxPath) {
    throw Error(kPathFileAccess, L"clsPostrove.SaveAndSendMail()",
                L"The folder " + text::Quoted(folder) +
                    L" leaves no room for a file name. Choose a folder with a shorter path.");
  }
  const std::wstring cleaned =
      utility_->MakeFileName(name, std::min(kMaxNameUnits, kMaxPath - taken));
  if (cleaned.empty()) {
    throw Error(
        kPathFileAccess, L"clsPostrove.SaveAndSendMail()",
        L"Nothing of " + text::Quoted(name) + L" can stand in a file name. Choose another name.");
  }
  return cleaned + ending;
}

bool clsPostrove::ChooseFileName(const std::wstring& folder, std::wstring& fileName,
                                 bool& overwrite) {
  while (utility_->FileExists(folder, fileName)) {
    const std::wstring accepted = AskFolderMessage(
        L"Existing File Name",
        std::wstring(L"The file ") + kBreak + text::Quoted(folder + fileName) + kBreak +
            L" already exists.",
        fileName,
        std::wstring(L"You may:") + kBreak + L"-Edit the name and click 'OK' to save the file." +
            kBreak + L"-Just click 'OK' to overwrite the existing file." + kBreak +
            L"-Click 'Cancel' to return to the Postrove form and modify the file name.");
    if (accepted.empty()) return false;
    overwrite = accepted == fileName;
    if (overwrite) return true;
    std::wstring stem = text::Trim(accepted);
    const std::wstring_view extension = kExtension;
    if (stem.size() >= extension.size() &&
        text::EqualsIgnoreCase(std::wstring_view(stem).substr(stem.size() - extension.size()),
                               extension)) {
      stem.resize(stem.size() - extension.size());
    }
    // Another name: it is asked about in its turn when it is taken as well.
    fileName = FileNameFor(stem, folder, false);
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
    FilledSubject subject(mail, ProjectNumber + ProjDelim + ProjectName + SubjDelim + SaveAsName);
    const std::wstring folder = form->txtSaveFolder.Text();
    const bool attachments = mail.AttachmentCount() != 0;
    if (form->IsUnloaded()) return;  // Outlook quit meanwhile
    std::wstring fileName = FileNameFor(SaveAsName, folder, attachments);
    bool overwrite = false;
    if (!ChooseFileName(folder, fileName, overwrite)) return;
    WriteAndSend(mail, folder + fileName, overwrite, outlook->SaveType());
    subject.Keep();
    handled = true;
  });
  return handled;
}

void clsPostrove::WriteAndSend(const office::MailItem& mail, const std::wstring& path,
                               bool overwrite, std::int32_t saveType) {
  // Outlook may ask something itself meanwhile, and lets the user reach the dialog.
  const Raised writing(writing_);
  const forms::Lowered lowered(*forms_, frmPostroveEvent_, lowered_);
  if (mail.RecipientCount() == 0) {
    if (!clickedIsSent_) mail.Send();  // Outlook refuses it and says why
    utility_->ShowMessage(L"This E-mail has no recipients. It was not saved.", L"Cannot Save",
                          MessageButtons::Ok, MessageIcon::Information);
    return;
  }
  const forms::WaitCursor wait(*forms_);
  const std::int32_t editor = clickedInspector_.EditorType();
  FootedBody footed(mail, editor == office::kEditorWord || editor == office::kEditorHtml, path);
  FilePlace place(*utility_, path, overwrite);
  mail.SaveAs(path, saveType);
  if (utility_->FileSize(path) <= 0) {
    throw Error(kPathFileAccess, L"SaveAs",
                L"Outlook did not write the file " + text::Quoted(path) + L".");
  }
  place.Keep();
  if (!clickedIsSent_) mail.Send();
  footed.Keep();
}

}  // namespace postrove
