#include "controller/setup_fields.h"

#include "controller/required_fields.h"
#include "shared/text.h"

namespace postrove {

namespace {

constexpr wchar_t kBreak[] = L"\r\n";

forms::Control& LabelOf(const forms::frmSetup& form, int index) {
  return form.lblFieldLabel(IsDelimiter(index) ? forms::kSetupDelimiterLabel : index);
}

}  // namespace

forms::Control& FieldOf(const forms::frmSetup& form, int index) {
  return index == forms::kSetupWorkType ? form.cboWorkType : form.txtSetup(index);
}

bool IsDelimiter(int index) {
  return index == forms::kSetupProjectDelimiter || index == forms::kSetupSubjectDelimiter;
}

std::wstring NameOf(const forms::frmSetup& form, int index) {
  const std::wstring name = text::Replace(LabelOf(form, index).Text(), L"&", L"");
  return name.substr(0, name.find(L':'));
}

std::wstring ValueMissing(const std::wstring& name) {
  return L"-The " + name + L" must have a value.";
}

std::wstring WithWord(const std::wstring& pattern, const std::wstring& word) {
  return text::ReplaceIgnoreCase(pattern, L"~Unit~", word);
}

void ShowWord(const forms::frmSetup& form, const std::wstring& word) {
  for (const int index : {0, 1}) {
    forms::Control& label = form.lblDelimLabel(index);
    label.SetText(WithWord(label.Tag(), word));
  }
}

void ShowSample(const forms::frmSetup& form) {
  const auto folder = [&](int index) { return text::NormaliseFolder(form.txtSetup(index).Text()); };
  form.lblSavePathSample.SetText(
      folder(forms::kSetupServerFolder) + folder(forms::kSetupEmailFolder) +
      form.lblDelimLabel(0).Text() + form.txtSetup(forms::kSetupProjectDelimiter).Text() +
      form.lblDelimLabel(1).Text() + form.txtSetup(forms::kSetupSubjectDelimiter).Text() +
      L"<email subject>");
}

void ShowLocked(const forms::frmSetup& form, int index) {
  FieldOf(form, index).SetBackColor(forms::kSystemButtonFace);
  LabelOf(form, index).SetForeColor(forms::kSystemButtonText);
  form.lblAlert(index).SetVisible(false);
}

void LockByMode(forms::frmSetup& form, bool shared) {
  form.txtSetup(forms::kSetupServerFolder).SetLocked(shared);
  form.cmdBrowse(forms::kSetupBrowseServerFolder).SetVisible(!shared);
  form.txtSetup(forms::kSetupDatabase).SetLocked(shared);
  form.cmdBrowse(forms::kSetupBrowseDatabase).SetVisible(!shared);
  form.ShowSettingsLocation(!shared);
}

bool MarkField(const forms::frmSetup& form, int index) {
  forms::Control& label = LabelOf(form, index);
  const bool filled = CheckRequired(FieldOf(form, index), label, form.lblAlert(index));
  // The caption of both delimiters is red while either is missing.
  constexpr int kBoth = forms::kSetupProjectDelimiter + forms::kSetupSubjectDelimiter;
  if (IsDelimiter(index) && form.txtSetup(kBoth - index).Text().empty()) {
    label.SetForeColor(forms::kRed);
  }
  return filled;
}

std::wstring MissingFields(const forms::frmSetup& form, const std::wstring& workUnit) {
  std::wstring errors;
  for (const int index : {forms::kSetupWorkType, forms::kSetupProjectDelimiter,
                          forms::kSetupSubjectDelimiter, forms::kSetupServerFolder,
                          forms::kSetupEmailFolder, forms::kSetupDatabase, forms::kSetupSettings}) {
    const forms::Control& field = FieldOf(form, index);
    // What the user cannot fill in must not keep the dialog open.
    if (!field.Text().empty() || field.Locked() || !field.Visible()) continue;
    if (!errors.empty()) errors += kBreak;
    if (index == forms::kSetupWorkType) {
      errors += L"-You must select a Work Unit Type.";
    } else if (index == forms::kSetupProjectDelimiter) {
      errors += ValueMissing(workUnit + L" Delimiter");
    } else if (index == forms::kSetupSubjectDelimiter) {
      errors += ValueMissing(L"Subject Delimiter");
    } else {
      errors += ValueMissing(NameOf(form, index));
    }
  }
  return errors;
}

}  // namespace postrove
