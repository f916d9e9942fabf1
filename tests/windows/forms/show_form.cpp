// show_form postrove|folder [--plain]
// Shows a dialog with sample values until a button is clicked or it is closed; --plain without
// visual styles. Nothing is saved anywhere.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"

using namespace postrove::forms;

namespace {

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
  form.txtSaveAsName.onChange = [&form] {
    const bool empty = form.txtSaveAsName.Text().empty();
    form.txtSaveAsName.SetBackColor(empty ? kYellow : kSystemWindow);
    form.lblNameLabel.SetForeColor(empty ? kRed : kSystemButtonText);
    form.lblAlert.SetVisible(empty);
  };
  for (const auto& control : form.Controls()) {
    if (control->Kind() == ControlKind::CommandButton) {
      control->onClick = [&form] { form.Unload(); };
    }
  }
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
  for (const int index : {0, 1}) form.cmdFolderMessage(index).onClick = [&form] { form.Unload(); };
  host.ShowModal(form);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: show_form postrove|folder [--plain]\n");
    return 2;
  }
  const bool plain = count > 2 && std::strcmp(arguments[2], "--plain") == 0;
  // A module without the manifest has no visual styles.
  const HMODULE module = GetModuleHandleW(plain ? L"gdi32.dll" : nullptr);
  const auto host = CreateWinFormHost(module);
  if (std::strcmp(arguments[1], "folder") == 0) {
    ShowFolderMessage(*host);
  } else {
    ShowSaveDialog(*host);
  }
  return 0;
}
