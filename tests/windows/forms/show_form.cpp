// show_form postrove|folder|setup|projinfo [--plain]
// show_form --pictures FOLDER LABELFILE [--plain]
// Shows a dialog with sample values until a button is clicked or it is closed, or shows every
// dialog in every state and leaves a picture of each, as a bitmap, in the folder; --plain without
// visual styles. Nothing is saved anywhere. The product's controller fills the dialogs.
#include <windows.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "forms/frmFolderMessage.h"
#include "forms/frmPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "outlook/screenshot.h"
#include "support/Product.h"

using namespace postrove::forms;
using postrove::testing::FakeOutlook;
using postrove::testing::Product;

namespace {

// Takes a picture of each form that is shown, and ends it; without a folder the user ends it.
class PicturingHost final : public FormHost {
 public:
  PicturingHost(HINSTANCE module, std::wstring folder)
      : host_(CreateWinFormHost(module)), folder_(std::move(folder)) {}

  void ShowModal(Form& form) override {
    auto* const save = dynamic_cast<frmPostrove*>(&form);
    if (save && opens != kMainButton) {
      save->UserActivated();
      save->cboPostrove.UserPicked(0);
      save->cmdPostrove(opens).UserClicked();
      save->Unload();
      return;
    }
    EndByButtons(form);
    if (folder_.empty()) return host_->ShowModal(form);
    shown_ = &form;
    path_ = folder_ + L"\\" + next + L".bmp";
    // Late enough for what the dialog does after it was shown.
    const UINT_PTR timer = SetTimer(nullptr, 0, 500, Take);
    host_->ShowModal(form);
    KillTimer(nullptr, timer);
  }
  void SetTopmost(Form& form, bool topmost) override { host_->SetTopmost(form, topmost); }
  void BringToFront(Form& form) override { host_->BringToFront(form); }
  void SetFocus(Control& control) override { host_->SetFocus(control); }
  void DropDownList(Control& combo) override { host_->DropDownList(combo); }
  void SendTab(Form& form) override { host_->SendTab(form); }
  void SetWaitCursor(bool on) override { host_->SetWaitCursor(on); }

  std::wstring next;        // name of the next picture
  int opens = kMainButton;  // another: the save dialog's button that opens the dialog to show

 private:
  static void EndByButtons(Form& form) {
    for (const auto& control : form.Controls()) {
      if (control->Kind() == ControlKind::CommandButton && !control->onClick) {
        control->onClick = [&form] { form.Unload(); };
      }
    }
  }

  static void CALLBACK Take(HWND, UINT, UINT_PTR, DWORD) {
    Form* const form = std::exchange(shown_, nullptr);
    if (!form) return;
    const HWND window = FindWindowW(L"PostroveForm", form->Caption().c_str());
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    if (!standin::SaveScreenshot(window, path_)) std::fprintf(stderr, "no picture\n");
    form->Unload();
  }

  const std::shared_ptr<FormHost> host_;
  const std::wstring folder_;
  static inline Form* shown_ = nullptr;
  static inline std::wstring path_;
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One message, and the machine that it is filed on.
struct Message {
  const wchar_t* picture;
  bool sent;
  bool shared;
  const wchar_t* subject;
  const wchar_t* folder;  // of the project
  int opens = kMainButton;
};

constexpr wchar_t kLong[] =
    L"2025-06-12 Minutes of the site meeting, of the inspection of the eastern abutment that "
    L"followed it, and of what was agreed on the way back about the deliveries of next month";
constexpr wchar_t kLongFolder[] =
    L"\\\\files.example.com\\Engineering Projects\\Bridges and Tunnels\\2231 Harbour Bridge, "
    L"Second Stage of the Refurbishment\\";
constexpr Message kMessages[] = {
    {L"save-received", true, false, L"Minutes of the site meeting", L"P:\\2231 Harbour Bridge\\"},
    {L"save-new", false, false, L"2231-Harbour Bridge=>Fee letter", L"P:\\2231 Harbour Bridge\\"},
    {L"save-required", false, false, L"", L""},
    {L"save-shared", true, true, L"2231-Harbour Bridge=>Fee letter", L"P:\\2231 Harbour Bridge\\"},
    {L"save-long", true, false, kLong, kLongFolder},
};
constexpr Message kSetupOwn{L"setup-own", true, false, L"", L"", kDefaultsButton};
constexpr Message kSetupShared{L"setup-shared", true, true, L"", L"", kDefaultsButton};
constexpr Message kProjInfo{L"project-information", true, false, L"", L"P:\\2231 Harbour Bridge\\",
                            kEditProjectButton};

void ShowByController(const std::shared_ptr<PicturingHost>& host, const std::string& labels,
                      const Message& message) {
  Product product;
  product.host = host;
  product.utility->AddFile(std::wstring(postrove::testing::kAppData) + L"\\Postrove\\Postrove.cnt",
                           labels);
  const std::wstring sibling = std::wstring(postrove::testing::kAppData) + L"\\Quillion";
  if (message.shared) {
    product.utility->AddFolder(std::wstring(postrove::testing::kPrograms) + L"\\Quillion");
    product.utility->AddFile(sibling + L"\\Qulln.ini", "[Setup]\r\nRoot=P:\\\r\n");
  }
  const std::wstring name = message.folder == kLongFolder ? kLong : L"Harbour Bridge";
  product.database->SetHandler([&](const postrove::testing::RanStatement&) {
    return postrove::Rows{{L"2231", name, message.folder, true, std::int64_t{7}},
                          {L"2240", L"Library Roof", L"", true, std::int64_t{8}}};
  });
  product.Start();
  const auto mail = product.outlook.Open(message.sent);
  mail->item->properties[L"Subject"] = message.subject;
  product.outlook.RaiseNew(mail);
  if (message.folder == kLongFolder) {
    product.Controller().ProjectNumber = L"2231";
    product.Controller().ProjectName = kLong;
    product.Controller().ProjFilePath = kLongFolder;
  }
  host->next = message.picture;
  host->opens = message.opens;
  mail->buttons.at(0)->Raise(postrove::office::kCommandBarButtonEvents,
                             postrove::office::kButtonClick,
                             {postrove::office::Value(mail->buttons.at(0)), false});
}

void ShowFolderMessage(PicturingHost& host) {
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
  host.next = L"folder-message";
  host.ShowModal(form);
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::string> words(arguments + 1, arguments + count);
  const bool plain = std::erase(words, "--plain") > 0;
  const bool pictures = words.size() == 3 && words[0] == "--pictures";
  if (!pictures && words.size() != 1) {
    std::fprintf(stderr,
                 "usage: show_form postrove|folder|setup|projinfo [--plain]\n"
                 "       show_form --pictures FOLDER LABELFILE [--plain]\n");
    return 2;
  }
  const std::string folder = pictures ? words[1] : "";
  // A module without the manifest has no visual styles.
  const HMODULE module = GetModuleHandleW(plain ? L"gdi32.dll" : nullptr);
  const auto host =
      std::make_shared<PicturingHost>(module, std::wstring(folder.begin(), folder.end()));
  const std::string labels = pictures ? ReadFile(words[2]) : "";
  for (const Message& message : kMessages) {
    if (pictures || words[0] == "postrove") ShowByController(host, labels, message);
    if (!pictures) break;
  }
  if (pictures || words[0] == "folder") ShowFolderMessage(*host);
  if (pictures || words[0] == "setup") {
    ShowByController(host, labels, kSetupOwn);
    if (pictures) ShowByController(host, labels, kSetupShared);
  }
  if (pictures || words[0] == "projinfo") ShowByController(host, labels, kProjInfo);
  return 0;
}
