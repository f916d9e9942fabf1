#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "data/label_places.h"
#include "forms/kit/guards.h"
#include "forms/web_site.h"
#include "shared/text.h"

// The controller's handlers of the save dialog's events.
namespace postrove {

namespace {

constexpr int kEnter = 13;

constexpr wchar_t kProjectHint[] =
    L"Choose the project that this e-mail belongs to, or type its name, a colon and its number.";
constexpr wchar_t kNameHint[] =
    L"The name of the file, without its ending. Characters that Windows does not allow in a file "
    L"name are replaced.";
constexpr wchar_t kFolderHint[] =
    L"The folder that the e-mail is saved in. Click the folder button to browse for another one.";

}  // namespace

void clsPostrove::WithForm(const wchar_t* procedure,
                           const std::function<void(forms::frmPostrove& form)>& body) {
  const auto self = shared_from_this();
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  if (form) Reporting(*utility_, L"clsPostrove", procedure, [&] { body(*form); });
}

void clsPostrove::frmPostroveEvent_FormActivate() {
  WithForm(L"frmPostroveEvent_FormActivate()",
           [this](forms::frmPostrove& form) { forms_->SetTopmost(form, true); });
}

void clsPostrove::frmPostroveEvent_ButtonClicked(int Index) {
  WithForm(L"frmPostroveEvent_ButtonClicked()", [&](forms::frmPostrove&) {
    switch (Index) {
      case forms::kMainButton:
        SaveButtonClicked();
        break;
      case forms::kBrowseFolderButton:
        BrowseForSaveFolder();
        break;
      case forms::kHelpButton:
        utility_->OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp.htm");
        break;
      default:
        break;  // the close button needs nothing but the form's own closing
    }
  });
}

void clsPostrove::BrowseForSaveFolder() {
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  const forms::Lowered lowered(*forms_, form);
  const std::wstring folder = utility_->BrowseForFolder(L"Select a folder to save the Email in:");
  if (!folder.empty()) form->txtSaveFolder.SetText(text::NormaliseFolder(folder));
}

void clsPostrove::frmPostroveEvent_FormUnload(bool&) {
  ClearProject();
  frmPostroveEvent_.reset();
}

void clsPostrove::frmPostroveEvent_ProjectComboChange(const std::wstring& Text) {
  if (!filling_) typedProject_ = !Text.empty();
}

void clsPostrove::frmPostroveEvent_ProjectComboClick() {
  WithForm(L"frmPostroveEvent_ProjectComboClick()", [this](forms::frmPostrove& form) {
    const int row = form.cboPostrove.ListIndex();
    if (row < 0 || static_cast<std::size_t>(row) >= ProjectList.size()) return;
    SelectProject(row);
    const Raised filling(filling_);
    FillSaveFields(form);
    typedProject_ = false;
  });
}

void clsPostrove::frmPostroveEvent_ProjectComboGotFocus() {
  ShowHint(labels::kProjectHint, kProjectHint);
}
void clsPostrove::frmPostroveEvent_SaveAsNameGotFocus() { ShowHint(labels::kNameHint, kNameHint); }
void clsPostrove::frmPostroveEvent_SaveFolderGotFocus() {
  ShowHint(labels::kFolderHint, kFolderHint);
}

void clsPostrove::ShowHint(std::size_t label, const wchar_t* fallback) {
  WithForm(L"ShowHint()", [&](forms::frmPostrove& form) {
    form.rtfFieldHints.SetText(L"\r\nHint: " + Label(labels::kSaveDialog, label, fallback));
  });
}

void clsPostrove::frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) {
  if (KeyAscii != kEnter) return;
  KeyAscii = 0;
  WithForm(L"frmPostroveEvent_ProjectComboKeyPress()",
           [this](forms::frmPostrove& form) { forms_->SendTab(form); });
}

void clsPostrove::frmPostroveEvent_ProjectComboLostFocus() {}

void clsPostrove::frmPostroveEvent_SaveAsNameChanged() {
  WithForm(L"frmPostroveEvent_SaveAsNameChanged()", [](forms::frmPostrove& form) {
    CheckRequired(form.txtSaveAsName, form.lblNameLabel, form.lblAlert);
  });
}

void clsPostrove::frmPostroveEvent_SaveFolderChanged() {
  WithForm(L"frmPostroveEvent_SaveFolderChanged()", [](forms::frmPostrove& form) {
    CheckRequired(form.txtSaveFolder, form.lblFolderLabel, form.lblAlert);
  });
}

void clsPostrove::frmPostroveEvent_SaveAsNameLostFocus() {
  WithForm(L"frmPostroveEvent_SaveAsNameLostFocus()",
           [this](forms::frmPostrove& form) { SaveAsName = form.txtSaveAsName.Text(); });
}

void clsPostrove::frmPostroveEvent_SaveFolderLostFocus() {}

void clsPostrove::frmPostroveEvent_WebLabelClick(const std::wstring& Caption) {
  WithForm(L"frmPostroveEvent_WebLabelClick()",
           [&](forms::frmPostrove&) { utility_->OpenDocument(Caption); });
}

bool clsPostrove::CheckRequired(forms::Control& box, forms::Control& caption,
                                forms::Control& marker) {
  const bool empty = box.Text().empty();
  marker.SetVisible(empty);
  if (!text::EqualsIgnoreCase(box.Tag(), L"required")) return true;
  box.SetBackColor(empty ? forms::kYellow : forms::kSystemWindow);
  caption.SetForeColor(empty ? forms::kRed : forms::kSystemButtonText);
  return !empty;
}

}  // namespace postrove
