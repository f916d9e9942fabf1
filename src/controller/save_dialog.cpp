#include "controller/save_dialog.h"

#include <utility>

#include "controller/drive_check.h"
#include "controller/folder_questions.h"
#include "controller/handler.h"
#include "controller/save_and_send.h"
#include "controller/save_dialog_look.h"
#include "controller/setup_dialog.h"
#include "controller/type_ahead.h"
#include "data/label_places.h"
#include "forms/web_site.h"
#include "shared/file_name.h"
#include "shared/text.h"

namespace postrove {

namespace {
constexpr int kEnter = 13;
constexpr wchar_t kBreak[] = L"\r\n";
}  // namespace

SaveDialog::SaveDialog(const SharedObjects& shared, OfficeData& data, clsSharedUtil& utility,
                       forms::FormHost& forms, Filing filing)
    : shared_(shared),
      data_(data),
      utility_(utility),
      filing_(std::move(filing)),
      events_(Listening<forms::frmPostroveEvents>(*this)),
      form_(std::make_shared<forms::frmPostrove>(events_)),
      dialogs_(forms, form_),
      project_(data, utility, dialogs_, filing_, *form_) {}

void SaveDialog::Show(const ProductVersion& version) {
  if (!dialogs_.IsOver()) project_.ProposeFromSubject();
  if (dialogs_.IsOver()) return;  // Outlook quit during a message or a question
  FillSaveLabels(*form_, data_.settings, data_.labels);
  ArrangeByMode(*form_, data_.settings.UseQuillion());
  ArrangeForm(*form_, filing_.sent, version);
  project_.FillProjects();
  dialogs_.ShowSaveDialog();
}

void SaveDialog::Close() {
  filing_.inspector = {};
  writing_ = false;
  dialogs_.Close();
}

void SaveDialog::frmPostroveEvent_FormActivate() {
  Handle(utility_, *form_, L"frmPostroveEvent_FormActivate()",
         [this] { dialogs_.SaveDialogActivated(); });
}

void SaveDialog::frmPostroveEvent_FormUnload(bool& Cancel) { Cancel = writing_; }

void SaveDialog::frmPostroveEvent_ButtonClicked(int Index) {
  Handle(utility_, *form_, L"frmPostroveEvent_ButtonClicked()", [&] {
    if (writing_) return;  // Outlook handles messages while it writes and sends
    switch (Index) {
      case forms::kMainButton:
        return SaveButtonClicked();
      case forms::kBrowseFolderButton:
        if (const auto folder = BrowseForFolder(dialogs_, utility_, BrowsePrompt())) {
          form_->txtSaveFolder.SetText(text::NormaliseFolder(*folder));
        }
        return;
      case forms::kAddProjectButton:
        return project_.AddProject();
      case forms::kEditProjectButton:
        return project_.EditProject();
      case forms::kDefaultsButton:
        return OpenSetup();
      case forms::kHelpButton:
        return utility_.OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp.htm");
      default:
        return;  // the close button needs nothing but the form's own closing
    }
  });
}

std::wstring SaveDialog::BrowsePrompt() const {
  const std::wstring prompt = L"Select a folder to save the Email in:";
  const std::wstring& folder = filing_.project.filePath;
  if (!data_.settings.UseQuillion() || folder.empty()) return prompt;
  return L"The Quillion " + data_.settings.WorkUnit + L" Folder is " + folder + kBreak + prompt;
}

void SaveDialog::SaveButtonClicked() {
  // Enter presses the button without leaving the name box.
  filing_.saveAsName = form_->txtSaveAsName.Text();
  project_.ResolveTypedProject();
  const std::wstring faults = Faults();
  if (dialogs_.IsOver()) return;  // Outlook quit during a question
  if (!faults.empty()) {
    const std::wstring verb = filing_.sent ? L"save" : L"send";
    utility_.ShowMessage(L"Postrove cannot " + verb + L" this E-mail... " + kBreak + faults,
                         filing_.sent ? L"Cannot Save" : L"Cannot Send", MessageButtons::Ok,
                         MessageIcon::Information);
    return;
  }
  const std::wstring folder = CleanFolder(form_->txtSaveFolder.Text());
  form_->txtSaveFolder.SetText(folder);
  const std::optional<std::wstring> existing = EnsureFolder(dialogs_, utility_, folder);
  if (!existing) return;
  form_->txtSaveFolder.SetText(*existing);
  if (SaveAndSend(shared_, utility_, dialogs_, filing_, writing_)
          .SaveAndSendMail(*existing, data_.settings)) {
    form_->Unload();
  }
}

// What keeps the message from being filed, a line each.
std::wstring SaveDialog::Faults() {
  std::wstring faults;
  const auto require = [&faults](bool present, const std::wstring& message) {
    if (!present) faults += kBreak + message;
  };
  const std::wstring project = text::Replace(form_->cboPostrove.Text(), L":", {});
  require(!text::IsBlank(project), L"You must select a " + data_.settings.WorkUnit + L".");
  const std::wstring folder = CleanFolder(form_->txtSaveFolder.Text());
  require(!folder.empty(), L"You must select a Folder to save this E-mail in.");
  const std::wstring fault = FolderFault(folder);
  require(folder.empty() || fault.empty(), fault);
  // A name of which nothing can stand in a file name is none.
  require(!CleanFileName(WithoutMessageEnding(form_->txtSaveAsName.Text())).empty(),
          L"You must select a Filename for this E-mail.");
  const std::wstring drive = DriveProblem(utility_, folder, L"Folder");
  require(drive.empty(), drive);
  return faults;
}

void SaveDialog::OpenSetup() {
  SetupDialog(data_, utility_, dialogs_, [this](bool changed) { TakeNewDefaults(changed); }).Show();
  if (!dialogs_.IsOver()) dialogs_.Host().SetFocus(form_->cboPostrove);
}

// The dialog gets the new words and projects; what the user entered there stays.
void SaveDialog::TakeNewDefaults(bool databaseChanged) {
  if (databaseChanged) filing_.project = {};
  filing_.saveAsName = form_->txtSaveAsName.Text();
  project_.FindAgain();
  if (dialogs_.IsOver()) return;
  FillSaveLabels(*form_, data_.settings, data_.labels);
  ArrangeByMode(*form_, data_.settings.UseQuillion());
  project_.ShowAgain();
}

void SaveDialog::frmPostroveEvent_ProjectComboChange(const std::wstring& Text) {
  project_.TextChanged(Text);
}

void SaveDialog::frmPostroveEvent_ProjectComboClick() {
  Handle(utility_, *form_, L"frmPostroveEvent_ProjectComboClick()",
         [this] { project_.ChooseListedProject(form_->cboPostrove.ListIndex()); });
}

void SaveDialog::frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) {
  Handle(utility_, *form_, L"frmPostroveEvent_ProjectComboKeyPress()", [&] {
    forms::Control& combo = form_->cboPostrove;
    if (KeyAscii == kEnter) {
      KeyAscii = 0;
      dialogs_.Host().SendTab(*form_);
    } else if (CompleteTyping(dialogs_.Host(), combo, KeyAscii)) {
      // The folder is that of the project which the box shows.
      const int start = combo.SelectionStart();
      const int length = combo.SelectionLength();
      project_.ChooseListedProject(combo.ListIndex());
      combo.Select(start, length);
    }
  });
}

