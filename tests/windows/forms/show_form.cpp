// show_form postrove|folder|setup|projinfo [--plain]
// Shows a dialog with sample values until a button is clicked or it is closed; --plain without
// visual styles. Nothing is saved anywhere.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/frmProjInfo.h"
#include "forms/frmSetup.h"
#include "forms/win32/WinFormHost.h"

using namespace postrove::forms;

namespace {

void EndByButtons(Form& form) {
  for (const auto& control : form.Controls()) {
    if (control->Kind() == ControlKind::CommandButton) {
      control->onClick = [&form] { form.Unload(); };
    }
  }
}

// Marks a field while it is empty, in colour when it is required.
void Require(Control& field, Control& label, Control& alert) {
  field.onChange = [&field, &label, &alert] {
    const bool empty = field.Text().empty();
    const bool missing = empty && field.Tag() == L"required";
    field.SetBackColor(missing ? kYellow : kSystemWindow);
    label.SetForeColor(missing ? kRed : kSystemButtonText);
    alert.SetVisible(empty);
  };
}

void ShowSaveDialog(FormHost& host) {
  frmPostrove form({});
  form.lblFormTitle.SetText(L"Postrove Project EMail and File Location");
  form.cboPostrove.SetItems({L"Harbour Bridge: 2024-017", L"Library Roof: 2024-021",
                             L"Tunnel Ventilation, Second Stage: 2025-003"});
  form.cboPostrove.SetListIndex(0);
  form.txtSaveFolder.SetText(L"P:\\Projects\\2024-017 Harbour Bridge\\EMail");
  form.txtSaveAsName.SetText(L"2025-06-12 Minutes of the site meeting");
  form.lblVersion.SetText(L"1.0 0");
  form.rtfFieldHints.SetText(L"\r\nHint: Choose the project that this message belongs to.");
  Require(form.txtSaveAsName, form.lblNameLabel, form.lblAlert);
  EndByButtons(form);
  host.ShowModal(form);
}

void ShowFolderMessage(FormHost& host) {
  frmFolderMessage form({});
  form.SetCaption(L"Existing File Name");
  const wchar_t* name =
      L"P:\\Projects\\2024-017 Harbour Bridge\\EMail\\2025-06-12 Minutes of the "
      L"site meeting and of the inspection that followed it.msg";
  form.txtFolderMessage(0).SetText(std::wstring(L"The file \r\n\"") + name +
                                   L"\"\r\n already exists.");
  form.txtFolderMessage(1).SetText(L"2025-06-12 Minutes of the site meeting");
  form.lblWarning().SetText(
      L"You may:\r\n-Edit the name and click 'OK' to save the file with a different name.\r\n"
      L"-Click 'OK' to replace the existing file.\r\n-Click 'Cancel' to return to the form.");
  EndByButtons(form);
  host.ShowModal(form);
}

void ShowSetup(FormHost& host) {
  frmSetup form({});
  for (const int index : {0, 1}) {
    form.optDbType(index).onClick = [&form] {
      const bool own = form.optDbType(kSetupOwnDb).Checked();
      form.ShowSettingsLocation(own);
      for (const int field : {kSetupServerFolder, kSetupDatabase}) {
        form.txtSetup(field).SetLocked(!own);
      }
      for (const int browse : {kSetupBrowseServerFolder, kSetupBrowseDatabase}) {
        form.cmdBrowse(browse).SetVisible(own);
      }
    };
  }
  form.optDbType(kSetupOwnDb).SetChecked(true);
  const wchar_t* const values[] = {
      L"\\\\server\\Projects",     L" - ", L" - ", L"R&D\\EMail", L"\\\\server\\Postrove\\Data",
      L"C:\\ProgramData\\Postrove"};
  for (int index = kSetupServerFolder; index < kSetupWorkType; ++index) {
    Control& field = form.txtSetup(index);
    const bool second = index == kSetupSubjectDelimiter;
    Require(field, form.lblFieldLabel(second ? kSetupDelimiterLabel : index), form.lblAlert(index));
    field.SetText(values[index]);
  }
  form.cboWorkType.SetItems({L"Project", L"Job", L"Contract"});
  form.cboWorkType.SetListIndex(0);
  form.lblDelimLabel(0).SetText(L"<Project No.>");
  form.lblDelimLabel(1).SetText(L"<Project>");
  form.lblSavePathSample.SetText(
      L"\\\\server\\Projects\\<Project Folder>\\R&D\\EMail\\<Project No.> - <Project> - "
      L"<email subject>");
  form.rtfFieldHints.SetText(
      L"Hint:\r\nThe folder on the server that holds the folders of your projects. A new project's "
      L"folder is suggested here.");
  EndByButtons(form);
  host.ShowModal(form);
}

void ShowProjInfo(FormHost& host) {
  frmProjInfo form({});
  form.SetCaption(L"Edit a Project");
  for (const int index : {kProjInfoNumber, kProjInfoName, kProjInfoFolder}) {
    Require(form.txtProjInfo(index), form.lblFieldLabel(index), form.lblAlert(index));
  }
  form.txtProjInfo(kProjInfoNumber).SetText(L"2024-017");
  form.txtProjInfo(kProjInfoName).SetText(L"Harbour Bridge");
  form.txtProjInfo(kProjInfoFolder).SetText(L"\\\\server\\Projects\\2024-017 Harbour Bridge");
  form.chkProjActive.SetChecked(true);
  form.rtfFieldHints.SetText(L"Hint:\r\nThe name that the list of the save dialog shows.");
  EndByButtons(form);
  host.ShowModal(form);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: show_form postrove|folder|setup|projinfo [--plain]\n");
    return 2;
  }
  const bool plain = count > 2 && std::strcmp(arguments[2], "--plain") == 0;
  // A module without the manifest has no visual styles.
  const HMODULE module = GetModuleHandleW(plain ? L"gdi32.dll" : nullptr);
  const auto host = CreateWinFormHost(module);
  const struct {
    const char* name;
    void (*show)(FormHost&);
  } dialogs[] = {{"postrove", ShowSaveDialog},
                 {"folder", ShowFolderMessage},
                 {"setup", ShowSetup},
                 {"projinfo", ShowProjInfo}};
  for (const auto& dialog : dialogs) {
    if (std::strcmp(arguments[1], dialog.name) != 0) continue;
    dialog.show(*host);
    return 0;
  }
  std::fprintf(stderr, "show_form: no dialog %s\n", arguments[1]);
  return 2;
}
