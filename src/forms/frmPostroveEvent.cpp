#include <algorithm>

#include "controller/clsPostrove.h"
#include "controller/raised.h"
#include "data/label_places.h"
#include "forms/type_ahead.h"
#include "forms/web_site.h"
#include "shared/text.h"

// The controller's handlers of the save dialog's events.
namespace postrove {

namespace {

constexpr int kEnter = 13;

// As in the label file, with the blank behind "Hint:".
constexpr wchar_t kProjectHint[] =
    L" Choose the project that this e-mail belongs to, or type its name, a colon and its number.";
constexpr wchar_t kNameHint[] =
    L" The name of the file, without its ending. Characters that Windows does not allow in a file "
    L"name are replaced.";
constexpr wchar_t kFolderHint[] =
    L" The folder that the e-mail is saved in. Click the folder button to browse for another one.";

}  // namespace

void clsPostrove::WithForm(const wchar_t* procedure,
                           const std::function<void(forms::frmPostrove& form)>& body) {
  const auto self = shared_from_this();
  const std::shared_ptr<forms::frmPostrove> form = frmPostroveEvent_;
  if (form) Reporting(*utility_, L"clsPostrove", procedure, [&] { body(*form); });
}

void clsPostrove::frmPostroveEvent_FormActivate() {
  WithForm(L"frmPostroveEvent_FormActivate()", [this](forms::frmPostrove& form) {
    if (lowered_ == 0) forms_->SetTopmost(form, true);
  });
}

void clsPostrove::frmPostroveEvent_ButtonClicked(int Index) {
  WithForm(L"frmPostroveEvent_ButtonClicked()", [&](forms::frmPostrove& form) {
    if (writing_) return;  // Outlook handles messages while it writes and sends
    switch (Index) {
      case forms::kMainButton:
        SaveButtonClicked();
        break;
      case forms::kBrowseFolderButton:
        BrowseFor(BrowseTarget::SaveFolder);
        break;
      case forms::kAddProjectButton:
        SaveAsName = form.txtSaveAsName.Text();
        ProjInfoMode = L"add";
        OpenProjectInfo();
        break;
      case forms::kEditProjectButton:
        EditProjectClicked();
        break;
      case forms::kDefaultsButton:
        OpenSetup();
        break;
      case forms::kHelpButton:
        utility_->OpenDocument(std::wstring(forms::kWebSite) + L"/PostroveHelp.htm");
        break;
      default:
        break;  // the close button needs nothing but the form's own closing
    }
  });
}

void clsPostrove::EditProjectClicked() {
  // A project that was typed or is temporary has no row that could be edited; a row without a key
  // cannot be told from the others.
  if (typedProject_ || ProjectID == 0) {
    const int row = typedProject_ ? -1 : FindProject(ProjectNumber, ProjectName);
    const bool listed = row >= 0 && !ProjectList[static_cast<std::size_t>(row)].temporary;
    utility_->ShowMessage(
        listed ? L"This " + WorkUnit +
                     L" cannot be edited here: its row in the database has no number in the column "
                     L"ProjectID."
               : L"Select the " + WorkUnit + L" to edit from the list first.",
        L"Edit a " + WorkUnit, MessageButtons::Ok, MessageIcon::Information);
    return;
  }
  SaveAsName = frmPostroveEvent_->txtSaveAsName.Text();
  ProjInfoMode = L"edit";
  OpenProjectInfo();
}

void clsPostrove::frmPostroveEvent_FormUnload(bool& Cancel) {
  Cancel = writing_;
  if (Cancel) return;
  ClearProject();
  frmPostroveEvent_.reset();
}

void clsPostrove::frmPostroveEvent_ProjectComboChange(const std::wstring& Text) {
  if (!filling_) typedProject_ = !Text.empty();
}

void clsPostrove::frmPostroveEvent_ProjectComboClick() {
  WithForm(L"frmPostroveEvent_ProjectComboClick()",
           [this](forms::frmPostrove& form) { ChooseListedProject(form.cboPostrove.ListIndex()); });
}

void clsPostrove::ChooseListedProject(int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= ProjectList.size()) return;
  SelectProject(row);
  const Raised filling(filling_);
  FillSaveFields(*frmPostroveEvent_);
  typedProject_ = false;
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
    form.rtfFieldHints.SetText(L"\r\nHint:" + Label(labels::kSaveDialog, label, fallback));
  });
}

void clsPostrove::frmPostroveEvent_ProjectComboKeyPress(int& KeyAscii) {
  WithForm(L"frmPostroveEvent_ProjectComboKeyPress()", [&](forms::frmPostrove& form) {
    if (KeyAscii == kEnter) {
      KeyAscii = 0;
      forms_->SendTab(form);
    } else if (forms::CompleteTyping(*forms_, form.cboPostrove, KeyAscii)) {
      // The folder is that of the project which the box shows.
      const int start = form.cboPostrove.SelectionStart();
      const int length = form.cboPostrove.SelectionLength();
      ChooseListedProject(form.cboPostrove.ListIndex());
      form.cboPostrove.Select(start, length);
    }
  });
}

// A text that was typed or pasted whole may name a listed project: then it is chosen.
void clsPostrove::frmPostroveEvent_ProjectComboLostFocus() {
  if (!typedProject_) return;
  WithForm(L"frmPostroveEvent_ProjectComboLostFocus()", [this](forms::frmPostrove& form) {
    const std::vector<std::wstring>& items = form.cboPostrove.Items();
    const auto item = std::find_if(items.begin(), items.end(), [&](const std::wstring& text) {
      return text::EqualsIgnoreCase(text, form.cboPostrove.Text());
    });
    if (item != items.end()) ChooseListedProject(static_cast<int>(item - items.begin()));
  });
}

void clsPostrove::frmPostroveEvent_SaveAsNameChanged() {
  WithForm(L"frmPostroveEvent_SaveAsNameChanged()", [](forms::frmPostrove& form) {
    CheckRequired(form.txtSaveAsName, form.lblNameLabel, form.lblAlert(forms::kNameLabel));
  });
}

void clsPostrove::frmPostroveEvent_SaveFolderChanged() {
  WithForm(L"frmPostroveEvent_SaveFolderChanged()", [](forms::frmPostrove& form) {
    CheckRequired(form.txtSaveFolder, form.lblFolderLabel, form.lblAlert(forms::kFolderLabel));
  });
}

void clsPostrove::frmPostroveEvent_SaveAsNameLostFocus() {
  WithForm(L"frmPostroveEvent_SaveAsNameLostFocus()",
           [this](forms::frmPostrove& form) { SaveAsName = form.txtSaveAsName.Text(); });
}

void clsPostrove::frmPostroveEvent_SaveFolderLostFocus() {}

void clsPostrove::frmPostroveEvent_WebLabelClick(const std::wstring& Caption) {
  WithForm(L"frmPostroveEvent_WebLabelClick()",
           [&](forms::frmPostrove&) { utility_->OpenDocument(forms::LinkTarget(Caption)); });
}

}  // namespace postrove