void SaveDialog::frmPostroveEvent_ProjectComboLostFocus() {
  Handle(utility_, *form_, L"frmPostroveEvent_ProjectComboLostFocus()",
         [this] { project_.ChooseTypedItem(); });
}

void SaveDialog::frmPostroveEvent_ProjectComboGotFocus() {
  Handle(utility_, *form_, L"frmPostroveEvent_ProjectComboGotFocus()",
         [this] { ShowHint(*form_, data_.labels, labels::kProjectHint); });
}

void SaveDialog::frmPostroveEvent_SaveAsNameGotFocus() {
  Handle(utility_, *form_, L"frmPostroveEvent_SaveAsNameGotFocus()",
         [this] { ShowHint(*form_, data_.labels, labels::kNameHint); });
}

// Another project that is chosen then leaves the name alone.
void SaveDialog::frmPostroveEvent_SaveAsNameLostFocus() {
  Handle(utility_, *form_, L"frmPostroveEvent_SaveAsNameLostFocus()",
         [this] { filing_.saveAsName = form_->txtSaveAsName.Text(); });
}

void SaveDialog::frmPostroveEvent_SaveFolderGotFocus() {
  Handle(utility_, *form_, L"frmPostroveEvent_SaveFolderGotFocus()",
         [this] { ShowHint(*form_, data_.labels, labels::kFolderHint); });
}

void SaveDialog::frmPostroveEvent_SaveAsNameChanged() {
  Handle(utility_, *form_, L"frmPostroveEvent_SaveAsNameChanged()",
         [this] { MarkSaveAsName(*form_); });
}

void SaveDialog::frmPostroveEvent_SaveFolderChanged() {
  Handle(utility_, *form_, L"frmPostroveEvent_SaveFolderChanged()",
         [this] { MarkSaveFolder(*form_); });
}

void SaveDialog::frmPostroveEvent_WebLabelClick(const std::wstring& Caption) {
  Handle(utility_, *form_, L"frmPostroveEvent_WebLabelClick()",
         [&] { utility_.OpenDocument(forms::LinkTarget(Caption)); });
}

}  // namespace postrove
