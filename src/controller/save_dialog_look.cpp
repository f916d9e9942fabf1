#include "controller/save_dialog_look.h"

#include "controller/required_fields.h"
#include "data/label_places.h"
#include "shared/text.h"

namespace postrove {

namespace {

// As in the label file, with the blank behind "Hint:".
constexpr const wchar_t* kHints[] = {
    L" Choose the project that this e-mail belongs to, or type its name, a colon and its number.",
    L" The folder that the e-mail is saved in. Click the folder button to browse for another one.",
    L" The name of the file, without its ending. Characters that Windows does not allow in a file "
    L"name are replaced.",
};
static_assert(labels::kProjectHint == 0 && labels::kFolderHint == 1 && labels::kNameHint == 2);

std::wstring VersionText(const ProductVersion& version) {
  return text::FromNumber(version.major) + L"." + text::FromNumber(version.minor) + L"." +
         text::FromNumber(version.revision);
}

}  // namespace

void ArrangeForm(forms::frmPostrove& form, bool sent, const ProductVersion& version) {
  // A label with the tag of the required fields marks one of them.
  for (const auto& control : form.Controls()) {
    if (control->Kind() != forms::ControlKind::Label || control->Tag() != L"required") continue;
    control->SetForeColor(forms::kRed);
    control->SetVisible(false);
    control->SetText(L"Required");
  }

  if (sent) form.cmdPostrove(forms::kMainButton).SetText(L"Save");

  form.lblVersion.SetText(VersionText(version));
  forms::Box place = form.lblVersion.Place();
  place.top = form.Height() - place.height;
  form.lblVersion.SetPlace(place);
}

void ArrangeByMode(forms::frmPostrove& form, bool shared) {
  const auto moveTo = [](forms::Control& label, int left, int width) {
    forms::Box place = label.Place();
    place.left = left;
    place.width = width;
    label.SetPlace(place);
  };
  // Projects are added in Quillion where its data is shared. Title and link then stand in the
  // column of the fields, which tells at a glance whose projects these are.
  form.cmdPostrove(forms::kAddProjectButton).SetVisible(!shared);
  const int margin = form.lblProjectLabel.Place().left;
  const int left = shared ? form.cboPostrove.Place().left : margin;
  const forms::Box title = form.lblFormTitle.Place();
  moveTo(form.lblFormTitle, left, title.left + title.width - left);
  moveTo(form.lblWebSite, left, form.lblWebSite.Place().width);
}

void FillSaveLabels(forms::frmPostrove& form, const Settings& settings, const Labels& labels) {
  form.lblFormTitle.SetText(L"Postrove " + settings.WorkUnit + L" EMail and File Location");
  form.lblProjectLabel.SetText(settings.WorkUnit + L": ");
  for (const auto& [label, index] : {std::pair{&form.lblFolderLabel, labels::kFolderCaption},
                                     {&form.lblNameLabel, labels::kNameCaption}}) {
    label->SetText(labels.Text(labels::kSaveDialog, index, label->Text()));
  }
}

void MarkSaveAsName(forms::frmPostrove& form) {
  CheckRequired(form.txtSaveAsName, form.lblNameLabel, form.lblAlert(forms::kNameLabel));
}

void MarkSaveFolder(forms::frmPostrove& form) {
  CheckRequired(form.txtSaveFolder, form.lblFolderLabel, form.lblAlert(forms::kFolderLabel));
}

void ShowHint(forms::frmPostrove& form, const Labels& labels, std::size_t label) {
  form.rtfFieldHints.SetText(L"\r\nHint:" + labels.Text(labels::kSaveDialog, label, kHints[label]));
}

}  // namespace postrove
